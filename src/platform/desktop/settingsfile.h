#pragma once

#include <QJsonObject>
#include <QString>

namespace desktop {

/// A JSON file that only its user can read and that is replaced as a whole.
/// Failures are RuntimeErrors whose descriptions name the file.
class SettingsFile {
  public:
    explicit SettingsFile(QString path) : m_path(std::move(path)) {}

    /// The file's object, empty when there is no file. Throws RuntimeError 75 for a file that cannot be read
    /// or is no JSON object.
    QJsonObject read() const;
    /// Makes the folder (0700) where it is missing. Throws 61, 70, 75 or 76.
    void makeFolder() const;
    /// Writes a file beside it and removes that again. Throws 61, 70, 75 or 76.
    void probe() const;
    /// Writes a new file (0600) beside the old one, flushes it and puts it in the old one's place.
    /// Throws 61, 70, 75 or 76; the old file is then untouched.
    void replace(const QJsonObject& content) const;

  private:
    void create() const;

    QString m_path;
};

}  // namespace desktop

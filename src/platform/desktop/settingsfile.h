#pragma once

#include <QJsonObject>
#include <QString>

namespace desktop {

/// A JSON file that only its user can read and that is replaced as a whole; a link in its place stays one.
/// Failures are RuntimeErrors whose descriptions name the file.
class SettingsFile {
  public:
    explicit SettingsFile(const QString& path);

    /// The file's object, empty when there is no file. Throws RuntimeError 75 for a file that cannot be read
    /// or is no JSON object, and for anything else in its place.
    QJsonObject read() const;
    /// Throws RuntimeError 75 for a file that is not as it should be; the description says what a user can
    /// do.
    [[noreturn]] void refuse(const QString& reason) const;
    /// Makes the folder (0700) where it is missing. Throws 61, 70, 75 or 76.
    void makeFolder() const;
    /// Writes a new file (0600) beside the old one, flushes it and puts it in the old one's place.
    /// Throws 61, 70, 75 or 76; the old file is then untouched. Whoever calls it holds the lock.
    void replace(const QJsonObject& content) const;

    /// Whether no other user can read or write it.
    bool isPrivate() const;
    /// Whether it is private and no new file that never took its place lies beside it.
    bool isTidy() const;
    /// Makes it so, as far as that can be done. Whoever calls it holds the lock: no new file is somebody's
    /// then who still writes it.
    void tidy() const;

  private:
    QStringList leftovers() const;

    QString m_path;
};

}  // namespace desktop

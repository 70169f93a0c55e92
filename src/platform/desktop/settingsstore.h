#pragma once

#include <QString>

namespace desktop {

/// The per-user settings: texts by application, section and key, in one file that only its user can read.
///
/// A write replaces the file as a whole (written beside it, flushed, renamed), so that a crash or a full disk
/// leaves the old values; it re-reads the file first, under a lock, so that two running programs do not lose
/// each other's keys.
class SettingsStore {
  public:
    /// A store in the user's configuration folder.
    SettingsStore();
    /// A store in the given file; its folder is made by the first write.
    explicit SettingsStore(QString filePath);

    /// The stored text, or `defaultText` when the key is missing. Throws RuntimeError 75 when there is a file
    /// that cannot be read or is damaged: it is never overwritten then.
    QString GetSetting(const QString& application, const QString& section, const QString& key,
                       const QString& defaultText = {}) const;

    /// Stores a text. Throws RuntimeError 61 (disk full), 70 (permission), 76 (path), 75 (anything else).
    void SaveSetting(const QString& application, const QString& section, const QString& key,
                     const QString& text);

    /// Removes what killed writers left beside the file, and takes the file from the eyes of others. Nothing
    /// that keeps it from that is told.
    void tidy() const;

    QString filePath() const { return m_filePath; }

  private:
    QString m_filePath;
};

}  // namespace desktop

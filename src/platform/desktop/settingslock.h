#pragma once

#include <QString>

#include <memory>

namespace desktop {

/// Keeps other programs from writing a settings file while it lives. The system lets go of it when its
/// process ends, however that comes, and takes it from no process that lives.
class SettingsLock {
  public:
    /// Waits so many milliseconds for others. Throws RuntimeError 61, 70, 75 or 76, which name the settings
    /// file.
    SettingsLock(const QString& settingsPath, int milliseconds);
    ~SettingsLock();
    SettingsLock(const SettingsLock&) = delete;
    SettingsLock& operator=(const SettingsLock&) = delete;

  private:
    class Held;
    std::unique_ptr<Held> m_held;
};

}  // namespace desktop

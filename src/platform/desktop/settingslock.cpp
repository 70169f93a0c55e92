#include "platform/desktop/settingslock.h"

#include "platform/filewriting.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLockFile>
#include <QThread>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace desktop {

namespace {

constexpr const char* Suffix = ".lock";

[[noreturn]] void throwLocked(const QString& settingsPath) {
    platform::throwWriteFailure(settingsPath, QStringLiteral("another program is keeping it locked"));
}

}  // namespace

#ifdef Q_OS_UNIX

/// Two bytes of a file beside the settings, which the system locks. The first is held while waiting for the
/// second, so that a program that saves one setting after the other cannot come before those who wait.
class SettingsLock::Held {
  public:
    Held(const QString& settingsPath, int milliseconds) : m_settingsPath(settingsPath), m_end(milliseconds) {
        const QByteArray path = QFile::encodeName(settingsPath) + Suffix;
        m_descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                              S_IRUSR | S_IWUSR);
        if (m_descriptor < 0) platform::throwWriteFailure(settingsPath, qt_error_string(errno));
        try {
            take(Place);
            take(Lock);
            set(Place, F_UNLCK);
        } catch (...) {
            ::close(m_descriptor);
            throw;
        }
    }

    ~Held() { ::close(m_descriptor); }

  private:
    enum Byte { Place, Lock };

    bool set(Byte byte, short type) const {
        struct flock range {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = byte;
        range.l_len = 1;
        return ::fcntl(m_descriptor, F_SETLK, &range) == 0;
    }

    void take(Byte byte) const {
        static constexpr int MillisecondsBetween = 1;
        while (!set(byte, F_WRLCK)) {
            const bool taken = errno == EACCES || errno == EAGAIN;
            if (!taken) platform::throwWriteFailure(m_settingsPath, qt_error_string(errno));
            if (m_end.hasExpired()) throwLocked(m_settingsPath);
            QThread::msleep(MillisecondsBetween);
        }
    }

    QString m_settingsPath;
    QDeadlineTimer m_end;
    int m_descriptor = -1;
};

#else

class SettingsLock::Held {
  public:
    Held(const QString& settingsPath, int milliseconds) : m_file(settingsPath + QLatin1StringView(Suffix)) {
        // Only a killed holder's file can be taken away before its time: an open one cannot be removed.
        static constexpr int StaleMilliseconds = 1000;
        m_file.setStaleLockTime(StaleMilliseconds);
        if (m_file.tryLock(milliseconds)) return;
        if (m_file.error() == QLockFile::LockFailedError) throwLocked(settingsPath);
        platform::throwWriteFailure(settingsPath, QStringLiteral("its lock cannot be made"));
    }

  private:
    QLockFile m_file;
};

#endif

SettingsLock::SettingsLock(const QString& settingsPath, int milliseconds)
    : m_held(std::make_unique<Held>(settingsPath, milliseconds)) {}

SettingsLock::~SettingsLock() = default;

}  // namespace desktop

#include "platform/desktop/settingsfile.h"

#include "platform/filewriting.h"
#include "platform/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryFile>

#include <cerrno>
#include <filesystem>
#include <system_error>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <io.h>
#endif

namespace desktop {
namespace {

using platform::RuntimeError;
using platform::throwWriteFailure;
using platform::writeAll;

constexpr QFileDevice::Permissions OwnerReadsAndWrites = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions OwnerOnly = OwnerReadsAndWrites | QFileDevice::ExeOwner;
constexpr QFileDevice::Permissions Others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                            QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                            QFileDevice::WriteOther | QFileDevice::ExeOther;

/// Opens a regular file and nothing else: a pipe in its place would wait for somebody to write into it.
/// Returns what is in the way of it, nothing where the file is open.
QString openToRead(QFile& file) {
    const QString otherKind = QStringLiteral("it is no regular file");
#ifdef Q_OS_UNIX
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) return qt_error_string(errno);
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return otherKind;
    }
    return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ? QString()
                                                                                    : file.errorString();
#else
    if (!file.exists()) return qt_error_string(ENOENT);
    if (!QFileInfo(file).isFile()) return otherKind;
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
#endif
}

bool flush(const QFile& file) {
#ifdef Q_OS_UNIX
    return ::fsync(file.handle()) == 0;
#else
    return ::_commit(file.handle()) == 0;
#endif
}

/// Writes a new file to the disk, which others can never open, not even while it is empty. It is no name in
/// the folder yet, where the system has such files, so that a writer who is killed leaves nothing.
void writeNew(QTemporaryFile& file, const QByteArray& bytes, const QString& settingsPath) {
    if (!file.open()) throwWriteFailure(settingsPath, file.errorString());
    QFile unbuffered;  // what a full disk did not take would stay in the buffer
    if (!unbuffered.open(file.handle(), QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !writeAll(unbuffered, bytes)) {
        throwWriteFailure(settingsPath, unbuffered.errorString());
    }
    if (!flush(file)) throwWriteFailure(settingsPath, qt_error_string(errno));
}

void makeFolders(const QString& folder) {
    if (QFileInfo(folder).isDir()) return;
    const QString above = QFileInfo(folder).path();
    if (above != folder) makeFolders(above);
    errno = 0;
    if (!QDir().mkdir(folder, OwnerOnly) && !QFileInfo(folder).isDir()) {
        throwWriteFailure(folder, qt_error_string(errno));
    }
}

QString targetOf(const QString& path) {
    const QFileInfo file(path);
    return file.isSymLink() && file.exists() ? file.canonicalFilePath() : path;
}

}  // namespace

SettingsFile::SettingsFile(const QString& path) : m_path(targetOf(path)) {}

QJsonObject SettingsFile::read() const {
    QFile file(m_path);
    const QString obstacle = openToRead(file);
    if (obstacle == qt_error_string(ENOENT)) return {};
    if (!obstacle.isEmpty()) refuse(obstacle);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) refuse(file.errorString());
    if (bytes.trimmed().isEmpty()) refuse(QStringLiteral("it is empty"));

    QJsonParseError problem{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &problem);
    if (problem.error != QJsonParseError::NoError) {
        refuse(QStringLiteral("it is damaged at byte %1: %2").arg(problem.offset).arg(problem.errorString()));
    }
    if (!document.isObject()) refuse(QStringLiteral("it is damaged: no settings in it"));
    return document.object();
}

void SettingsFile::refuse(const QString& reason) const {
    throw RuntimeError(
        platform::errors::PathFileAccess,
        QStringLiteral("Path/File access error: the settings file \"%1\" cannot be read (%2).\r\n\r\n"
                       "It is left as it is. Close the program, then mend the file or move it away; "
                       "without it the program starts as for the first time.")
            .arg(QDir::toNativeSeparators(m_path), reason));
}

void SettingsFile::makeFolder() const {
    makeFolders(QFileInfo(m_path).path());
}

void SettingsFile::replace(const QJsonObject& content) const {
    const QFileInfo old(m_path);
    if (old.exists() && !old.isWritable()) throwWriteFailure(m_path, qt_error_string(EACCES));
    QTemporaryFile file(m_path + QStringLiteral(".new-XXXXXX"));
    writeNew(file, QJsonDocument(content).toJson(), m_path);
    const std::filesystem::path newPath = QFileInfo(file.fileName()).filesystemFilePath();
    file.close();
    std::error_code failure;
    std::filesystem::rename(newPath, old.filesystemFilePath(), failure);
    if (failure) throwWriteFailure(m_path, qt_error_string(failure.value()));
    file.setAutoRemove(false);
}

bool SettingsFile::isTidy() const {
    return isPrivate() && leftovers().isEmpty();
}

void SettingsFile::tidy() const {
    for (const QString& leftover : leftovers())
        QFile::remove(leftover);
    if (!isPrivate()) QFile::setPermissions(m_path, OwnerReadsAndWrites);
}

bool SettingsFile::isPrivate() const {
#ifdef Q_OS_UNIX
    // Only a file is ever made private: a link may lead to a device that others need.
    return !QFileInfo(m_path).isFile() || !QFile::permissions(m_path).testAnyFlags(Others);
#else
    return true;  // the user's folder is its user's own
#endif
}

QStringList SettingsFile::leftovers() const {
    const QFileInfo file(m_path);
    QStringList paths;
    const QStringList names =
        file.dir().entryList({QStringLiteral("*.new-??????")}, QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        if (name.startsWith(file.fileName() + QStringLiteral(".new-"))) paths += file.dir().filePath(name);
    }
    return paths;
}

}  // namespace desktop

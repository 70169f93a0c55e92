#include "platform/desktop/settingsfile.h"

#include "platform/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>

namespace desktop {
namespace {

using platform::RuntimeError;

constexpr QFileDevice::Permissions OwnerReadsAndWrites = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions OwnerOnly = OwnerReadsAndWrites | QFileDevice::ExeOwner;

// Qt keeps the system's words of a failed write, not its number.
bool saysOneOf(const QString& message, std::initializer_list<int> codes) {
    return std::any_of(codes.begin(), codes.end(),
                       [&](int code) { return message == qt_error_string(code); });
}

#ifdef Q_OS_WIN
// winerror.h: ERROR_HANDLE_DISK_FULL, ERROR_DISK_FULL; ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT
constexpr std::initializer_list<int> DiskFullCodes = {39, 112};
constexpr std::initializer_list<int> PermissionCodes = {5, 19};
#else
constexpr std::initializer_list<int> DiskFullCodes = {ENOSPC, EDQUOT, EFBIG};
constexpr std::initializer_list<int> PermissionCodes = {EACCES, EPERM, EROFS};
#endif

[[noreturn]] void throwReadFailure(const QString& path, const QString& reason) {
    throw RuntimeError(platform::errors::PathFileAccess,
                       QStringLiteral("Path/File access error: the settings file \"%1\" cannot be read (%2)")
                           .arg(QDir::toNativeSeparators(path), reason));
}

// Devices are opened without Qt's buffer: QSaveFile does not notice when what the buffer held cannot be
// written. What a full disk still takes of a write is no failure; writing the rest is.
bool writeAll(QFileDevice& file, const QByteArray& bytes) {
    for (qint64 written = 0; written < bytes.size();) {
        const qint64 taken = file.write(bytes.constData() + written, bytes.size() - written);
        if (taken <= 0) return false;
        written += taken;
    }
    return true;
}

// Writes into a temporary file, which others can never open, not even when it is still empty.
void writeTemporary(QTemporaryFile& temporary, const QByteArray& bytes) {
    if (!temporary.open()) throwWriteFailure(temporary.fileTemplate(), temporary.errorString());
    QFile file(temporary.fileName());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !writeAll(file, bytes)) {
        throwWriteFailure(file.fileName(), file.errorString());
    }
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

}  // namespace

void throwWriteFailure(const QString& path, const QString& systemMessage) {
    qint32 number = platform::errors::PathFileAccess;
    QString summary = QStringLiteral("Path/File access error");
    if (saysOneOf(systemMessage, DiskFullCodes)) {
        number = platform::errors::DiskFull;
        summary = QStringLiteral("Disk full");
    } else if (saysOneOf(systemMessage, PermissionCodes)) {
        number = platform::errors::PermissionDenied;
        summary = QStringLiteral("Permission denied");
    }
    throw RuntimeError(number, QStringLiteral("%1: the settings cannot be written to \"%2\" (%3)")
                                   .arg(summary, QDir::toNativeSeparators(path), systemMessage));
}

QJsonObject SettingsFile::read() const {
    QFile file(m_path);
    if (!file.exists()) {
        const QFileInfo folder(QFileInfo(m_path).path());
        if (folder.exists() && !folder.isExecutable()) throwReadFailure(m_path, qt_error_string(EACCES));
        return {};
    }
    if (!file.open(QIODevice::ReadOnly)) throwReadFailure(m_path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) throwReadFailure(m_path, file.errorString());

    QJsonParseError problem{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &problem);
    if (problem.error != QJsonParseError::NoError) {
        throwReadFailure(
            m_path,
            QStringLiteral("it is damaged at byte %1: %2").arg(problem.offset).arg(problem.errorString()));
    }
    if (!document.isObject()) throwReadFailure(m_path, QStringLiteral("it is damaged: no settings in it"));
    return document.object();
}

void SettingsFile::makeFolder() const {
    makeFolders(QFileInfo(m_path).path());
}

void SettingsFile::probe() const {
    QTemporaryFile file(m_path + QStringLiteral(".XXXXXX"));
    writeTemporary(file, QByteArray(4096, ' '));
}

void SettingsFile::create() const {
    QTemporaryFile first(m_path + QStringLiteral(".XXXXXX"));
    writeTemporary(first, "{}\n");
    if (!first.rename(m_path)) throwWriteFailure(m_path, first.errorString());
    first.setAutoRemove(false);
}

void SettingsFile::replace(const QJsonObject& content) const {
    // The file that takes another's place is its user's own from the start, one that takes none is not.
    if (!QFileInfo::exists(m_path)) create();
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        const bool readOnly = QFileInfo::exists(m_path) && !QFileInfo(m_path).isWritable();
        throwWriteFailure(m_path, readOnly ? qt_error_string(EACCES) : file.errorString());
    }
    if (!file.setPermissions(OwnerReadsAndWrites)) throwWriteFailure(m_path, file.errorString());
    if (!writeAll(file, QJsonDocument(content).toJson()) || !file.commit()) {
        throwWriteFailure(m_path, file.errorString());
    }
}

}  // namespace desktop

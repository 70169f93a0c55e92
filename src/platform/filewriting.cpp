#include "platform/filewriting.h"

#include "platform/runtimeerror.h"

#include <QDir>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>

namespace platform {

namespace {

struct Kind {
    qint32 number;
    const char* summary;
    std::initializer_list<int> systemCodes;
};

#ifdef Q_OS_WIN
// winerror.h: ERROR_HANDLE_DISK_FULL, ERROR_DISK_FULL; ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT;
// ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND
const std::initializer_list<int> DiskFullCodes = {39, 112};
const std::initializer_list<int> PermissionCodes = {5, 19};
const std::initializer_list<int> PathCodes = {2, 3};
#else
const std::initializer_list<int> DiskFullCodes = {ENOSPC, EDQUOT, EFBIG};
const std::initializer_list<int> PermissionCodes = {EACCES, EPERM, EROFS};
const std::initializer_list<int> PathCodes = {ENOENT, ENOTDIR};
#endif

}  // namespace

void throwWriteFailure(const QString& path, const QString& systemMessage) {
    const Kind kinds[] = {{errors::DiskFull, "Disk full", DiskFullCodes},
                          {errors::PermissionDenied, "Permission denied", PermissionCodes},
                          {errors::PathNotFound, "Path not found", PathCodes}};
    // Qt keeps the system's words of a failed write, not its number.
    const auto* const kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& candidate) {
        return std::any_of(candidate.systemCodes.begin(), candidate.systemCodes.end(),
                           [&](int code) { return systemMessage == qt_error_string(code); });
    });
    const bool known = kind != std::end(kinds);
    throw RuntimeError(known ? kind->number : errors::PathFileAccess,
                       QStringLiteral("%1: \"%2\" cannot be written (%3)")
                           .arg(QLatin1StringView(known ? kind->summary : "Path/File access error"),
                                QDir::toNativeSeparators(path), systemMessage));
}

bool writeAll(QFileDevice& file, const QByteArray& bytes) {
    // What a full disk still takes of a write is no failure; writing the rest is.
    for (qint64 written = 0; written < bytes.size();) {
        const qint64 taken = file.write(bytes.constData() + written, bytes.size() - written);
        if (taken <= 0) return false;
        written += taken;
    }
    return true;
}

void saveFile(const QString& path, const std::function<void(QIODevice&)>& write) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) throwWriteFailure(path, file.errorString());
    write(file);
    if (!file.commit()) throwWriteFailure(path, file.errorString());
}

}  // namespace platform

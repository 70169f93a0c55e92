#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <functional>

namespace platform {

/// The failure behind a system's message about a file that cannot be written: RuntimeError 61 (disk full),
/// 70 (permission denied), 76 (path not found) or 75 (any other).
[[noreturn]] void throwWriteFailure(const QString& path, const QString& systemMessage);

/// Writes all bytes to a file that was opened without Qt's buffer; false when the system does not take them
/// all, the file's errorString() then says why.
bool writeAll(QFileDevice& file, const QByteArray& bytes);

/// Has a file written, whole or not at all: until all of it is there, a file of that name stays as it is.
/// Throws as throwWriteFailure does; `write` need not look for failures.
void saveFile(const QString& path, const std::function<void(QIODevice&)>& write);

}  // namespace platform

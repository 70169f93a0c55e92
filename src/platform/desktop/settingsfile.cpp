#include "platform/desktop/settingsfile.h"

#include "platform/filewriting.h"
#include "platform/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTemporaryFile>

#include <cerrno>

namespace desktop {
namespace {

using platform::RuntimeError;
using platform::throwWriteFailure;
using platform::writeAll;

constexpr QFileDevice::Permissions OwnerReadsAndWrites = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions OwnerOnly = OwnerReadsAndWrites | QFileDevice::ExeOwner;

[[noreturn]] void throwReadFailure(const QString& path, const QString& reason) {
    throw RuntimeError(platform::errors::PathFileAccess,
                       QStringLiteral("Path/File access error: the settings file \"%1\" cannot be read (%2)")
                           .arg(QDir::toNativeSeparators(path), reason));
}

// Devices are opened without Qt's buffer: QSaveFile does not notice when what the buffer held cannot be
// written.

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

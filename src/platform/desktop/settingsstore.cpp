#include "platform/desktop/settingsstore.h"

#include "platform/desktop/settingsfile.h"
#include "platform/filewriting.h"
#include "platform/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLockFile>
#include <QStandardPaths>

#include <cerrno>

namespace desktop {
namespace {

constexpr int LockMilliseconds = 5000;

QString defaultFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QStringLiteral("/settings.json");
}

// A member of the file that should be what `isWanted` says, where it is there at all.
QJsonValue member(const QString& filePath, const QJsonObject& object, const QString& name,
                  bool (QJsonValue::*isWanted)() const) {
    const QJsonValue value = object.value(name);
    if (!value.isUndefined() && !(value.*isWanted)()) {
        throw platform::RuntimeError(
            platform::errors::PathFileAccess,
            QStringLiteral("Path/File access error: the settings file \"%1\" is damaged at \"%2\"")
                .arg(QDir::toNativeSeparators(filePath), name));
    }
    return value;
}

QJsonObject section(const QString& filePath, const QJsonObject& all, const QString& application,
                    const QString& sectionName) {
    const QJsonObject own = member(filePath, all, application, &QJsonValue::isObject).toObject();
    return member(filePath, own, sectionName, &QJsonValue::isObject).toObject();
}

// The lock says only that it could not be made: writing something shows why.
[[noreturn]] void throwLockFailure(const QString& filePath, QLockFile::LockError error) {
    if (error == QLockFile::PermissionError) platform::throwWriteFailure(filePath, qt_error_string(EACCES));
    if (error == QLockFile::LockFailedError) {
        platform::throwWriteFailure(filePath, QStringLiteral("another program is keeping it locked"));
    }
    SettingsFile(filePath).probe();
    platform::throwWriteFailure(filePath, QStringLiteral("its lock cannot be made"));
}

}  // namespace

SettingsStore::SettingsStore() : SettingsStore(defaultFilePath()) {}

SettingsStore::SettingsStore(QString filePath) : m_filePath(std::move(filePath)) {}

QString SettingsStore::GetSetting(const QString& application, const QString& sectionName, const QString& key,
                                  const QString& defaultText) const {
    const QJsonObject all = SettingsFile(m_filePath).read();
    const QJsonObject values = section(m_filePath, all, application, sectionName);
    const QJsonValue value = member(m_filePath, values, key, &QJsonValue::isString);
    return value.isUndefined() ? defaultText : value.toString();
}

void SettingsStore::SaveSetting(const QString& application, const QString& sectionName, const QString& key,
                                const QString& text) {
    const SettingsFile file(m_filePath);
    file.makeFolder();
    QLockFile lock(m_filePath + QStringLiteral(".lock"));
    if (!lock.tryLock(LockMilliseconds)) throwLockFailure(m_filePath, lock.error());

    QJsonObject all = file.read();
    QJsonObject values = section(m_filePath, all, application, sectionName);
    if (member(m_filePath, values, key, &QJsonValue::isString) == text) return;
    values.insert(key, text);
    QJsonObject own = all.value(application).toObject();
    own.insert(sectionName, values);
    all.insert(application, own);
    file.replace(all);
}

}  // namespace desktop

#include "platform/desktop/settingsstore.h"

#include "platform/desktop/settingsfile.h"
#include "platform/desktop/settingslock.h"
#include "platform/runtimeerror.h"

#include <QJsonObject>
#include <QStandardPaths>

namespace desktop {
namespace {

constexpr int LockMilliseconds = 5000;

QString defaultFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QStringLiteral("/settings.json");
}

// A member of the file that should be what `isWanted` says, where it is there at all.
QJsonValue member(const SettingsFile& file, const QJsonObject& object, const QString& name,
                  bool (QJsonValue::*isWanted)() const) {
    const QJsonValue value = object.value(name);
    if (!value.isUndefined() && !(value.*isWanted)()) {
        file.refuse(QStringLiteral("it is damaged at \"%1\"").arg(name));
    }
    return value;
}

QJsonObject section(const SettingsFile& file, const QJsonObject& all, const QString& application,
                    const QString& sectionName) {
    const QJsonObject own = member(file, all, application, &QJsonValue::isObject).toObject();
    return member(file, own, sectionName, &QJsonValue::isObject).toObject();
}

}  // namespace

SettingsStore::SettingsStore() : SettingsStore(defaultFilePath()) {}

SettingsStore::SettingsStore(QString filePath) : m_filePath(std::move(filePath)) {}

QString SettingsStore::GetSetting(const QString& application, const QString& sectionName, const QString& key,
                                  const QString& defaultText) const {
    const SettingsFile file(m_filePath);
    const QJsonObject values = section(file, file.read(), application, sectionName);
    const QJsonValue value = member(file, values, key, &QJsonValue::isString);
    return value.isUndefined() ? defaultText : value.toString();
}

void SettingsStore::SaveSetting(const QString& application, const QString& sectionName, const QString& key,
                                const QString& text) {
    const SettingsFile file(m_filePath);
    file.makeFolder();
    const SettingsLock lock(m_filePath, LockMilliseconds);

    QJsonObject all = file.read();
    QJsonObject values = section(file, all, application, sectionName);
    const bool same = member(file, values, key, &QJsonValue::isString) == text;
    if (same && file.isPrivate()) return;
    values.insert(key, text);
    QJsonObject own = all.value(application).toObject();
    own.insert(sectionName, values);
    all.insert(application, own);
    file.replace(all);
}

void SettingsStore::tidy() const {
    const SettingsFile file(m_filePath);
    if (file.isTidy()) return;
    try {
        const SettingsLock lock(m_filePath, 0);
        file.tidy();
    } catch (const platform::RuntimeError&) {
        // Somebody writes just now, or this user may not: no reason not to start.
    }
}

}  // namespace desktop

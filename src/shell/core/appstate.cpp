#include "shell/core/appstate.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tw {

AppState::AppState(desktop::SettingsStore& store) : settings(store) {
    const QFileInfo file(QDir(QCoreApplication::applicationDirPath()), QStringLiteral("Tablewright.hlp"));
    if (file.exists()) helpFile = QDir::toNativeSeparators(file.filePath());
}

platform::RuntimeError AppState::settingFailure(const platform::RuntimeError& error, const QString& key,
                                                const QString& text) const {
    const QString advice = QStringLiteral(
        "%1: the setting \"%2\" in the file \"%3\" is \"%4\".\r\n\r\n"
        "It is left as it is. Close the program, then correct the value or take it out of the file.");
    return {error.number(),
            advice.arg(error.description(), key, QDir::toNativeSeparators(settings.filePath()), text)};
}

}  // namespace tw

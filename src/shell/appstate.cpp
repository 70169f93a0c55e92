#include "shell/appstate.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tw {

AppState::AppState(desktop::SettingsStore& store) : settings(store) {
    const QFileInfo file(QDir(QCoreApplication::applicationDirPath()), QStringLiteral("Tablewright.hlp"));
    if (file.exists()) helpFile = QDir::toNativeSeparators(file.filePath());
}

}  // namespace tw

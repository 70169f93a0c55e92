#include "platform/desktop/helpviewer.h"

#include "platform/desktop/helpwindow.h"
#include "platform/desktop/msgbox.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <optional>

namespace desktop {
namespace {

QString existingPath(const QString& helpFile) {
    if (QFile::exists(helpFile)) return helpFile;
    QString slashes = helpFile;
    return slashes.replace(u'\\', u'/');
}

std::optional<QString> readText(QFile& file) {
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(file.readAll());
    if (decoder.hasError() || text.contains(QChar(0)) || text.trimmed().isEmpty()) return std::nullopt;
    return text.remove(u'\r');
}

HelpWindow* openWindow(QWidget* owner) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* help = qobject_cast<HelpWindow*>(window)) return help;
    }
    return new HelpWindow(owner);
}

}  // namespace

bool WinHelp(QWidget* window, const QString& helpFile, HelpCommand command, const QString& key) {
    QFile file(existingPath(helpFile));
    const std::optional<QString> text = readText(file);
    if (!text) {
        const QString failure =
            file.exists() ? QStringLiteral("cannot be read") : QStringLiteral("cannot be found");
        MsgBox(QStringLiteral("The help file \"%1\" %2.")
                   .arg(QDir::toNativeSeparators(file.fileName()), failure),
               MsgBoxIcon::Exclamation);
        return false;
    }
    HelpWindow* help = openWindow(window->window());
    help->setTopics(helpTopics(*text), QFileInfo(file).path());
    help->setWindowTitle(QStringLiteral("%1 Help").arg(QGuiApplication::applicationDisplayName()));
    if (command == HelpCommand::PartialKey) {
        help->showSearch(key);
    } else {
        help->showContents();
    }
    help->show();
    help->raise();
    help->activateWindow();
    return true;
}

}  // namespace desktop

#include "dbaccess/connectionpool.h"
#include "icons/icons.h"
#include "platform/desktop/application.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/settingsstore.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"
#include "stage.h"
#include "support/sampleserverprocess.h"

#include <QCommandLineParser>
#include <QPalette>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

/// What a desktop in dark colours hands to its programs.
QPalette darkColours() {
    QPalette dark(QColor(53, 53, 53));
    for (const QPalette::ColorRole ground : {QPalette::Base, QPalette::ToolTipBase})
        dark.setColor(ground, QColor(30, 30, 30));
    dark.setColor(QPalette::AlternateBase, QColor(42, 42, 42));
    for (const QPalette::ColorRole text :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        dark.setColor(text, QColor(225, 225, 225));
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, text, QColor(130, 130, 130));
    dark.setColor(QPalette::PlaceholderText, QColor(225, 225, 225, 128));
    dark.setColor(QPalette::Highlight, QColor(42, 110, 180));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(110, 170, 255));
    return dark;
}

/// Walks all roads on a program with fresh settings beside a fresh server.
void walk(tour::Stage& stage) {
    testsupport::SampleServerProcess server;
    if (!server.start()) throw tour::Failure(QStringLiteral("no sample server: ") + server.errorText());
    const QTemporaryDir folder;
    desktop::SettingsStore settings(folder.filePath(QStringLiteral("settings.json")));
    tw::AppState state(settings);
    state.connectionPool = std::make_shared<tw::ConnectionPool>();
    tw::frmMain frame(state);
    frame.Form_Load();
    frame.show();

    tour::Place place{stage, frame, state, server.serverText()};
    stage.waitFor([&] { return frame.isActiveWindow(); }, QStringLiteral("the frame is on the screen"));
    tour::walkConnecting(place);
    tour::walkBrowsing(place);
    tour::walkExporting(place);
    tour::walkOptions(place);
    tour::walkQuerying(place);
    tour::walkWindows(place);
    tour::walkComparing(place);
    tour::walkLeaving(place);
    stage.expect(server.stop() == 0, QStringLiteral("the sample server ends in order"));
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(tw::ApplicationTitle);
    QCoreApplication::setApplicationVersion(QStringLiteral(TW_VERSION));
    desktop::Application application(argc, argv);
    desktop::Application::setWindowIcon(tw::icon(QStringLiteral("tablewright")));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays a user's road through the program and leaves pictures of the screen."));
    parser.addHelpOption();
    const QCommandLineOption pictures(QStringLiteral("pictures"), QStringLiteral("Folder for the pictures."),
                                      QStringLiteral("folder"), QStringLiteral("tour-pictures"));
    const QCommandLineOption fontSize(QStringLiteral("font-size"), QStringLiteral("Size of the texts."),
                                      QStringLiteral("points"));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("In dark colours."));
    parser.addOptions({pictures, fontSize, dark});
    parser.process(application);
    if (parser.isSet(fontSize)) {
        QFont font = QApplication::font();
        font.setPointSizeF(parser.value(fontSize).toDouble());
        QApplication::setFont(font);
    }
    if (parser.isSet(dark)) QApplication::setPalette(darkColours());

    QString failure;
    desktop::setUnhandledFailureHandler([&](const platform::RuntimeError& error) {
        failure = QStringLiteral("run-time error %1: %2").arg(error.number()).arg(error.description());
    });
    try {
        tour::Stage stage(parser.value(pictures));
        walk(stage);
        if (failure.isEmpty()) {
            stage.say(QStringLiteral("The tour has ended well, with %1 pictures.").arg(stage.pictureCount()));
        }
    } catch (const std::exception& error) {
        failure = QString::fromUtf8(error.what());
    }
    if (failure.isEmpty()) return 0;
    QTextStream(stderr) << "The tour failed: " << failure << '\n';
    return 1;
}

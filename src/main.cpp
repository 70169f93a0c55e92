#include "dbaccess/connectionpool.h"
#include "icons/icons.h"
#include "platform/desktop/application.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/settingsstore.h"
#include "shell/appstate.h"
#include "shell/frmmain.h"

#include <memory>

namespace {

std::unique_ptr<tw::frmMain> Main(tw::AppState& state) {
    auto frame = std::make_unique<tw::frmMain>(state);
    frame->Form_Load();
    frame->show();
    return frame;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication::setApplicationName(tw::ApplicationTitle);
    QCoreApplication::setApplicationVersion(QStringLiteral(TW_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tablewright"));
    desktop::Application application(argc, argv);
    desktop::Application::setWindowIcon(tw::icon(QStringLiteral("tablewright")));

    desktop::SettingsStore settings;
    tw::AppState state(settings);
    state.connectionPool = std::make_shared<tw::ConnectionPool>();
    std::unique_ptr<tw::frmMain> frame;
    desktop::guard([&] { frame = Main(state); });
    return application.run();
}

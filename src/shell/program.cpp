#include "shell/program.h"

#include "dbaccess/connectionpool.h"
#include "icons/icons.h"
#include "platform/desktop/application.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/settingsstore.h"
#include "platform/runtimeerror.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <memory>

namespace tw {

namespace {

std::unique_ptr<frmMain> Main(AppState& state) {
    auto frame = std::make_unique<frmMain>(state);
    frame->Form_Load();
    frame->show();
    return frame;
}

}  // namespace

int runProgram(int& argc, char** argv, const std::function<void()>& made) {
    QCoreApplication::setApplicationName(ApplicationTitle);
    QCoreApplication::setApplicationVersion(QStringLiteral(TW_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tablewright"));
    desktop::Application application(argc, argv);
    desktop::Application::setWindowIcon(icon(QStringLiteral("tablewright")));
    if (made) made();

    desktop::SettingsStore settings;
    settings.tidy();
    AppState state(settings);
    state.connectionPool = std::make_shared<ConnectionPool>();
    std::unique_ptr<frmMain> frame;
    desktop::guard([&] { frame = Main(state); });
    if (frame != nullptr) {
        QObject::connect(&application, &QGuiApplication::commitDataRequest, frame.get(), [&frame] {
            try {
                frame->saveForLogOut();
            } catch (const platform::RuntimeError&) {
                // Nothing may be asked now; the frame tells it when it is closed.
            }
        });
    }
    return application.run();
}

}  // namespace tw

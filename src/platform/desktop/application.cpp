#include "platform/desktop/application.h"

#include "platform/desktop/failures.h"
#include "platform/desktop/widgetboxes.h"

namespace desktop {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    installWidgetBoxes();
}

int Application::run() {
    if (m_end.isEnding()) return 1;
    const int code = exec();
    return m_end.isEnding() ? 1 : code;
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        handleUnhandledFailure();
        return false;
    }
}

}  // namespace desktop

#include "platform/desktop/application.h"

#include "platform/desktop/failures.h"
#include "platform/desktop/widgetboxes.h"

namespace desktop {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    installWidgetBoxes();
    connect(&m_endSignals, &EndSignals::received, &m_end, [this] { m_end.end(); });
}

int Application::run() {
    if (m_end.isEnding()) return m_end.exitCode();
    const int code = exec();
    return m_end.isEnding() ? m_end.exitCode() : code;
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

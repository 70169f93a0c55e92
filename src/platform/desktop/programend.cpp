#include "platform/desktop/programend.h"

#include "platform/desktop/failures.h"
#include "platform/desktop/filedialog.h"
#include "platform/desktop/msgbox.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <cstdio>

namespace desktop {

ProgramEnd::ProgramEnd(QObject* parent) : QObject(parent) {
    setUnhandledFailureHandler([this](const platform::RuntimeError& error) { end(error); });
}

ProgramEnd::~ProgramEnd() {
    setUnhandledFailureHandler({});
}

void ProgramEnd::end(const platform::RuntimeError& error) {
    m_exitCode = 1;
    if (m_ending) {
        std::fprintf(stderr, "While ending: run-time error '%d': %s\n", error.number(), error.what());
        return;
    }
    m_ending = true;
    MsgBox(QStringLiteral("Run-time error '%1':\r\n\r\n%2").arg(error.number()).arg(error.description()),
           MsgBoxIcon::Critical);
    end();
}

void ProgramEnd::end() {
    m_ending = true;
    if (m_closing) return;
    setMsgBoxAnswerer([](const MsgBoxRequest& request) { return request.defaultButton; });
    setSaveFileAnswerer([](const SaveFileRequest&) { return std::nullopt; });
    closeWindows();
    QCoreApplication::exit(m_exitCode);
    // An event loop that starts only now does not know of that; it serves this first.
    QMetaObject::invokeMethod(
        qApp, [code = m_exitCode] { QCoreApplication::exit(code); }, Qt::QueuedConnection);
}

void ProgramEnd::closeWindows() {
    m_closing = true;
    qApp->installEventFilter(this);
    // The last window's closing would quit with code 0.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication::closeAllWindows();
    // A window that refuses keeps those after it from being asked.
    for (const QPointer<QWidget> window : QApplication::topLevelWidgets()) {
        if (window != nullptr && window->isVisible()) window->close();
        if (window != nullptr) window->hide();
    }
}

bool ProgramEnd::eventFilter(QObject* watched, QEvent* event) {
    if (m_closing && event->type() == QEvent::Show && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        if (widget->isWindow()) {
            QMetaObject::invokeMethod(widget, &QWidget::close, Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace desktop

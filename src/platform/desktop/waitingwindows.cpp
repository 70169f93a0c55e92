#include "platform/desktop/waitingwindows.h"

#include "platform/ado/attendant.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

// Keys and clicks that come from the window system go by these, through shortcuts, modality and double
// clicks; they are part of what Qt exports for its test library (qtestkeyboard.h, qtestmouse.h).
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString& text, bool repeated,
                                    ushort count);
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global,
                                      Qt::MouseButtons state, Qt::MouseButton button, QEvent::Type type,
                                      Qt::KeyboardModifiers modifiers, int timestamp);

namespace desktop {

WaitingWindows::WaitingWindows(QObject* parent) : QObject(parent) {
    ado::setAttendant([this] { return attend(); });
}

WaitingWindows::~WaitingWindows() {
    ado::setAttendant({});
}

bool WaitingWindows::attend() {
    if (m_serving) return true;
    m_serving = true;
    m_escaped = false;
    qApp->installEventFilter(this);
    // Sockets would bring the end of the program, asked for by a signal or the desktop, into the routine.
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    qApp->removeEventFilter(this);
    m_serving = false;
    if (!m_held.empty()) scheduleRelease();
    return !m_escaped;
}

bool WaitingWindows::eventFilter(QObject* watched, QEvent* event) {
    if (!event->spontaneous()) return false;
    switch (event->type()) {
        // Windows get them first, and widgets see none of what is held here; only these go to widgets at
        // once.
        case QEvent::ShortcutOverride:
            event->accept();
            return true;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            return holdKey(watched, *event);
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
        case QEvent::Close:
            hold(watched, *event);
            return true;
        // Of these the first follow from presses when they are released.
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::Wheel:
        case QEvent::NativeGesture:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

bool WaitingWindows::holdKey(QObject* watched, QEvent& event) {
    if (static_cast<QKeyEvent&>(event).key() == Qt::Key_Escape) {
        m_escaped |= event.type() == QEvent::KeyPress;
    } else {
        hold(watched, event);
    }
    event.accept();
    return true;
}

void WaitingWindows::hold(QObject* watched, const QEvent& event) {
    if (auto* window = qobject_cast<QWindow*>(watched))
        m_held.push_back({window, std::unique_ptr<QEvent>(event.clone())});
}

void WaitingWindows::scheduleRelease() {
    if (std::exchange(m_releaseScheduled, true)) return;
    QMetaObject::invokeMethod(this, &WaitingWindows::release, Qt::QueuedConnection);
}

/// Hands one of them on, as it would have come by itself. What it sets off may serve events in its turn, and
/// then the next follows there.
void WaitingWindows::release() {
    m_releaseScheduled = false;
    if (m_serving || m_held.empty()) return;
    const Held held = std::move(m_held.front());
    m_held.pop_front();
    if (!m_held.empty()) scheduleRelease();
    if (held.window.isNull()) return;
    if (held.event->type() == QEvent::Close) {
        const QWindow* modal = QGuiApplication::modalWindow();
        if (modal == nullptr || modal == held.window) held.window->close();
    } else if (const auto* key = dynamic_cast<const QKeyEvent*>(held.event.get())) {
        qt_handleKeyEvent(held.window, key->type(), key->key(), key->modifiers(), key->text(),
                          key->isAutoRepeat(), static_cast<ushort>(key->count()));
    } else if (const auto* mouse = dynamic_cast<const QMouseEvent*>(held.event.get())) {
        qt_handleMouseEvent(held.window, mouse->position(), mouse->globalPosition(), mouse->buttons(),
                            mouse->button(), mouse->type(), mouse->modifiers(),
                            static_cast<int>(mouse->timestamp()));
    }
}

}  // namespace desktop

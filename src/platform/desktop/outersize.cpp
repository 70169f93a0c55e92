#include "platform/desktop/outersize.h"

#include <QEvent>
#include <QWidget>

namespace desktop {

OuterSize::OuterSize(QWidget& window, const QSize& outer) : QObject(&window), m_window(window) {
    window.resize(outer);
    m_outer = window.size();
    window.installEventFilter(this);
}

bool OuterSize::eventFilter(QObject*, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Paint) {
        QMetaObject::invokeMethod(this, &OuterSize::fit, Qt::QueuedConnection);
    }
    return false;
}

void OuterSize::fit() {
    if (!m_window.isVisible() || m_window.isMaximized() || m_window.isMinimized()) return;
    const QSize frame = m_window.frameGeometry().size() - m_window.size();
    if (frame.isNull()) return;
    m_window.removeEventFilter(this);
    if (m_window.size() == m_outer) m_window.resize(m_outer - frame);
    deleteLater();
}

}  // namespace desktop

#include "platform/desktop/splitterhandle.h"

#include "platform/desktop/twips.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace desktop {

namespace {
constexpr int DragLimit = 500;
}

SplitterHandle::SplitterHandle(Qt::Orientation across, QWidget& bar, QWidget* window)
    : QWidget(window), m_across(across), m_bar(bar) {
    setCursor(across == Qt::Horizontal ? Qt::SplitHCursor : Qt::SplitVCursor);
    setFocusPolicy(Qt::TabFocus);
    m_bar.setAutoFillBackground(true);
    m_bar.setBackgroundRole(QPalette::Highlight);
    m_bar.hide();
}

int SplitterHandle::barPosition() const {
    return toTwips(m_across == Qt::Horizontal ? m_bar.x() : m_bar.y());
}

void SplitterHandle::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_bar.setGeometry(geometry());
    m_bar.raise();
    m_bar.show();
    m_dragging = true;
}

void SplitterHandle::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging) return;
    moveBar(toTwips(m_across == Qt::Horizontal ? x() + event->pos().x() : y() + event->pos().y()));
}

/// To a position in twips, or to the nearest that is far enough inside the window.
void SplitterHandle::moveBar(int proposed) {
    const bool horizontal = m_across == Qt::Horizontal;
    const int extent = toTwips(horizontal ? parentWidget()->width() : parentWidget()->height());
    // Not std::clamp: a window too small for both limits obeys the second.
    int position = std::max(proposed, DragLimit);
    position = std::min(position, extent - DragLimit);
    const int pixels = toPixels(position);
    m_bar.move(horizontal ? QPoint(pixels, m_bar.y()) : QPoint(m_bar.x(), pixels));
}

bool SplitterHandle::event(QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    return QWidget::event(event);
}

void SplitterHandle::keyPressEvent(QKeyEvent* event) {
    static constexpr int Step = 225;
    const bool horizontal = m_across == Qt::Horizontal;
    const int key = event->key();
    const bool back = key == (horizontal ? Qt::Key_Left : Qt::Key_Up);
    if (!back && key != (horizontal ? Qt::Key_Right : Qt::Key_Down)) return QWidget::keyPressEvent(event);
    moveBar(toTwips(horizontal ? x() : y()) + (back ? -Step : Step));
    Q_EMIT released();
    event->accept();
}

void SplitterHandle::paintEvent(QPaintEvent*) {
    if (hasFocus()) QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
}

void SplitterHandle::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_dragging || event->button() != Qt::LeftButton) return;
    m_dragging = false;
    m_bar.hide();
    Q_EMIT released();
}

void SplitterHandle::moveEvent(QMoveEvent*) {
    if (!m_dragging) m_bar.setGeometry(geometry());
}

void SplitterHandle::resizeEvent(QResizeEvent*) {
    if (!m_dragging) m_bar.setGeometry(geometry());
}

}  // namespace desktop

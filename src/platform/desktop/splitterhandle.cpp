#include "platform/desktop/splitterhandle.h"

#include "platform/desktop/twips.h"

#include <QMouseEvent>

#include <algorithm>

namespace desktop {

namespace {
constexpr int DragLimit = 500;
}

SplitterHandle::SplitterHandle(Qt::Orientation across, QWidget& bar, QWidget* window)
    : QWidget(window), m_across(across), m_bar(bar) {
    setCursor(across == Qt::Horizontal ? Qt::SplitHCursor : Qt::SplitVCursor);
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
    const bool horizontal = m_across == Qt::Horizontal;
    const int extent = toTwips(horizontal ? parentWidget()->width() : parentWidget()->height());
    const int proposed = toTwips(horizontal ? x() + event->pos().x() : y() + event->pos().y());
    // Not std::clamp: a window too small for both limits obeys the second.
    int position = std::max(proposed, DragLimit);
    position = std::min(position, extent - DragLimit);
    const int pixels = toPixels(position);
    m_bar.move(horizontal ? QPoint(pixels, m_bar.y()) : QPoint(m_bar.x(), pixels));
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

#include "platform/desktop/focusframe.h"

#include "platform/desktop/colours.h"

#include <QEvent>
#include <QFrame>
#include <QPainter>

namespace desktop::focusframe {

namespace {

constexpr int Width = 2;

void paint(QFrame& pane) {
    const QPalette& palette = pane.palette();
    const QColor ground = palette.color(QPalette::Base);
    QPainter painter(&pane);
    // Filled, not drawn: lines of a scaled screen do not fall on whole pixels.
    const auto draw = [&](int inset, const QColor& color) {
        const QRect ring = pane.rect().adjusted(inset, inset, -inset, -inset);
        painter.setClipRegion(QRegion(ring) - QRegion(ring.adjusted(1, 1, -1, -1)));
        painter.fillRect(ring, color);
    };
    const bool focus = pane.hasFocus();
    const QColor mark = palette.color(QPalette::Active, QPalette::Highlight);
    draw(0, focus ? mark : colours::mixed(ground, palette.color(QPalette::Text), 0.35));
    draw(1, focus ? mark : ground);
}

}  // namespace

void setUp(QFrame& pane) {
    pane.setFrameStyle(QFrame::Box | QFrame::Plain);
    pane.setLineWidth(Width);
}

void follow(QFrame& pane, const QEvent& event) {
    if (event.type() == QEvent::FocusIn || event.type() == QEvent::FocusOut) pane.update();
    if (event.type() == QEvent::Paint) paint(pane);
}

}  // namespace desktop::focusframe

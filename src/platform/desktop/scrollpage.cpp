#include "platform/desktop/scrollpage.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>

namespace desktop {

namespace {

constexpr QSize WindowFrame(24, 48);
/// Tabs round their sizes on a scaled screen, and may leave their page a little less than they promised.
constexpr int Slack = 2;

/// What stands around a page in its window: a line of tabs, one of buttons, and margins.
QSize around(int line) {
    return {40, 40 + 3 * line};
}

}  // namespace

QSize roomOnScreen(const QWidget& widget) {
    return widget.screen()->availableSize() - WindowFrame;
}

ScrollPage::ScrollPage(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    resize(content->sizeHint());  // else it would show scroll bars until it is laid out
    setWidget(content);
    // The page looks like what it stands on.
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) {
        if (now != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(const_cast<QWidget*>(now));
    });
}

QSize ScrollPage::sizeHint() const {
    const QSize room = roomOnScreen(*this) - around(fontMetrics().height());
    QSize wanted = widget()->sizeHint() + QSize(Slack, Slack);
    if (wanted.height() > room.height()) wanted.rwidth() += verticalScrollBar()->sizeHint().width();
    if (wanted.width() > room.width()) wanted.rheight() += horizontalScrollBar()->sizeHint().height();
    return wanted.boundedTo(room);
}

QSize ScrollPage::minimumSizeHint() const {
    const int line = fontMetrics().height();
    return sizeHint().boundedTo({12 * line, 4 * line});
}

}  // namespace desktop

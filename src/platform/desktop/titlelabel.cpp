#include "platform/desktop/titlelabel.h"

#include "platform/desktop/tooltip.h"
#include "platform/showntext.h"

#include <QHelpEvent>
#include <QPainter>

namespace desktop {

namespace {
constexpr int Indent = 4;
}

TitleLabel::TitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setMargin(Indent);
}

void TitleLabel::setTitled(QWidget* view) {
    m_titled = view;
    setText(text());
}

void TitleLabel::setText(const QString& text) {
    QLabel::setText(text);
    if (m_titled) m_titled->setAccessibleName(platform::shownLine(text));
}

QSize TitleLabel::sizeHint() const {
    const QSize text(fontMetrics().horizontalAdvance(platform::shownLine(this->text())),
                     fontMetrics().height());
    return text.grownBy(QMargins(margin(), margin(), margin(), margin()));
}

QSize TitleLabel::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

QString TitleLabel::shownText() const {
    return fontMetrics().elidedText(platform::shownLine(text()), Qt::ElideRight, width() - 2 * margin());
}

bool TitleLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    const QString tip = shownText() == text() ? QString() : text();
    showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
    return true;
}

void TitleLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect().adjusted(margin(), 0, -margin(), 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

}  // namespace desktop

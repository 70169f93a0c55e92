#include "platform/desktop/tooltip.h"

#include "platform/showntext.h"

#include <QToolTip>

namespace desktop {

void showToolTip(const QPoint& screenPosition, const QString& text, QWidget* widget) {
    // What looks like markup is taken for it unless it is escaped.
    const QString shown = platform::shownLines(text, platform::ShownOfLine).toHtmlEscaped();
    const QString paragraph = QStringLiteral("<p style='white-space:pre-wrap'>%1</p>");
    QToolTip::showText(screenPosition, shown.isEmpty() ? QString() : paragraph.arg(shown), widget);
}

}  // namespace desktop

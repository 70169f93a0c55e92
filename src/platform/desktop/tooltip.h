#pragma once

#include <QPoint>
#include <QString>

class QWidget;

namespace desktop {

/// Shows a text from outside as the tool tip of a widget: no markup, and no more of it than can be read. An
/// empty text takes the tool tip away.
void showToolTip(const QPoint& screenPosition, const QString& text, QWidget* widget);

}  // namespace desktop

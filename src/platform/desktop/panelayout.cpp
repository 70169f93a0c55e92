#include "platform/desktop/panelayout.h"

#include "platform/desktop/twips.h"

#include <QWidget>

#include <algorithm>

namespace desktop::panelayout {

void place(QWidget& widget, int left, int top, int width, int height) {
    const QPoint topLeft(toPixels(left), toPixels(top));
    const QPoint end(toPixels(left + width), toPixels(top + height));
    widget.setGeometry(
        QRect(topLeft, QSize(std::max(0, end.x() - topLeft.x()), std::max(0, end.y() - topLeft.y()))));
}

void limit(int& position, int extent) {
    static constexpr int Limit = 1500;
    position = std::max(position, Limit);
    position = std::min(position, extent - Limit);
}

}  // namespace desktop::panelayout

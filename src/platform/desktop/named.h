#pragma once

#include <QString>

namespace desktop {

/// The widget, under an object name.
template <class Widget>
Widget* named(const QString& name, Widget* widget) {
    widget->setObjectName(name);
    return widget;
}

}  // namespace desktop

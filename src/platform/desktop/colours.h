#pragma once

#include <QColor>
#include <QPalette>

/// Colours between those of a palette, so that they suit light and dark ones.
namespace desktop::colours {

/// `share` 0 gives the one, 1 the other.
inline QColor mixed(const QColor& one, const QColor& other, double share) {
    const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

/// For what stands back behind other texts and is to be read all the same.
inline QColor faintText(const QPalette& palette) {
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.68);
}

/// Makes a selection pale where the focus is elsewhere, which palettes seldom do by themselves.
inline void paleWithoutFocus(QPalette& palette) {
    const QColor text = palette.color(QPalette::Text);
    palette.setColor(QPalette::Inactive, QPalette::Highlight,
                     mixed(palette.color(QPalette::Base), text, 0.2));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, text);
}

}  // namespace desktop::colours

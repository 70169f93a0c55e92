#include "platform/desktop/contrast.h"

#include "platform/desktop/colours.h"

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

double luminanceOf(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// `color`, moved towards `end` as far as it takes to stand out from `ground`.
QColor movedFrom(const QColor& ground, const QColor& color, const QColor& end) {
    constexpr double Step = 0.02;
    QColor moved = color;
    for (double share = Step; contrastOf(moved, ground) < LeastContrast && share <= 1; share += Step)
        moved = colours::mixed(color, end, share);
    return moved;
}

QColor opaque(const QColor& color, const QColor& ground) {
    return colours::mixed(ground, color, color.alphaF()).toRgb();
}

}  // namespace

double contrastOf(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminanceOf(one), luminanceOf(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette legible(QPalette palette) {
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor base = palette.color(group, QPalette::Base);
        const QColor text = palette.color(group, QPalette::Text);
        const auto set = [&](QPalette::ColorRole role, const QColor& color) {
            if (palette.color(group, role) != color) palette.setColor(group, role, color);
        };
        for (const QPalette::ColorRole role : {QPalette::PlaceholderText, QPalette::Link})
            set(role, movedFrom(base, opaque(palette.color(group, role), base), text));
        const QColor selected = palette.color(group, QPalette::HighlightedText);
        const bool light = luminanceOf(selected) > 0.18;
        set(QPalette::Highlight, movedFrom(selected, palette.color(group, QPalette::Highlight),
                                           light ? QColor(Qt::black) : QColor(Qt::white)));
    }
    return palette;
}

}  // namespace desktop

#pragma once

#include <QColor>
#include <QPalette>

namespace desktop {

/// Least contrast of a text to its ground that everybody can read, as WCAG 2.1 has it (success
/// criterion 1.4.3).
inline constexpr double LeastContrast = 4.5;

/// From 1 (none) to 21 (black on white), by the relative luminances of two opaque colours.
double contrastOf(const QColor& one, const QColor& other);

/// A palette whose selections, links and placeholder texts can be read, which those of desktops cannot
/// always; all other colours as they are. What is disabled may be faint.
QPalette legible(QPalette palette);

}  // namespace desktop

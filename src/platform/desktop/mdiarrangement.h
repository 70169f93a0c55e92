#pragma once

#include <QRect>

#include <vector>

class QMdiArea;

namespace desktop {

/// The standard arrangements of a frame's children. A maximised child is restored first; minimised ones
/// take no part in the first three and keep their room at the bottom. The active child comes first when
/// tiling and lies on top in the cascade.
void cascade(QMdiArea& area);
/// One above the other over the full width; from four children on, in columns.
void tileHorizontally(QMdiArea& area);
/// Side by side over the full height; from four children on, in rows.
void tileVertically(QMdiArea& area);
/// Lines the minimised children up at the bottom, from the left, further rows above.
void arrangeIcons(QMdiArea& area);

/// Half of the room that a child leaves free in one direction, so the position that centres it: the
/// difference is rounded to a 32-bit integer (half to even), the half of that is not. All in twips. Throws
/// RuntimeError 6 when the difference is no such integer.
double centredPosition(double outsideTwips, double insideTwips);

/// The geometry behind the arrangements, in pixels.
namespace arrangement {

/// As many rectangles as asked for, which cover the area without gaps. `stacked` puts few of them one above
/// the other, else side by side.
std::vector<QRect> tiles(const QSize& area, int count, bool stacked);
/// Rectangles of one size, each a step further right and down, back at the corner when one would leave the
/// area.
std::vector<QRect> cascade(const QSize& area, int count, int step);
/// The places of icons of one size.
std::vector<QPoint> icons(const QSize& area, int count, const QSize& icon);

}  // namespace arrangement
}  // namespace desktop

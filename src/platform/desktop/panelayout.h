#pragma once

class QWidget;

/// What windows of panes between splitters share: their measures in twips.
namespace desktop::panelayout {

/// How wide a splitter's handle is.
inline constexpr int HandleSize = 60;

/// Puts a widget on a rectangle given in twips, each of its edges on the nearest pixel.
void place(QWidget& widget, int left, int top, int width, int height);

/// Brings a splitter's position to 1500 twips from either end of a window's inner extent. Where both cannot
/// be kept, the distance from the far end is.
void limit(int& position, int extent);

}  // namespace desktop::panelayout

#pragma once

class QMdiArea;
class QMdiSubWindow;
class QWidget;

namespace desktop {

/// Adds a window to the area. Its caption shows its window title as texts from outside are shown; the title
/// itself stays whole.
QMdiSubWindow* addCaptioned(QMdiArea& area, QWidget* window);

}  // namespace desktop

#pragma once

class QMdiSubWindow;

namespace desktop {

/// Lets the arrow keys move or size a window of an area after Move or Size of its own menu, whatever the
/// pointer does: Qt lets them move the pointer and the window follow it, which not every screen allows. With
/// Shift a step is four times as long.
void addChildKeys(QMdiSubWindow& child);

}  // namespace desktop

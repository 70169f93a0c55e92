#pragma once

namespace desktop {

/// Lets MsgBox and askSaveFileName show their boxes on the screen, above the active window.
void installWidgetBoxes();

}  // namespace desktop

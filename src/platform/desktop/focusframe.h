#pragma once

class QEvent;
class QFrame;

/// The frame around a pane, which shows whether the pane has the focus.
namespace desktop::focusframe {

/// Gives the pane its frame.
void setUp(QFrame& pane);
/// Due with every event of the pane, once the pane itself has handled it.
void follow(QFrame& pane, const QEvent& event);

}  // namespace desktop::focusframe

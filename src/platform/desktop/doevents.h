#pragma once

namespace desktop {

/// Lets the event loop run, at most once in some milliseconds: the calls between cost a clock read. Anything
/// may be clicked meanwhile, so the caller must expect its window to be closing when it returns.
void DoEvents();

}  // namespace desktop

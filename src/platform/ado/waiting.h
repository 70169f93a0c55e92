#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace ado {

/// How the waiting for a call ended.
enum class Ending { InTime, TimedOut, BrokenOff };

/// Runs a call that may wait for the wire on a thread of its own, and waits for it; the calling thread's
/// attendant is asked meanwhile and may break it off.
///
/// Then, or past `limit` (none: without limit), `interrupt` is called on the caller's thread to make the call
/// end. A call that goes on all the same, for half a second, is abandoned: it ends some time by itself, or
/// never, so that it must own whatever it touches; one that ended has let go of that. Throws what the call
/// throws, unless it was interrupted.
Ending runWithin(std::optional<std::chrono::milliseconds> limit, std::function<void()> call,
                 const std::function<void()>& interrupt);

}  // namespace ado

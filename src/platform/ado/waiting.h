#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace ado {

/// How a call ended that was not worth waiting for without limit.
enum class Ending { InTime, Interrupted, Abandoned };

/// Runs a call that may wait for the wire on a thread of its own, and waits for it.
///
/// Past `limit` (none: without limit) `interrupt` is called on the caller's thread to make the call end. A
/// call that goes on all the same, for half a second, is abandoned: it ends some time by itself, or never, so
/// that it must own whatever it touches; it has let go of that when this returns with another ending. Throws
/// what the call throws, unless it was interrupted.
Ending runWithin(std::optional<std::chrono::milliseconds> limit, std::function<void()> call,
                 const std::function<void()>& interrupt);

}  // namespace ado

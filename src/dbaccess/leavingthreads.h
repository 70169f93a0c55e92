#pragma once

#include <functional>

namespace tw {

/// Runs a task on a thread that nobody waits for before the program ends. The task must come to its end by
/// itself, and own what it touches.
void startLeavingThread(std::function<void()> task);

}  // namespace tw

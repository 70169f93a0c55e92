#pragma once

#include "result.h"

namespace bench {

/// Starts the program, to the point where its window is painted and nothing is left to do, in turn with a
/// program that shows an empty main window. No measures.
Result runStartCase(const Request& request);

}  // namespace bench

#pragma once

#include "result.h"

namespace bench {

/// Compares two systems whose rows are ready in memory: figures of the comparison itself, without a wire.
/// Measures: rows a side of each kind, and columns of the one table.
Result runEngineCase(const Request& request);

}  // namespace bench

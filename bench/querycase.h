#pragma once

#include "result.h"

namespace bench {

/// Runs a query for all rows of a table, as a result window does, and shows them. Measures: rows, columns.
Result runQueryCase(const Request& request);

}  // namespace bench

#pragma once

#include "result.h"

namespace bench {

/// Lists all rows of a table, and shows them. Measures: rows, columns.
Result runRowsCase(const Request& request);

}  // namespace bench

#pragma once

#include "result.h"

namespace bench {

/// Fills the tree of a server. Measures: databases, tables in each.
Result runTreeCase(const Request& request);
/// Fills the tree of a server with one database. Measures: its tables.
Result runTablesCase(const Request& request);

}  // namespace bench

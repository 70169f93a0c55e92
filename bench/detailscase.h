#pragma once

#include "result.h"

namespace bench {

/// Lists the details of a database. Measures: check constraints, columns of indexes, foreign keys.
Result runDetailsCase(const Request& request);

}  // namespace bench

#pragma once

#include "result.h"

namespace bench {

/// Lists the columns of a table. Measures: the columns.
Result runColumnsCase(const Request& request);

}  // namespace bench

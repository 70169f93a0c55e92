#pragma once

#include "result.h"

namespace bench {

/// Compares two databases, in turn with a bare loop over their catalogs. Measures: tables a side, columns in
/// each.
Result runCompareCase(const Request& request);
/// The same in turn with what a user can do without us: the FreeTDS command-line client prints both catalogs,
/// sort and diff do the rest.
Result runCompareClientCase(const Request& request);

}  // namespace bench

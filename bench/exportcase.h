#pragma once

#include "result.h"

namespace bench {

/// Writes the definitions of a table's columns to a file, in turn with a plain loop over the same list and
/// C's own files. Measures: the columns.
Result runExportCase(const Request& request);

}  // namespace bench

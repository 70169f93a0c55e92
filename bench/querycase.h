#pragma once

#include <QtGlobal>

namespace bench {

/// Runs a query for all rows of a generated table into the data control behind a grid, `runs` times in turn
/// with the bare loop over the same rows, and prints what the rows case prints. Needs a QApplication. Returns
/// false when the grid does not hold what the bare loop saw.
bool runQueryCase(qint64 rows, int columns, int runs);

}  // namespace bench

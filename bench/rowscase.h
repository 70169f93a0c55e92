#pragma once

#include <QtGlobal>

namespace bench {

/// Lists all rows of a generated table, `runs` times in turn with the bare loop over the same rows, and
/// prints the ratio of the times, the peak of memory beside the bytes of the texts, and how long a list view
/// takes to show, to scroll and to copy them. Needs a QApplication. Returns false when the list is not what
/// the bare loop saw.
bool runRowsCase(qint64 rows, int columns, int runs);

}  // namespace bench

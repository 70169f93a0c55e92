#pragma once

#include "platform/controls/gridrows.h"

#include <QtCore/qnamespace.h>

#include <vector>

namespace controls {

/// The numbers of all rows in the order of a column's values: nulls before all others, numbers by size, texts
/// without regard to case; equal ones in the order of their numbers. Descending is the other way round, but
/// for equal ones.
std::vector<int> sortedRows(const RowStore& rows, int column, GridColumnKind kind, Qt::SortOrder order);

}  // namespace controls

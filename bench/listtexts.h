#pragma once

#include <QtGlobal>

namespace controls {
class ListItems;
}

namespace bench {

/// UTF-16 units of all texts of a list with so many columns.
qint64 unitsOf(const controls::ListItems& list, int columns);

}  // namespace bench

#pragma once

#include "result.h"

#include <functional>

namespace desktop {
class CellTable;
}

namespace bench {

/// How long a view takes to show the rows that `attach` gives it, to go to their end, to select and to copy
/// them.
std::vector<Figure> viewTimes(desktop::CellTable& view, const std::function<void()>& attach);

}  // namespace bench

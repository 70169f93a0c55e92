#pragma once

#include "platform/ado/column.h"

#include <vector>

namespace ado {

/// Rows, one after the other.
class RowSource {
  public:
    virtual ~RowSource() = default;

    /// Fills one cell per column with the next row; what they point at stays until the next call. False
    /// behind the last row. Throws Error; there is nothing left to read then.
    virtual bool next(std::vector<Cell>& row) = 0;
};

}  // namespace ado

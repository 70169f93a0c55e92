#pragma once

#include "platform/ado/column.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace ado {

/// Rows packed one behind the other in memory, taken out in the order in which they went in.
class RowPages {
  public:
    void append(const std::vector<Cell>& row);
    /// Fills one cell per column with the next row; what they point at stays until the next call. False when
    /// there is none left.
    bool take(std::vector<Cell>& row);
    bool isEmpty() const { return m_pages.empty(); }

  private:
    std::deque<std::vector<std::byte>> m_pages;
    size_t m_position = 0;  ///< in the first page
};

}  // namespace ado

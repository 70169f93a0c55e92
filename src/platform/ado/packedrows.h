#pragma once

#include "platform/ado/error.h"
#include "platform/ado/rowpages.h"
#include "platform/ado/rowsource.h"

#include <optional>

namespace ado {

/// The rest of another source's rows in memory, each value with the bytes it has; and the error that ended
/// them.
class PackedRows final : public RowSource {
  public:
    /// Takes the row at hand and reads the source to its end; next() gives the row at hand first.
    PackedRows(RowSource& rest, std::vector<Cell> row);
    bool next(std::vector<Cell>& row) override;
    const std::optional<Error>& failure() const { return m_failure; }

  private:
    RowPages m_pages;
    std::optional<Error> m_failure;
};

}  // namespace ado

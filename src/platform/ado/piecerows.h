#pragma once

#include "platform/ado/rowpages.h"
#include "platform/ado/wirerows.h"

#include <optional>

namespace ado {

/// Rows fetched some at a time, every value read from left to right, texts of any length in pieces.
class PieceRows final : public WireRows {
  public:
    PieceRows(odbc::SharedStatement statement, const std::vector<Column>& columns);
    void fetch() override;
    bool take(std::vector<Cell>& row) override { return m_pages.take(row); }

  private:
    struct Slot {
        SQLSMALLINT type = SQL_C_WCHAR;
        alignas(8) std::byte value[16]{};
        std::vector<char16_t> text;
    };
    bool fetchRow();
    Cell read(SQLUSMALLINT index, Slot& slot);
    Cell readText(SQLUSMALLINT index, std::vector<char16_t>& text);

    std::vector<Slot> m_slots;
    std::vector<SQLUSMALLINT> m_ordinals;  ///< of the slots' columns
    std::vector<Cell> m_row;
    RowPages m_pages;
    std::optional<Error> m_failure;  ///< waits behind the rows that came before it
};

}  // namespace ado

#pragma once

#include "platform/ado/odbc.h"
#include "platform/ado/rowsource.h"

namespace ado {

/// Rows fetched one at a time, every value read from left to right, texts of any length in pieces.
class PieceRows final : public RowSource {
  public:
    PieceRows(odbc::StatementHandle statement, const std::vector<Column>& columns);
    bool next(std::vector<Cell>& row) override;

  private:
    struct Slot {
        SQLSMALLINT type = SQL_C_WCHAR;
        alignas(8) std::byte value[16]{};
        std::vector<char16_t> text;
    };
    Cell read(SQLUSMALLINT index, Slot& slot);
    Cell readText(SQLUSMALLINT index, std::vector<char16_t>& text);

    odbc::StatementHandle m_statement;
    std::vector<Slot> m_slots;
    std::vector<SQLUSMALLINT> m_ordinals;  ///< of the slots' columns
};

}  // namespace ado

#pragma once

#include "platform/ado/wirerows.h"

#include <memory>
#include <optional>

namespace ado {

/// Rows fetched a block at a time into memory laid out row by row: per column its length and its value.
class BlockRows final : public WireRows {
  public:
    BlockRows(odbc::SharedStatement statement, const std::vector<Column>& columns, qint64 most);
    void fetch() override;
    bool take(std::vector<Cell>& row) override;

  private:
    struct Slot {
        qsizetype offset = 0;    ///< of the length; the value stands behind it
        qsizetype capacity = 0;  ///< bytes
        bool text = false;
    };
    void layOut(const std::vector<Column>& columns);
    void bind(const std::vector<Column>& columns, qint64 most);
    Cell cell(const std::byte* row, const Slot& slot) const;

    std::vector<Slot> m_slots;
    qsizetype m_rowSize = 0;
    std::unique_ptr<std::byte[]> m_block;
    std::unique_ptr<SQLULEN> m_fetched = std::make_unique<SQLULEN>(0);
    SQLULEN m_position = 0;
    bool m_counts = true;            ///< the driver says how many rows it fetched; else it is one
    std::optional<Error> m_failure;  ///< waits behind the block's rows
};

}  // namespace ado

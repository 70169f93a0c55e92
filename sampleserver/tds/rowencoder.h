#pragma once

#include "tds/columnformat.h"

#include <span>

namespace tds {

/// Appends a value as it lies in a row. False, with something appended, when it is not one of its column's
/// type or does not fit into it.
bool appendValue(QByteArray& out, const engine::Value& value, const ColumnFormat& format);

/// Writes rows of one result set (MS-TDS 2.2.7.19 and 2.2.5.5).
class RowEncoder {
  public:
    RowEncoder() = default;
    explicit RowEncoder(const std::vector<engine::ResultColumn>& columns);

    /// Appends a ROW token. False, with nothing appended, when a value is not one of its column's type or
    /// does not fit into it.
    bool append(QByteArray& out, std::span<const engine::Value> values) const;

  private:
    std::vector<ColumnFormat> m_formats;
};

}  // namespace tds

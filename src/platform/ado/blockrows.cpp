#include "platform/ado/blockrows.h"

#include <algorithm>
#include <cstring>

namespace ado {

namespace {

constexpr qsizetype BlockBytes = 64 * 1024;
constexpr qsizetype MostRowsPerBlock = 1024;

qsizetype valueBytes(const Column& column) {
    switch (column.type) {
        case FieldType::Binary:
            return 0;
        case FieldType::Text:
        case FieldType::Exact:
        case FieldType::Guid:
            return (column.length + 1) * static_cast<qsizetype>(sizeof(char16_t));
        default:
            return sizeof(SQL_TIMESTAMP_STRUCT);
    }
}

}  // namespace

BlockRows::BlockRows(odbc::SharedStatement statement, const std::vector<Column>& columns, qint64 most)
    : WireRows(std::move(statement)) {
    layOut(columns);
    bind(columns, most);
}

void BlockRows::layOut(const std::vector<Column>& columns) {
    m_slots.reserve(columns.size());
    for (const Column& column : columns) {
        const qsizetype capacity = valueBytes(column);
        m_slots.push_back({m_rowSize, capacity, wireType(column.type) == SQL_C_WCHAR});
        constexpr qsizetype alignment = sizeof(SQLLEN);
        m_rowSize += alignment + (capacity + alignment - 1) / alignment * alignment;
    }
}

void BlockRows::bind(const std::vector<Column>& columns, qint64 most) {
    qsizetype rows = std::clamp<qsizetype>(BlockBytes / m_rowSize, 1, MostRowsPerBlock);
    if (most > 0) rows = std::min<qsizetype>(rows, most);
    m_block = std::make_unique_for_overwrite<std::byte[]>(static_cast<size_t>(rows * m_rowSize));
    const auto set = [this](SQLINTEGER attribute, SQLPOINTER value) {
        return SQL_SUCCEEDED(SQLSetStmtAttrW(statement(), attribute, value, 0));
    };
    // A driver that cannot do one of these fetches row by row, the only way without the next.
    m_counts = set(SQL_ATTR_ROWS_FETCHED_PTR, m_fetched.get());
    if (m_counts && set(SQL_ATTR_ROW_BIND_TYPE, odbc::number(static_cast<SQLULEN>(m_rowSize))))
        set(SQL_ATTR_ROW_ARRAY_SIZE, odbc::number(static_cast<SQLULEN>(rows)));
    for (size_t i = 0; i < columns.size(); ++i) {
        std::byte* length = m_block.get() + m_slots[i].offset;
        // Of binary values only the length is asked for.
        std::byte* value = m_slots[i].capacity ? length + sizeof(SQLLEN) : nullptr;
        odbc::check(
            SQLBindCol(statement(), static_cast<SQLUSMALLINT>(columns[i].ordinal), wireType(columns[i].type),
                       value, m_slots[i].capacity, reinterpret_cast<SQLLEN*>(length)),
            handle());
    }
}

bool BlockRows::take(std::vector<Cell>& row) {
    if (m_position == *m_fetched) return false;
    const std::byte* start = m_block.get() + static_cast<qsizetype>(m_position++) * m_rowSize;
    for (size_t i = 0; i < m_slots.size(); ++i)
        row[i] = cell(start, m_slots[i]);
    return true;
}

void BlockRows::fetch() {
    m_position = *m_fetched = 0;
    if (m_failure) throw *std::exchange(m_failure, std::nullopt);
    *m_fetched = m_counts ? 0 : 1;
    const SQLRETURN code = SQLFetch(statement());
    if (code == SQL_SUCCESS_WITH_INFO) {
        const auto records = odbc::readDiagnostics(SQL_HANDLE_STMT, statement());
        if (std::ranges::any_of(records, tellsFailure)) m_failure = errorFrom(records, Phase::Statement);
    }
    if (SQL_SUCCEEDED(code)) return;
    *m_fetched = 0;
    odbc::check(code, handle());
    finish();
}

Cell BlockRows::cell(const std::byte* row, const Slot& slot) const {
    SQLLEN length = 0;
    std::memcpy(&length, row + slot.offset, sizeof length);
    if (length == SQL_NULL_DATA) return {};
    const qint64 most = slot.text ? slot.capacity - qint64(sizeof(char16_t)) : slot.capacity;
    return {row + slot.offset + sizeof length, std::clamp<qint64>(length, 0, most)};
}

}  // namespace ado

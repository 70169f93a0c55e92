#include "platform/ado/piecerows.h"

namespace ado {

namespace {

constexpr size_t FirstPieceUnits = 2048;
constexpr int RowsAtOnce = 256;
constexpr qint64 BytesAtOnce = 64 * 1024;

}  // namespace

PieceRows::PieceRows(odbc::SharedStatement statement, const std::vector<Column>& columns)
    : WireRows(std::move(statement)), m_slots(columns.size()), m_row(columns.size()) {
    for (size_t i = 0; i < columns.size(); ++i)
        m_slots[i].type = wireType(columns[i].type);
    for (const Column& column : columns)
        m_ordinals.push_back(static_cast<SQLUSMALLINT>(column.ordinal));
}

void PieceRows::fetch() {
    if (m_failure) throw *std::exchange(m_failure, std::nullopt);
    qint64 bytes = 0;
    try {
        for (int row = 0; row < RowsAtOnce && bytes < BytesAtOnce && fetchRow(); ++row) {
            m_pages.append(m_row);
            for (const Cell& cell : m_row)
                bytes += std::max<qint64>(cell.size, 0);
        }
    } catch (const Error& error) {
        if (bytes == 0) throw;
        m_failure = error;
    }
}

bool PieceRows::fetchRow() {
    const SQLRETURN code = SQLFetch(statement());
    odbc::check(code, handle());
    if (code == SQL_NO_DATA) {
        finish();
        return false;
    }
    for (size_t i = 0; i < m_slots.size(); ++i)
        m_row[i] = read(m_ordinals[i], m_slots[i]);
    return true;
}

Cell PieceRows::read(SQLUSMALLINT index, Slot& slot) {
    if (slot.type == SQL_C_WCHAR) return readText(index, slot.text);
    // Of binary values only the length is asked for.
    const SQLLEN room = slot.type == SQL_C_BINARY ? 0 : sizeof slot.value;
    SQLLEN length = 0;
    odbc::check(SQLGetData(statement(), index, slot.type, slot.value, room, &length), handle());
    if (length == SQL_NULL_DATA) return {};
    return {slot.value, std::clamp<SQLLEN>(length, 0, room)};
}

Cell PieceRows::readText(SQLUSMALLINT index, std::vector<char16_t>& text) {
    if (text.empty()) text.resize(FirstPieceUnits);
    for (size_t filled = 0;;) {
        const SQLLEN room = static_cast<SQLLEN>((text.size() - filled) * sizeof(char16_t));
        SQLLEN length = 0;
        const SQLRETURN code =
            SQLGetData(statement(), index, SQL_C_WCHAR, text.data() + filled, room, &length);
        odbc::check(code, handle());
        if (length == SQL_NULL_DATA) return {};
        const bool whole = code == SQL_NO_DATA || (length != SQL_NO_TOTAL && length < room);
        if (whole) {
            if (code != SQL_NO_DATA) filled += static_cast<size_t>(length) / sizeof(char16_t);
            return {reinterpret_cast<const std::byte*>(text.data()),
                    static_cast<qint64>(filled * sizeof(char16_t))};
        }
        // A piece ends with a zero, which the next one replaces.
        const size_t known =
            length == SQL_NO_TOTAL ? 0 : filled + static_cast<size_t>(length) / sizeof(char16_t) + 1;
        filled = text.size() - 1;
        text.resize(std::max(known, 2 * text.size()));
    }
}

}  // namespace ado

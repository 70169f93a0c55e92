#include "platform/ado/piecerows.h"

#include "platform/ado/wirerows.h"

namespace ado {

namespace {

constexpr size_t FirstPieceUnits = 2048;

}  // namespace

PieceRows::PieceRows(odbc::StatementHandle statement, const std::vector<Column>& columns)
    : m_statement(std::move(statement)), m_slots(columns.size()) {
    for (size_t i = 0; i < columns.size(); ++i)
        m_slots[i].type = wireType(columns[i].type);
    for (const Column& column : columns)
        m_ordinals.push_back(static_cast<SQLUSMALLINT>(column.ordinal));
}

bool PieceRows::next(std::vector<Cell>& row) {
    if (!m_statement) return false;
    try {
        const SQLRETURN code = SQLFetch(m_statement.get());
        odbc::check(code, m_statement);
        if (code == SQL_NO_DATA) {
            finishResults(m_statement);
            return false;
        }
        for (size_t i = 0; i < m_slots.size(); ++i)
            row[i] = read(m_ordinals[i], m_slots[i]);
    } catch (...) {
        m_statement.reset();
        throw;
    }
    return true;
}

Cell PieceRows::read(SQLUSMALLINT index, Slot& slot) {
    if (slot.type == SQL_C_WCHAR) return readText(index, slot.text);
    // Of binary values only the length is asked for.
    const SQLLEN room = slot.type == SQL_C_BINARY ? 0 : sizeof slot.value;
    SQLLEN length = 0;
    odbc::check(SQLGetData(m_statement.get(), index, slot.type, slot.value, room, &length), m_statement);
    if (length == SQL_NULL_DATA) return {};
    return {slot.value, std::max<SQLLEN>(length, 0)};
}

Cell PieceRows::readText(SQLUSMALLINT index, std::vector<char16_t>& text) {
    if (text.empty()) text.resize(FirstPieceUnits);
    for (size_t filled = 0;;) {
        const SQLLEN room = static_cast<SQLLEN>((text.size() - filled) * sizeof(char16_t));
        SQLLEN length = 0;
        const SQLRETURN code =
            SQLGetData(m_statement.get(), index, SQL_C_WCHAR, text.data() + filled, room, &length);
        odbc::check(code, m_statement);
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

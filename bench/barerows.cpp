#include "barerows.h"

#include <charconv>
#include <utility>
#include <vector>

// The driver manager's headers come last: they define common words as macros.
#include <sql.h>
#include <sqlext.h>

namespace bench {

namespace {

constexpr size_t BlockRows = 256;
constexpr size_t TextUnits = 64;

/// One column's values of a block.
struct Column {
    SQLSMALLINT type = SQL_C_WCHAR;
    bool isBit = false;
    size_t size = TextUnits * sizeof(SQLWCHAR);
    std::vector<char> values{};
    std::vector<SQLLEN> lengths{};
};

Column columnOf(SQLSMALLINT sqlType) {
    switch (sqlType) {
        case SQL_BIT:
            return {.type = SQL_C_SLONG, .isBit = true, .size = sizeof(SQLINTEGER)};
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
            return {.type = SQL_C_SLONG, .size = sizeof(SQLINTEGER)};
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return {.type = SQL_C_DOUBLE, .size = sizeof(double)};
        case SQL_TYPE_TIMESTAMP:
            return {.type = SQL_C_TYPE_TIMESTAMP, .size = sizeof(SQL_TIMESTAMP_STRUCT)};
        default:
            return {};
    }
}

char16_t* putDigits(char16_t* place, unsigned number, int digits) {
    for (int i = digits - 1; i >= 0; --i, number /= 10)
        place[i] = static_cast<char16_t>(u'0' + number % 10);
    return place + digits;
}

QString dateText(const SQL_TIMESTAMP_STRUCT& date) {
    char16_t text[24];
    char16_t* end = putDigits(text, static_cast<unsigned>(date.year), 4);
    const std::pair<char16_t, SQLUSMALLINT> parts[] = {
        {u'-', date.month}, {u'-', date.day}, {u' ', date.hour}, {u':', date.minute}, {u':', date.second}};
    for (const auto& [separator, number] : parts) {
        *end++ = separator;
        end = putDigits(end, number, 2);
    }
    if (date.fraction != 0) {
        *end++ = u'.';
        end = putDigits(end, static_cast<unsigned>(date.fraction / 1'000'000), 3);
    }
    return QString(reinterpret_cast<const QChar*>(text), end - text);
}

QString doubleText(double value) {
    char text[40];
    const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
    return QString::fromLatin1(text, end - text);
}

QString textOf(const Column& column, size_t row) {
    const SQLLEN length = column.lengths[row];
    const char* value = column.values.data() + row * column.size;
    if (length == SQL_NULL_DATA) return QStringLiteral("<NULL>");
    switch (column.type) {
        case SQL_C_SLONG: {
            const SQLINTEGER number = *reinterpret_cast<const SQLINTEGER*>(value);
            if (column.isBit) return number != 0 ? QStringLiteral("True") : QStringLiteral("False");
            return QString::number(number);
        }
        case SQL_C_DOUBLE:
            return doubleText(*reinterpret_cast<const double*>(value));
        case SQL_C_TYPE_TIMESTAMP:
            return dateText(*reinterpret_cast<const SQL_TIMESTAMP_STRUCT*>(value));
        default:
            return QString(reinterpret_cast<const QChar*>(value), length / qsizetype(sizeof(SQLWCHAR)));
    }
}

std::vector<Column> bindColumns(SQLHANDLE statement) {
    SQLSMALLINT count = 0;
    SQLNumResultCols(statement, &count);
    std::vector<Column> columns;
    for (SQLUSMALLINT i = 1; i <= count; ++i) {
        SQLSMALLINT type = 0;
        SQLDescribeColW(statement, i, nullptr, 0, nullptr, &type, nullptr, nullptr, nullptr);
        columns.push_back(columnOf(type));
        Column& column = columns.back();
        column.values.resize(BlockRows * column.size);
        column.lengths.resize(BlockRows);
        SQLBindCol(statement, i, column.type, column.values.data(), static_cast<SQLLEN>(column.size),
                   column.lengths.data());
    }
    return columns;
}

}  // namespace

BareRows readRowsBare(const BareConnection& connection, const QString& statement) {
    SQLHANDLE handle = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &handle);
    SQLULEN fetched = 0;
    SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
    QString text = statement;
    SQLExecDirectW(handle, reinterpret_cast<SQLWCHAR*>(text.data()), SQL_NTS);
    const std::vector<Column> columns = bindColumns(handle);
    BareRows made;
    while (SQL_SUCCEEDED(SQLFetch(handle))) {
        for (size_t row = 0; row < fetched; ++row) {
            for (const Column& column : columns)
                made.units += textOf(column, row).size();
        }
        made.rows += static_cast<qint64>(fetched);
    }
    SQLFreeHandle(SQL_HANDLE_STMT, handle);
    return made;
}

}  // namespace bench

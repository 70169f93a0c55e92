#include "platform/ado/wirerows.h"

#include "platform/ado/blockrows.h"
#include "platform/ado/piecerows.h"

#include <algorithm>
#include <array>

namespace ado {

namespace {

// SQL Server's own types (msodbcsql.h): those that have no form in ODBC come as their text.
constexpr SQLSMALLINT SqlVariant = -150;
constexpr SQLSMALLINT SqlUdt = -151;
constexpr SQLSMALLINT SqlTime = -154;
constexpr SQLSMALLINT SqlDateTimeOffset = -155;

constexpr qsizetype LongestBoundedText = 8000;

FieldType fieldType(SQLSMALLINT type) {
    switch (type) {
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT:
            return FieldType::Integer;
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            return FieldType::Exact;
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return FieldType::Float;
        case SQL_REAL:
            return FieldType::Real;
        case SQL_BIT:
            return FieldType::Boolean;
        case SQL_TYPE_TIMESTAMP:
            return FieldType::DateTime;
        case SQL_TYPE_DATE:
            return FieldType::Date;
        case SQL_GUID:
            return FieldType::Guid;
        case SQL_BINARY:
        case SQL_VARBINARY:
        case SQL_LONGVARBINARY:
        case SqlUdt:
            return FieldType::Binary;
        default:
            return FieldType::Text;
    }
}

qsizetype textLength(SQLSMALLINT type, SQLULEN size) {
    switch (type) {
        case SQL_DECIMAL:
        case SQL_NUMERIC:
        case SQL_GUID:
        case SQL_TYPE_TIME:
        case SqlTime:
        case SqlDateTimeOffset:
            return 48;
        case SqlVariant:
            return LongestBoundedText;
        case SQL_CHAR:
        case SQL_VARCHAR:
        case SQL_WCHAR:
        case SQL_WVARCHAR:
            return size <= LongestBoundedText ? static_cast<qsizetype>(size) : 0;
        default:
            return 0;
    }
}

Column describeColumn(const odbc::StatementHandle& statement, SQLUSMALLINT index) {
    std::array<SQLWCHAR, 512> name{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLSMALLINT nullable = 0;
    odbc::check(SQLDescribeColW(statement.get(), index, name.data(), static_cast<SQLSMALLINT>(name.size()),
                                &nameLength, &type, &size, &scale, &nullable),
                statement);
    const qsizetype units = std::clamp<qsizetype>(nameLength, 0, static_cast<qsizetype>(name.size()) - 1);
    return {QString(reinterpret_cast<const QChar*>(name.data()), units), fieldType(type),
            textLength(type, size), index};
}

}  // namespace

std::vector<Column> describeColumns(const odbc::StatementHandle& statement, int count,
                                    const QStringList& names) {
    std::vector<Column> columns;
    std::vector<Column> named;
    QStringList left = names;
    for (int index = 1; index <= count && (names.isEmpty() || !left.isEmpty()); ++index) {
        columns.push_back(describeColumn(statement, static_cast<SQLUSMALLINT>(index)));
        const auto found = std::ranges::find_if(left, [&](const QString& name) {
            return name.compare(columns.back().name, Qt::CaseInsensitive) == 0;
        });
        if (found == left.end()) continue;
        left.erase(found);
        named.push_back(columns.back());
    }
    return named.empty() ? columns : named;
}

std::unique_ptr<WireRows> makeWireRows(odbc::SharedStatement statement, const std::vector<Column>& columns,
                                       qint64 most) {
    if (std::ranges::any_of(columns, &Column::unbounded))
        return std::make_unique<PieceRows>(std::move(statement), columns);
    return std::make_unique<BlockRows>(std::move(statement), columns, most);
}

SQLSMALLINT wireType(FieldType type) {
    switch (type) {
        case FieldType::Integer:
        case FieldType::Boolean:
            return SQL_C_SBIGINT;
        case FieldType::Float:
            return SQL_C_DOUBLE;
        case FieldType::Real:
            return SQL_C_FLOAT;
        case FieldType::DateTime:
        case FieldType::Date:
            return SQL_C_TYPE_TIMESTAMP;
        case FieldType::Binary:
            return SQL_C_BINARY;
        case FieldType::Text:
        case FieldType::Exact:
        case FieldType::Guid:
            break;
    }
    return SQL_C_WCHAR;
}

void WireRows::finish() {
    SQLRETURN code = SQL_SUCCESS;
    do {
        code = SQLMoreResults(statement());
        odbc::check(code, handle());
    } while (code != SQL_NO_DATA);
    m_atEnd = true;
}

FetchedRows::~FetchedRows() {
    if (!m_rows->isAtEnd() && !m_link->isGivenUp()) m_link->end(m_rows->sharedStatement());
}

bool FetchedRows::next(std::vector<Cell>& row) {
    while (!m_rows->take(row)) {
        if (m_rows->isAtEnd()) return false;
        m_link->run(
            m_seconds, [rows = m_rows] { rows->fetch(); }, m_rows->sharedStatement());
    }
    return true;
}

}  // namespace ado

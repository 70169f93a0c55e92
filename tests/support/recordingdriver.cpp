// An ODBC driver that stands for those that cannot be had here. It adds what it is handed to the file named
// in TW_RECORDING, an event a line: "connect STRING", "attribute NUMBER VALUE", "execute STATEMENT". Of each
// line "EVENT|SQLSTATE|NUMBER|TEXT" in TW_PLAY it makes a diagnostic record of the events that begin so: an
// error, or information where the state begins with "01". A SELECT has three rows, "row 1" to "row 3" in a
// column called Name.

#include <QFile>
#include <QStringList>

#include <cstring>

// The driver manager's headers come last: they define common words as macros.
#include <sql.h>
#include <sqlext.h>

#define EXPORTED extern "C" Q_DECL_EXPORT SQLRETURN

namespace {

constexpr int rowCount = 3;

struct Handle {
    std::vector<QStringList> records;
    int columns = 0;
    int row = 0;
    SQLULEN arraySize = 1;
    SQLULEN stride = 0;
    SQLULEN* fetched = nullptr;
    char* value = nullptr;
    SQLLEN room = 0;
    SQLLEN* length = nullptr;
};

QString textOf(const SQLWCHAR* text, SQLINTEGER length) {
    const auto* units = reinterpret_cast<const char16_t*>(text);
    return QString::fromUtf16(units, length == SQL_NTS ? -1 : length);
}

SQLRETURN happened(SQLHANDLE handle, const QString& event) {
    QFile file(qEnvironmentVariable("TW_RECORDING"));
    if (file.open(QIODevice::Append)) file.write(event.toUtf8() + '\n');
    auto& records = static_cast<Handle*>(handle)->records;
    records.clear();
    for (const QString& line : qEnvironmentVariable("TW_PLAY").split(u'\n', Qt::SkipEmptyParts))
        if (const QStringList parts = line.split(u'|'); event.startsWith(parts[0])) records.push_back(parts);
    if (records.empty()) return SQL_SUCCESS;
    return records[0][1].startsWith(QStringLiteral("01")) ? SQL_SUCCESS_WITH_INFO : SQL_ERROR;
}

SQLRETURN setAttribute(SQLHANDLE handle, SQLINTEGER attribute, SQLPOINTER value) {
    auto& statement = *static_cast<Handle*>(handle);
    const auto number = reinterpret_cast<SQLULEN>(value);
    QString told = QString::number(number);
    // The driver manager narrows what is set before connecting.
    if (attribute == SQL_ATTR_CURRENT_CATALOG) told = QString::fromLatin1(static_cast<char*>(value));
    const SQLRETURN result = happened(handle, QStringLiteral("attribute %1 %2").arg(attribute).arg(told));
    if (result != SQL_SUCCESS) return result;
    if (attribute == SQL_ATTR_ROWS_FETCHED_PTR) statement.fetched = static_cast<SQLULEN*>(value);
    if (attribute == SQL_ATTR_ROW_ARRAY_SIZE) statement.arraySize = number;
    if (attribute == SQL_ATTR_ROW_BIND_TYPE) statement.stride = number;
    return result;
}

}  // namespace

EXPORTED SQLAllocHandle(SQLSMALLINT, SQLHANDLE, SQLHANDLE* handle) {
    *handle = new Handle;
    return SQL_SUCCESS;
}

EXPORTED SQLFreeHandle(SQLSMALLINT, SQLHANDLE handle) {
    delete static_cast<Handle*>(handle);
    return SQL_SUCCESS;
}

EXPORTED SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
    return SQL_SUCCESS;
}

EXPORTED SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return setAttribute(handle, attribute, value);
}

EXPORTED SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return setAttribute(handle, attribute, value);
}

EXPORTED SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length, SQLWCHAR*,
                           SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT) {
    return happened(handle, QStringLiteral("connect ") + textOf(text, length));
}

EXPORTED SQLDisconnect(SQLHDBC) {
    return SQL_SUCCESS;
}

EXPORTED SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
    const QString statement = textOf(text, length);
    static_cast<Handle*>(handle)->columns = statement.startsWith(QStringLiteral("SELECT"));
    return happened(handle, QStringLiteral("execute ") + statement);
}

EXPORTED SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count) {
    *count = static_cast<SQLSMALLINT>(static_cast<Handle*>(handle)->columns);
    return SQL_SUCCESS;
}

EXPORTED SQLDescribeColW(SQLHSTMT, SQLUSMALLINT, SQLWCHAR* name, SQLSMALLINT, SQLSMALLINT* nameLength,
                         SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* scale, SQLSMALLINT* nullable) {
    std::memcpy(name, u"Name", 5 * sizeof(char16_t));
    *nameLength = 4;
    *type = SQL_WVARCHAR;
    *size = 100;
    *scale = 0;
    *nullable = SQL_NULLABLE;
    return SQL_SUCCESS;
}

EXPORTED SQLBindCol(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER value, SQLLEN room,
                    SQLLEN* length) {
    auto& statement = *static_cast<Handle*>(handle);
    statement.value = static_cast<char*>(value);
    statement.room = room;
    statement.length = length;
    return SQL_SUCCESS;
}

EXPORTED SQLFetch(SQLHSTMT handle) {
    auto& statement = *static_cast<Handle*>(handle);
    SQLULEN fetched = 0;
    for (; fetched < statement.arraySize && statement.row < rowCount; ++fetched) {
        const QString text = QStringLiteral("row %1").arg(++statement.row);
        const SQLULEN offset = fetched * statement.stride;
        const SQLLEN bytes = text.size() * SQLLEN(sizeof(QChar));
        std::memcpy(statement.value + offset, text.utf16(), size_t(bytes) + sizeof(QChar));
        std::memcpy(reinterpret_cast<char*>(statement.length) + offset, &bytes, sizeof bytes);
    }
    if (statement.fetched) *statement.fetched = fetched;
    return fetched ? SQL_SUCCESS : SQL_NO_DATA;
}

EXPORTED SQLMoreResults(SQLHSTMT) {
    return SQL_NO_DATA;
}

EXPORTED SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT index, SQLWCHAR* state, SQLINTEGER* number,
                        SQLWCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
    const auto& records = static_cast<Handle*>(handle)->records;
    if (index > static_cast<int>(records.size())) return SQL_NO_DATA;
    const QStringList& record = records[static_cast<size_t>(index - 1)];
    const QString words = record[3].left(room - 1);
    std::memcpy(state, record[1].utf16(), 6 * sizeof(char16_t));
    std::memcpy(text, words.utf16(), size_t(words.size() + 1) * sizeof(char16_t));
    *number = record[2].toInt();
    *length = static_cast<SQLSMALLINT>(words.size());
    return SQL_SUCCESS;
}

// The driver manager reads the records of a driver that has this one too.
EXPORTED SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                          SQLSMALLINT*) {
    return SQL_NO_DATA;
}

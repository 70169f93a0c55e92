#include "bareloop.h"

#include <QTextStream>

#include <cstdlib>

// The driver manager's headers come last: they define common words as macros.
#include <sql.h>
#include <sqlext.h>

namespace bench {

namespace {

constexpr SQLULEN BlockRows = 128;
constexpr size_t NameLength = 256;

SQLWCHAR* wide(QString& text) {
    return reinterpret_cast<SQLWCHAR*>(text.data());
}

void check(SQLRETURN result, SQLSMALLINT kind, SQLHANDLE handle) {
    if (SQL_SUCCEEDED(result)) return;
    SQLWCHAR state[6] = {};
    SQLWCHAR words[512] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRecW(kind, handle, 1, state, &native, words, 512, &length);
    QTextStream(stderr) << "The bare loop failed: " << QString::fromUtf16(reinterpret_cast<char16_t*>(words))
                        << '\n';
    std::exit(1);
}

}  // namespace

BareEnvironment::BareEnvironment() {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_handle);
    SQLSetEnvAttr(m_handle, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
}

BareEnvironment::~BareEnvironment() {
    SQLFreeHandle(SQL_HANDLE_ENV, m_handle);
}

BareConnection::BareConnection(const BareEnvironment& environment, const QString& connectionString) {
    SQLAllocHandle(SQL_HANDLE_DBC, environment.handle(), &m_connection);
    QString text = connectionString;
    check(SQLDriverConnectW(m_connection, nullptr, wide(text), SQL_NTS, nullptr, 0, nullptr,
                            SQL_DRIVER_NOPROMPT),
          SQL_HANDLE_DBC, m_connection);
}

BareConnection::~BareConnection() {
    SQLDisconnect(m_connection);
    SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
}

qint64 BareConnection::readColumns(const QString& statement, const std::vector<int>& columns) {
    struct Block {
        SQLWCHAR texts[BlockRows][NameLength];
        SQLLEN lengths[BlockRows];
    };
    static Block blocks[5];
    SQLHANDLE handle = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &handle);
    SQLULEN fetched = 0;
    SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
    QString text = statement;
    check(SQLExecDirectW(handle, wide(text), SQL_NTS), SQL_HANDLE_STMT, handle);
    for (size_t i = 0; i < columns.size(); ++i)
        check(SQLBindCol(handle, static_cast<SQLUSMALLINT>(columns[i]), SQL_C_WCHAR, blocks[i].texts,
                         sizeof blocks[i].texts[0], blocks[i].lengths),
              SQL_HANDLE_STMT, handle);
    qint64 rows = 0;
    for (;;) {
        const SQLRETURN result = SQLFetch(handle);
        if (result == SQL_NO_DATA) break;
        check(result, SQL_HANDLE_STMT, handle);
        for (SQLULEN row = 0; row < fetched; ++row, ++rows) {
            for (size_t i = 0; i < columns.size(); ++i) {
                const SQLLEN units = blocks[i].lengths[row] / static_cast<SQLLEN>(sizeof(SQLWCHAR));
                const QString made(reinterpret_cast<const QChar*>(blocks[i].texts[row]),
                                   qBound(SQLLEN(0), units, SQLLEN(NameLength - 1)));
            }
        }
    }
    SQLFreeHandle(SQL_HANDLE_STMT, handle);
    return rows;
}

QStringList BareConnection::firstColumn(const QString& statement, bool keep, qint64* rows) {
    SQLHANDLE handle = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &handle);
    static SQLWCHAR texts[BlockRows][NameLength];
    static SQLLEN lengths[BlockRows];
    SQLULEN fetched = 0;
    SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
    QString text = statement;
    check(SQLExecDirectW(handle, wide(text), SQL_NTS), SQL_HANDLE_STMT, handle);
    check(SQLBindCol(handle, 1, SQL_C_WCHAR, texts, sizeof texts[0], lengths), SQL_HANDLE_STMT, handle);
    QStringList kept;
    for (;;) {
        const SQLRETURN result = SQLFetch(handle);
        if (result == SQL_NO_DATA) break;
        check(result, SQL_HANDLE_STMT, handle);
        for (SQLULEN row = 0; row < fetched; ++row) {
            QString name(reinterpret_cast<const QChar*>(texts[row]),
                         static_cast<qsizetype>(lengths[row] / sizeof(SQLWCHAR)));
            if (keep) kept.append(std::move(name));
            ++*rows;
        }
    }
    SQLFreeHandle(SQL_HANDLE_STMT, handle);
    return kept;
}

}  // namespace bench

#include "platform/ado/odbc.h"

#include <array>

namespace ado::odbc {

namespace {

QString takeText(const SQLWCHAR* text, qsizetype length) {
    return QString(reinterpret_cast<const QChar*>(text), length);
}

}  // namespace

std::vector<DiagnosticRecord> readDiagnostics(SQLSMALLINT kind, SQLHANDLE handle) {
    std::vector<DiagnosticRecord> records;
    std::array<SQLWCHAR, 6> state{};
    std::array<SQLWCHAR, 4096> text{};
    SQLINTEGER nativeError = 0;
    SQLSMALLINT length = 0;
    constexpr SQLSMALLINT room = static_cast<SQLSMALLINT>(text.size());
    for (SQLSMALLINT index = 1; SQL_SUCCEEDED(
             SQLGetDiagRecW(kind, handle, index, state.data(), &nativeError, text.data(), room, &length));
         ++index) {
        const qsizetype units = std::min<qsizetype>(length, room - 1);
        records.push_back({takeText(state.data(), 5), nativeError, takeText(text.data(), units)});
    }
    return records;
}

void check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle, Phase phase) {
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return;
    throw errorFrom(handle ? readDiagnostics(kind, handle) : std::vector<DiagnosticRecord>{}, phase);
}

EnvironmentHandle makeEnvironment() {
    EnvironmentHandle environment;
    check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, environment.receive()), SQL_HANDLE_ENV,
          environment.get(), Phase::Opening);
    check(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, number(SQL_OV_ODBC3), 0), SQL_HANDLE_ENV,
          environment.get(), Phase::Opening);
    return environment;
}

ConnectionHandle makeConnection(const EnvironmentHandle& environment) {
    ConnectionHandle connection;
    check(SQLAllocHandle(SQL_HANDLE_DBC, environment.get(), connection.receive()), SQL_HANDLE_ENV,
          environment.get(), Phase::Opening);
    return connection;
}

StatementHandle makeStatement(const ConnectionHandle& connection) {
    StatementHandle statement;
    check(SQLAllocHandle(SQL_HANDLE_STMT, connection.get(), statement.receive()), SQL_HANDLE_DBC,
          connection.get(), Phase::Statement);
    return statement;
}

}  // namespace ado::odbc

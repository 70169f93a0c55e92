#pragma once

// For this folder's .cpp files only: nobody else sees the driver manager's headers.

#include "platform/ado/diagnostics.h"

#include <sql.h>
#include <sqlext.h>

#include <memory>
#include <utility>

namespace ado::odbc {

/// The driver manager's wide characters are UTF-16 units, as Qt's.
static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

inline SQLWCHAR* wide(const QString& text) {
    return reinterpret_cast<SQLWCHAR*>(const_cast<ushort*>(text.utf16()));
}
inline SQLPOINTER number(SQLULEN value) {
    return reinterpret_cast<SQLPOINTER>(value);
}

/// A handle and its end.
template <SQLSMALLINT Kind>
class Handle {
  public:
    Handle() = default;
    ~Handle() { reset(); }
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    SQLHANDLE get() const { return m_handle; }
    SQLHANDLE* receive() { return &m_handle; }
    explicit operator bool() const { return m_handle; }
    void reset() {
        if (m_handle) SQLFreeHandle(Kind, std::exchange(m_handle, nullptr));
    }

  private:
    SQLHANDLE m_handle = SQL_NULL_HANDLE;
};
using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;
/// A statement that a call in flight holds beside its owner.
using SharedStatement = std::shared_ptr<StatementHandle>;

std::vector<DiagnosticRecord> readDiagnostics(SQLSMALLINT kind, SQLHANDLE handle);

/// The one funnel for the driver's return codes: throws what a failed call's records tell. Success with
/// information and "no data" pass.
void check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle, Phase phase);

inline void check(SQLRETURN code, const StatementHandle& statement) {
    check(code, SQL_HANDLE_STMT, statement.get(), Phase::Statement);
}

/// An environment for ODBC 3. Throws Error when there is none to be had.
EnvironmentHandle makeEnvironment();
ConnectionHandle makeConnection(const EnvironmentHandle& environment);
StatementHandle makeStatement(const ConnectionHandle& connection);

}  // namespace ado::odbc

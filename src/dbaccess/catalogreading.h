#pragma once

#include "platform/ado/connection.h"
#include "platform/ado/error.h"
#include "platform/ado/recordset.h"

#include <exception>

namespace tw {

class ConnectionPool;

/// A connection could not be opened.
class OpeningError : public ado::Error {
  public:
    explicit OpeningError(const ado::Error& error) : Error(error) {}
};

/// How a catalog routine begins: with a connection, a kept one or one of its own, and the rows of its first
/// statement.
///
/// A kept connection proves itself by that statement: when it fails there, for whatever reason, a fresh one
/// takes its place and tells what is the matter. So the caller cannot tell the one from the other, and it
/// costs nothing on the wire.
class CatalogReading {
  public:
    /// `pool` may be null. `fields` names those that are read; all when it is empty.
    CatalogReading(ConnectionPool* pool, QString connectionString, QString statement,
                   const QStringList& fields = {});

    /// Opens the connection; throws OpeningError.
    void open();
    /// The rows of the statement. Throws what it throws; when the connection could not be opened, why.
    ado::Recordset& rows();
    const ado::Connection& connection() const { return m_connection; }

  private:
    bool openKept();

    ConnectionPool* m_pool;
    QString m_connectionString;
    QString m_statement;
    ado::Connection m_connection;
    ado::Recordset m_rows;
    /// Of opening, or the time-out of the statement on a kept connection, not worth waiting for twice.
    std::exception_ptr m_failure;
};

}  // namespace tw

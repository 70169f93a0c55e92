#pragma once

#include "platform/ado/connection.h"
#include "platform/ado/error.h"
#include "platform/ado/recordset.h"

#include <exception>
#include <functional>

namespace tw {

class KeptConnections;
class ReadAhead;

/// A connection could not be opened.
class OpeningError : public ado::Error {
  public:
    explicit OpeningError(const ado::Error& error) : Error(error) {}
};

/// Whether a failure is that of a connection which cannot be used any more: lost, closed or broken off. Only
/// a lost link gives a statement the unspecified number.
bool isLineLost(const ado::Error& error);

/// How a catalog routine begins: with a connection, a kept one or one of its own, and the rows of its first
/// statement.
///
/// A kept connection proves itself by that statement: when it fails there, for whatever reason, a fresh one
/// takes its place and tells what is the matter. So the caller cannot tell the one from the other, and it
/// costs nothing on the wire. What was read ahead needs neither: the connection then gives these answers.
class CatalogReading {
  public:
    /// Who may save it the login or the wire; either may be null.
    struct Sources {
        KeptConnections* kept = nullptr;
        ReadAhead* ahead = nullptr;
    };

    /// `fields` names those that are read; all when it is empty.
    CatalogReading(Sources sources, QString connectionString, QString statement,
                   const QStringList& fields = {});

    /// Where the answer is being read ahead: waits for it as long as `goesOn`, asked now and then, says yes.
    /// False when it has said no.
    bool await(const std::function<bool()>& goesOn) const;
    /// Opens the connection; throws OpeningError.
    void open();
    /// The rows of the statement. Throws what it throws; when the connection could not be opened, why.
    ado::Recordset& rows();
    const ado::Connection& connection() const { return m_connection; }

  private:
    void openFresh();
    bool openReadAhead();
    bool openKept();

    Sources m_sources;
    QString m_connectionString;
    QString m_statement;
    ado::Connection m_connection;
    ado::Recordset m_rows;
    /// Of opening, or of the statement on a kept connection that waited in vain.
    std::exception_ptr m_failure;
};

}  // namespace tw

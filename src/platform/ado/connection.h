#pragma once

#include <QString>

#include <map>
#include <memory>

namespace ado {

struct Answer;
using Answers = std::map<QString, Answer>;

namespace detail {
class Session;
}

/// A connection to a data source over the ODBC driver manager. Copies share one connection, as references to
/// one object do; it closes when the last of them and the last record set over it are gone.
class Connection {
  public:
    Connection();
    /// A connection that was open on another thread: it gives the answers that were read there, each once,
    /// and has no more.
    explicit Connection(Answers answers);

    /// The string to open with; once open, the string that was opened with every item the driver left out
    /// added: "WSID=" (this machine's name) is then always there, "SERVER=" unless neither the string nor its
    /// data source names one.
    QString ConnectionString() const;
    /// Throws Error 3705 when it is open.
    void setConnectionString(const QString& text);

    /// Seconds; 0 waits without limit. Each turn on the wire has a deadline of ours, half a second behind the
    /// time-out, which ends what the driver's own does not: the connection is given up then and counts as
    /// closed.
    int ConnectionTimeout() const;
    void setConnectionTimeout(int seconds);
    int CommandTimeout() const;
    void setCommandTimeout(int seconds);

    /// Opens the connection. A non-empty `connectionString` replaces the property, a non-empty `user` or
    /// `password` the string's items; `options` other than -1 (unspecified) are not supported.
    /// Throws Error; and Error with number 3705 when it is open already.
    void Open(const QString& connectionString = {}, const QString& user = {}, const QString& password = {},
              int options = -1);
    /// Closes it; record sets over it close too. Does nothing when it is closed.
    void Close();
    bool isOpen() const;

    /// Whether a statement, or the reading of its rows, has failed on it since it was opened.
    bool hasFailed() const;
    /// Whether a copy of it, or a record set over it, is alive.
    bool isShared() const;

  private:
    friend class Recordset;
    std::shared_ptr<detail::Session> m_session;
};

}  // namespace ado

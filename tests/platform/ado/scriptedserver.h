#pragma once

#include "serverhost.h"

#include <QMutex>
#include <QStringList>

#include <atomic>

/// A server for the driver to talk to, whose answers need no engine. Besides the batches of FakeSession:
///  - "count N": N rows of a number and the text "row " and the number, the text null in every seventh row
///  - "types ...": three rows of every kind of value, the last all nulls; "types and texts" with long texts
///  - "long N": one row 1, a text of N times four characters, the same in Windows-1252, 2; one of nulls
///  - "named": one row whose columns have peculiar names
///  - "fail N ROWS": ROWS rows as of "count", then error N
///  - "counts": three row counts and no columns
///  - "mixed": a row count, one row, then error 208
///  - "vanish": rows until the server goes
class ScriptedServer {
  public:
    ScriptedServer();

    QString connectionString() const;
    quint16 port() const { return m_host.port(); }
    void stop() { m_host.stop(); }
    /// The batches since the last call.
    QStringList takeBatches();
    /// Rows told of the last "count" batch.
    int rowsTold() const { return m_rowsTold; }
    /// Clients whose connection stands.
    int liveClients() const { return m_host.liveClients(); }

  private:
    void answer(const QString& batch, engine::ResultSink& sink);
    void tellCount(engine::ResultSink& sink, int rows);

    QMutex m_mutex;
    QStringList m_batches;
    std::atomic_int m_rowsTold = 0;
    ServerHost m_host;
};

/// The text of which a "long" batch's value consists, a character beyond the basic plane included.
inline const QString longPiece = QStringLiteral("\U0001F600ab");
/// The same for a column of single bytes.
inline const QString longNarrowPiece = QStringLiteral("xyz\u20AC");

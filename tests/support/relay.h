#pragma once

#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <memory>

class QTcpServer;
class QTcpSocket;

namespace testsupport {

/// Stands between a client and a server on the loopback, on a thread of its own. It passes everything on,
/// keeps count of what went over the wire, can cut the line, and can make it a long one.
class Relay {
  public:
    explicit Relay(quint16 serverPort);
    ~Relay();
    Relay(const Relay&) = delete;
    Relay& operator=(const Relay&) = delete;

    /// The relay as a user types a server: "127.0.0.1,1433".
    QString serverText() const { return QStringLiteral("127.0.0.1,%1").arg(m_port); }

    /// Forgets what went over the wire, and mends the line.
    void reset();
    /// The SQL batches that clients sent.
    QStringList batches();
    /// How often `mark` stood in what the server sent, packet headers left out.
    qsizetype sent(const QByteArray& mark);
    /// Cuts every line, and takes no new one, as soon as the server has sent `mark` so many times. The bytes
    /// that hold the last one do not get through.
    void cutAt(const QByteArray& mark, int times);
    /// Cuts every line at once; new ones are taken.
    void cut();
    /// What happens to a batch of a client that has `part` in it: it arrives garbled, so that the server
    /// refuses it, or its line is cut as soon as the server has sent `bytes` in answer.
    struct Fault {
        QString part;
        int bytes = -1;  ///< -1: garbled
    };
    void setFault(const Fault& fault);
    /// Refuses every line beyond so many at once; mostLinesSeen() tells how many there were.
    void setMostLines(int lines);
    int mostLinesSeen() const { return m_mostSeen; }
    /// Holds each turn of the clients back for so long, as a distant server would every round trip.
    void setDelay(int milliseconds);
    /// The turns that clients took: how often one sent something as the first, or after the server had. That
    /// is the number of round trips, but for the one in which the system sets up a connection.
    qint64 turns() const { return m_turns; }
    /// Counts turns only, so that nothing of what goes over the wire is kept; batches() and sent() tell
    /// nothing then.
    void keepNothing();
    /// What becomes of what the server sends from now on: all of it passes, none, a byte now and then, or the
    /// beginning of a message that never comes to its end.
    enum class Manner { Whole, Silent, Dripping, Endless };
    void setManner(Manner manner) { m_manner = manner; }
    /// Leads the lines taken from now on to another server.
    void leadTo(quint16 serverPort);

  private:
    struct Line;
    void accept();
    void abortLines();
    void passFromClient(const std::shared_ptr<Line>& line, QTcpSocket& client, QTcpSocket& server);
    void pass(Line& line, QTcpSocket& from, QTcpSocket& to, bool fromServer);
    bool fault(Line& line, QByteArray& bytes, bool fromServer);
    void spoil(Line& line, QTcpSocket& client, const QByteArray& bytes);
    bool keep(Line& line, const QByteArray& bytes, bool fromServer);

    quint16 m_serverPort;
    quint16 m_port = 0;
    QThread m_thread;
    std::unique_ptr<QTcpServer> m_server;
    QMutex m_mutex;
    QStringList m_batches;
    QByteArray m_sent;
    QByteArray m_cutMark;
    int m_cutTimes = 0;
    bool m_keeps = true;
    Fault m_fault;
    int m_mostLines = 1000;
    int m_lines = 0;
    std::atomic<int> m_mostSeen = 0;
    int m_delay = 0;
    std::atomic<Manner> m_manner = Manner::Whole;
    std::atomic<qint64> m_turns = 0;
};

}  // namespace testsupport

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTcpSocket>

/// The token versions of LOGIN7 as clients ask for them.
inline constexpr quint32 kTds70 = 0x70000000;
inline constexpr quint32 kTds71 = 0x71000001;
inline constexpr quint32 kTds72 = 0x72090002;
inline constexpr quint32 kTds73 = 0x730B0003;
inline constexpr quint32 kTds74 = 0x74000004;

/// What a response held, as far as the tests look at it. Rows are read when they have one integer or ntext
/// column.
struct Reply {
    QByteArray tokens;           ///< first bytes in order; a run of rows counts once
    QList<int> messages;         ///< numbers of errors and informations
    QList<QByteArray> changes;   ///< bodies of ENVCHANGE tokens
    QList<quint16> doneStatus;   ///< of every DONE, DONEPROC and DONEINPROC
    QList<quint16> packetSizes;  ///< of all packets, header included
    quint64 lastCount = 0;       ///< row count of the last of them
    qint64 rows = 0;
    QString text;         ///< of the last row, a number in digits
    QByteArray loginAck;  ///< body of LOGINACK
    QByteArray raw;       ///< all tokens, without packet headers
};

/// The fields of a LOGIN7 that tests vary.
struct LoginFields {
    quint32 version = kTds74;
    quint32 packetSize = 4096;
    QString user = QStringLiteral("sa");
    QString password = QStringLiteral("p\u00e4ss\u20ac");
    QString host = QStringLiteral("HOST");
    QString application = QStringLiteral("test");
    QString database{};
    quint8 flags2 = 0;
};

QByteArray packet(quint8 type, const QByteArray& data, quint8 status = 1);
QByteArray loginMessage(const LoginFields& fields);
QByteArray preLoginMessage();
/// A batch with the headers that its version wants.
QByteArray batchMessage(const QString& text, quint32 version = kTds74);
QByteArray utf16(const QString& text);
QByteArray hex(const char* digits);

/// A small client that shares nothing with the server's own code. Waits are bounded; a read that comes to
/// nothing makes isOpen() false or returns less.
class WireClient {
  public:
    explicit WireClient(quint16 port);

    void send(const QByteArray& bytes);
    /// Reads one message without looking into it; empty when the connection ended before its end.
    QByteArray readMessage(QList<quint16>* packetSizes = nullptr);
    Reply readReply();
    /// Pre-login (from 7.1) and login.
    Reply logIn(const LoginFields& fields = {});
    Reply runBatch(const QString& text);
    void vanish() { m_socket.abort(); }
    /// Waits until the server has closed the connection.
    bool waitForEnd();
    QTcpSocket& socket() { return m_socket; }

  private:
    QByteArray readBytes(qsizetype count);

    QTcpSocket m_socket;
    quint32 m_version = kTds74;
};

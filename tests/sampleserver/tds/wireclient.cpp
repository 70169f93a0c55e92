#include "wireclient.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QtEndian>

namespace {

constexpr int kPatienceMilliseconds = 20000;

template <typename Number>
void put(QByteArray& out, Number number) {
    char bytes[sizeof(Number)];
    qToLittleEndian(number, bytes);
    out.append(bytes, sizeof(Number));
}

QByteArray scrambled(const QString& password) {
    QByteArray bytes = utf16(password);
    for (char& byte : bytes)
        byte = char(quint8(((quint8(byte) << 4) | (quint8(byte) >> 4)) ^ 0xA5));
    return bytes;
}

/// Walks the tokens of a response, with its own idea of every length.
class TokenWalk {
  public:
    TokenWalk(const QByteArray& bytes, quint32 version) : m_bytes(bytes), m_wide(version >= kTds72) {
        m_collations = version > kTds70 + 0xFFFFFF;
    }

    void into(Reply& reply) {
        while (m_at < m_bytes.size())
            token(reply);
    }

  private:
    template <typename Number>
    Number number() {
        const QByteArray bytes = take(sizeof(Number));
        return bytes.size() == qsizetype(sizeof(Number)) ? qFromLittleEndian<Number>(bytes.data()) : Number();
    }
    QByteArray take(qsizetype count) {
        const QByteArray bytes = m_bytes.mid(m_at, count);
        m_at += count;
        return bytes;
    }

    void token(Reply& reply) {
        const auto id = number<quint8>();
        if (id != 0xD1 || !reply.tokens.endsWith(char(id))) reply.tokens.append(char(id));
        switch (id) {
            case 0x79:
                take(4);
                break;
            case 0x81:
                columns();
                break;
            case 0xAC:  // an int without a value, or with one
                take(2);
                take(2 * number<quint8>());
                take((m_wide ? 7 : 5) + 2);
                take(number<quint8>());
                break;
            case 0xD1:
                row(reply);
                break;
            case 0xFD:
            case 0xFE:
            case 0xFF:
                reply.doneStatus.append(number<quint16>());
                take(2);
                reply.lastCount = m_wide ? number<quint64>() : number<quint32>();
                break;
            default:
                sized(id, take(number<quint16>()), reply);
                break;
        }
    }

    void sized(quint8 id, const QByteArray& body, Reply& reply) {
        if (id == 0xAA || id == 0xAB) reply.messages.append(qFromLittleEndian<qint32>(body.data()));
        if (id == 0xAD) reply.loginAck = body;
        if (id == 0xE3) reply.changes.append(body);
    }

    void columns() {
        const auto count = number<quint16>();
        for (int i = 0; i < count; ++i) {
            take(m_wide ? 6 : 4);
            const auto type = number<quint8>();
            m_long = type == 0x63;
            m_fixed = type == 0x38;
            if (!m_fixed) take(m_long ? 4 + (m_collations ? 5 : 0) : 1);
            if (m_long && m_wide) take(1);
            if (m_long) take(2 * number<quint16>());
            take(2 * number<quint8>());
        }
    }

    void row(Reply& reply) {
        ++reply.rows;
        const auto length = m_fixed ? quint8(4) : number<quint8>();
        if (!m_long) {
            const QByteArray bytes = take(length);
            if (length == 4) reply.text = QString::number(qFromLittleEndian<qint32>(bytes.data()));
            return;
        }
        take(length + 8);
        const QByteArray bytes = take(number<qint32>());
        reply.text = QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
    }

    const QByteArray& m_bytes;
    qsizetype m_at = 0;
    bool m_wide;
    bool m_collations;
    bool m_long = false;
    bool m_fixed = false;
};

}  // namespace

QByteArray utf16(const QString& text) {
    return {reinterpret_cast<const char*>(text.utf16()), 2 * text.size()};
}

QByteArray hex(const char* digits) {
    return QByteArray::fromHex(digits);
}

QByteArray packet(quint8 type, const QByteArray& data, quint8 status) {
    QByteArray out(8, '\0');
    out[0] = char(type);
    out[1] = char(status);
    qToBigEndian(quint16(data.size() + 8), out.data() + 2);
    return out + data;
}

QByteArray preLoginMessage() {
    return packet(0x12, hex("00000b0006 0100110001 ff 09000000 0000 02"));
}

QByteArray loginMessage(const LoginFields& fields) {
    QByteArray fixed;
    put(fixed, quint32(0));  // the length, below
    put(fixed, fields.version);
    put(fixed, fields.packetSize);
    fixed.append(QByteArray(12, '\0'));
    put(fixed, quint8(0xE0));
    put(fixed, fields.flags2);
    fixed.append(QByteArray(10, '\0'));

    QByteArray texts;
    const int start = fields.version >= kTds72 ? 94 : 86;
    const auto entry = [&](const QByteArray& bytes) {
        put(fixed, quint16(start + texts.size()));
        put(fixed, quint16(bytes.size() / 2));
        texts.append(bytes);
    };
    entry(utf16(fields.host));
    entry(utf16(fields.user));
    entry(scrambled(fields.password));
    entry(utf16(fields.application));
    entry(utf16(QStringLiteral("server")));
    entry({});
    entry(utf16(QStringLiteral("library")));
    entry(utf16(QStringLiteral("us_english")));
    entry(utf16(fields.database));
    fixed.append(QByteArray(6, '\1'));
    entry({});
    entry({});
    fixed.append(QByteArray(start - fixed.size(), '\0'));
    qToLittleEndian(quint32(start + texts.size()), fixed.data());
    return packet(0x10, fixed + texts);
}

QByteArray batchMessage(const QString& text, quint32 version) {
    QByteArray data;
    if (version >= kTds72) data = hex("16000000 12000000 0200 0000000000000000 01000000");
    data += utf16(text);
    QByteArray message;
    constexpr int room = 4096 - 8;
    for (; data.size() > room; data.remove(0, room))
        message += packet(1, data.left(room), 0);
    return message + packet(1, data);
}

WireClient::WireClient(quint16 port) {
    m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    m_socket.waitForConnected(kPatienceMilliseconds);
}

void WireClient::send(const QByteArray& bytes) {
    m_socket.write(bytes);
    while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(kPatienceMilliseconds)) {
    }
}

QByteArray WireClient::readBytes(qsizetype count) {
    const QDeadlineTimer deadline(kPatienceMilliseconds);
    while (m_socket.bytesAvailable() < count && m_socket.waitForReadyRead(int(deadline.remainingTime()))) {
    }
    return m_socket.bytesAvailable() < count ? QByteArray() : m_socket.read(count);
}

QByteArray WireClient::readMessage(QList<quint16>* packetSizes) {
    QByteArray message;
    for (;;) {
        const QByteArray header = readBytes(8);
        if (header.isEmpty() || header[0] != 4) return {};
        const auto size = qFromBigEndian<quint16>(header.data() + 2);
        if (packetSizes) packetSizes->append(size);
        message += readBytes(size - 8);
        if (header[1] & 1) return message;
    }
}

Reply WireClient::readReply() {
    Reply reply;
    reply.raw = readMessage(&reply.packetSizes);
    TokenWalk(reply.raw, m_version).into(reply);
    return reply;
}

Reply WireClient::logIn(const LoginFields& fields) {
    m_version = fields.version;
    if (fields.version >= kTds71) {
        send(preLoginMessage());
        readMessage();
    }
    send(loginMessage(fields));
    return readReply();
}

Reply WireClient::runBatch(const QString& text) {
    send(batchMessage(text, m_version));
    return readReply();
}

bool WireClient::waitForEnd() {
    const QDeadlineTimer deadline(kPatienceMilliseconds);
    while (m_socket.state() == QAbstractSocket::ConnectedState && !deadline.hasExpired()) {
        m_socket.readAll();
        m_socket.waitForReadyRead(int(deadline.remainingTime()));
    }
    return m_socket.state() != QAbstractSocket::ConnectedState;
}

#include "tds/packetstream.h"

#include "tds/wirebytes.h"

namespace tds {

namespace {

constexpr int kLookMilliseconds = 5;

bool isKnown(PacketType type) {
    switch (type) {
        case PacketType::SqlBatch:
        case PacketType::Rpc:
        case PacketType::Attention:
        case PacketType::BulkLoad:
        case PacketType::TransactionManager:
        case PacketType::Login7:
        case PacketType::PreLogin:
            return true;
        default:
            return false;
    }
}

}  // namespace

PacketStream::Header PacketStream::parseHeader(const char* bytes) {
    const Header header{PacketType(quint8(bytes[0])), quint8(bytes[1]), qFromBigEndian<quint16>(bytes + 2)};
    if (!isKnown(header.type)) throw ProtocolError("unknown packet type");
    if (header.length < kPacketHeaderSize || header.length > kLargestPacket)
        throw ProtocolError("packet length out of range");
    if (header.type == PacketType::Attention && header.length != kPacketHeaderSize)
        throw ProtocolError("attention with data");
    return header;
}

void PacketStream::takePacket(const Header& header, QByteArray& payload, QDeadlineTimer deadline) {
    const qsizetype start = payload.size();
    const int bytes = header.length - kPacketHeaderSize;
    payload.resize(start + bytes);
    m_channel.read(payload.data() + start, bytes, deadline);
}

Message PacketStream::readMessage(qsizetype largest, QDeadlineTimer deadline) {
    if (m_gone) throw ConnectionEnded();
    Message message;
    for (bool first = true;; first = false) {
        char bytes[kPacketHeaderSize];
        m_channel.read(bytes, kPacketHeaderSize, deadline);
        const Header header = parseHeader(bytes);
        if (header.type == PacketType::Attention) return {.type = PacketType::Attention};
        if (first) {
            message.type = header.type;
            message.resets = header.status & (ResetConnection | ResetConnectionKeepTransaction);
        } else if (header.type != message.type) {
            throw ProtocolError("packets of two messages mixed");
        }
        if (message.payload.size() + header.length - kPacketHeaderSize > largest)
            throw ProtocolError("message too large");
        takePacket(header, message.payload, deadline);
        if (header.status & EndOfMessage) {
            message.ignored = header.status & IgnoreMessage;
            return message;
        }
    }
}

bool PacketStream::interrupted() {
    if (m_attention || m_gone) return true;
    if (!m_nextLook.hasExpired()) return false;
    m_nextLook.setRemainingTime(kLookMilliseconds);

    char bytes[kPacketHeaderSize];
    if (m_channel.peek(bytes, kPacketHeaderSize) && PacketType(quint8(bytes[0])) == PacketType::Attention) {
        try {
            readMessage(0, QDeadlineTimer(QDeadlineTimer::Forever));
            m_attention = true;
        } catch (const std::exception&) {
            m_gone = true;
        }
    }
    m_gone = m_gone || !m_channel.isAlive();
    return m_attention || m_gone;
}

void PacketStream::frame(QByteArrayView payload, bool last) {
    char header[kPacketHeaderSize] = {char(PacketType::TabularResult), char(last ? EndOfMessage : 0)};
    qToBigEndian(quint16(payload.size() + kPacketHeaderSize), header + 2);
    qToBigEndian(m_processId, header + 4);
    header[6] = char(++m_packetNumber);
    m_framed.append(header, kPacketHeaderSize).append(payload);
}

void PacketStream::sendFullPackets() {
    const qsizetype room = m_packetSize - kPacketHeaderSize;
    m_framed.resize(0);
    qsizetype at = 0;
    // The end of a message must be marked on a packet, so the last byte stays back.
    for (; m_response.size() - at > room; at += room)
        frame(QByteArrayView(m_response).sliced(at, room), false);
    if (!m_gone && !m_channel.write(m_framed)) m_gone = true;
    m_response.remove(0, at);
}

void PacketStream::endResponse() {
    sendFullPackets();
    m_framed.resize(0);
    frame(m_response, true);
    if (!m_gone && !m_channel.write(m_framed)) m_gone = true;
    m_response.resize(0);
    m_packetNumber = 0;
    m_attention = false;
}

}  // namespace tds

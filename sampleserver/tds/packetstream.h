#pragma once

#include "tds/packet.h"
#include "tds/socketchannel.h"

#include <QByteArray>

#include <vector>

namespace tds {

/// A request as its packets made it, headers removed.
struct Message {
    PacketType type = PacketType::SqlBatch;
    QByteArray payload{};
    bool ignored = false;  ///< the client withdrew it with its last packet
    bool resets = false;   ///< the session is to be as new before it runs
};

/// Cuts messages into packets and puts them together again.
class PacketStream {
  public:
    /// `processId` is the server process id that headers of responses carry.
    PacketStream(SocketChannel& channel, quint16 processId) : m_channel(channel), m_processId(processId) {}

    /// Waits for a whole message. An attention ends the message that it interrupts and is returned instead.
    /// Throws ConnectionEnded, and ProtocolError for a bad header or more than `largest` bytes.
    Message readMessage(qsizetype largest, QDeadlineTimer deadline);

    /// True once an attention has come (it is taken off the wire) or the client has gone. Costs a look at the
    /// clock; the socket is looked at every few milliseconds at most.
    bool interrupted();
    /// True when it was an attention that interrupted. Forgotten with the end of the response.
    bool attentionSeen() const { return m_attention; }

    /// What is to be sent: tokens are appended here. Bytes already passed on are gone from its front.
    QByteArray& response() { return m_response; }
    /// Sends full packets if enough has gathered. Call it after each token.
    void passOn() {
        if (m_response.size() >= kGatheredBytes) sendFullPackets();
    }
    /// Sends what remains, the last packet marked as the end of the message.
    void endResponse();

    /// The size of packets sent from now on, header included.
    void setPacketSize(int bytes) { m_packetSize = bytes; }
    int packetSize() const { return m_packetSize; }

    void closeInOrder() { m_channel.closeInOrder(); }

  private:
    static constexpr qsizetype kGatheredBytes = 32 * 1024;

    struct Header {
        PacketType type;
        quint8 status;
        int length;
    };
    static Header parseHeader(const char* bytes);
    void sendFullPackets();
    void frame(QByteArrayView payload, bool last);
    void takePacket(const Header& header, QByteArray& payload, QDeadlineTimer deadline);

    SocketChannel& m_channel;
    quint16 m_processId;
    int m_packetSize = kUsualPacket;
    quint8 m_packetNumber = 0;
    bool m_attention = false;
    bool m_gone = false;
    QDeadlineTimer m_nextLook{0};
    QByteArray m_response;
    QByteArray m_framed;  // reused for every write
};

}  // namespace tds

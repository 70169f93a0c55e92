#pragma once

#include <QtGlobal>

namespace tds {

/// Packets as they travel: eight bytes of header, then data (MS-TDS 2.2.3).
/// Header: type, status, length including the header (big-endian), server process id (big-endian), packet
/// number, window (always 0).
inline constexpr int kPacketHeaderSize = 8;
inline constexpr int kSmallestPacket = 512;
inline constexpr int kLargestPacket = 32767;
inline constexpr int kUsualPacket = 4096;

/// The first byte of a packet (MS-TDS 2.2.3.1.1).
enum class PacketType : quint8 {
    SqlBatch = 0x01,
    OldLogin = 0x02,
    Rpc = 0x03,
    TabularResult = 0x04,
    Attention = 0x06,
    BulkLoad = 0x07,
    TransactionManager = 0x0E,
    Login7 = 0x10,
    PreLogin = 0x12
};

/// Bits of the second byte (MS-TDS 2.2.3.1.2).
enum PacketStatus : quint8 {
    EndOfMessage = 0x01,
    IgnoreMessage = 0x02,
    ResetConnection = 0x08,
    ResetConnectionKeepTransaction = 0x10
};

}  // namespace tds

#include "tds/login7.h"

#include "tds/packet.h"
#include "tds/wirebytes.h"

#include <algorithm>

namespace tds {

namespace {

// The fixed part: numbers, then a directory of offsets (bytes) and lengths (characters) of the texts.
constexpr qsizetype kFixedSize = 86;
constexpr qsizetype kFlags2At = 25;
constexpr quint8 kIntegratedSecurity = 0x80;
constexpr int kLongestName = 128;

enum Directory { HostName = 36, UserName = 40, Password = 44, Application = 48, Database = 68 };

QByteArrayView textBytes(QByteArrayView message, Directory entry) {
    WireReader place(message.sliced(entry));
    const auto offset = place.number<quint16>();
    const auto characters = place.number<quint16>();
    if (characters == 0) return {};
    if (characters > kLongestName) throw ProtocolError("login name too long");
    if (offset + 2 * characters > message.size()) throw ProtocolError("login text outside its message");
    return message.sliced(offset, 2 * characters);
}

// Scrambled by exchanging the halves of each byte and then inverting every other bit.
QString descramble(QByteArrayView scrambled) {
    QByteArray clear = scrambled.toByteArray();
    for (char& byte : clear) {
        const auto inverted = quint8(quint8(byte) ^ 0xA5);
        byte = char(quint8(inverted << 4 | inverted >> 4));
    }
    return utf16Text(clear);
}

int agreeOnPacketSize(quint32 requested) {
    if (requested == 0) return kUsualPacket;
    return int(std::clamp<quint32>(requested, kSmallestPacket, kLargestPacket));
}

}  // namespace

Login7 parseLogin7(QByteArrayView message) {
    WireReader reader(message);
    const auto length = reader.number<quint32>();
    if (length < kFixedSize || length > quint64(message.size())) throw ProtocolError("login length");
    message = message.first(length);

    Login7 login;
    login.version = agreeOnVersion(reader.number<quint32>());
    login.packetSize = agreeOnPacketSize(reader.number<quint32>());
    login.trusted = quint8(message[kFlags2At]) & kIntegratedSecurity;
    login.request.user = utf16Text(textBytes(message, UserName));
    login.request.password = descramble(textBytes(message, Password));
    login.request.database = utf16Text(textBytes(message, Database));
    login.request.clientHost = utf16Text(textBytes(message, HostName));
    login.request.application = utf16Text(textBytes(message, Application));
    return login;
}

}  // namespace tds

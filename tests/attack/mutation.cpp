#include "mutation.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <vector>

namespace attack {

namespace {

using Random = QRandomGenerator;

constexpr qsizetype HeaderSize = 8;  // MS-TDS 2.2.3.1
// MS-TDS 2.2.5.7; the last are no tokens.
constexpr std::array<quint8, 20> Tokens{0x79, 0x81, 0x88, 0xA4, 0xA5, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD,
                                        0xAE, 0xD1, 0xD2, 0xD3, 0xE3, 0xE4, 0xED, 0xFD, 0xFE, 0xFF};
constexpr std::array<quint32, 9> Extremes{0, 1, 0x7F, 0x80, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF};

std::vector<QByteArray> packetsOf(const QByteArray& reply) {
    std::vector<QByteArray> packets;
    for (qsizetype at = 0; at + HeaderSize <= reply.size();) {
        const qsizetype size = qFromBigEndian<quint16>(reply.constData() + at + 2);
        packets.push_back(reply.mid(at, size));
        at += std::max(size, HeaderSize);
    }
    return packets;
}

QByteArray joined(const std::vector<QByteArray>& packets) {
    QByteArray reply;
    for (const QByteArray& packet : packets)
        reply += packet;
    return reply;
}

QByteArray payloadOf(const QByteArray& reply) {
    QByteArray payload;
    for (const QByteArray& packet : packetsOf(reply))
        payload += packet.mid(HeaderSize);
    return payload;
}

QByteArray packed(const QByteArray& payload, qsizetype most = 4096 - HeaderSize) {
    QByteArray reply;
    qsizetype at = 0;
    do {
        const QByteArray piece = payload.mid(at, most);
        at += most;
        QByteArray header(HeaderSize, '\0');
        header[0] = 4;
        header[1] = char(at >= payload.size());
        qToBigEndian(quint16(piece.size() + HeaderSize), header.data() + 2);
        reply += header + piece;
    } while (at < payload.size());
    return reply;
}

/// Where a token begins, most probably: random bytes that look like one are rare in a reply.
qsizetype tokenIn(Random& random, const QByteArray& bytes) {
    const qsizetype size = bytes.size();
    if (size == 0) return 0;
    const qsizetype start = random.bounded(int(size));
    for (qsizetype i = 0; i < size; ++i) {
        const qsizetype at = (start + i) % size;
        if (std::ranges::binary_search(Tokens, quint8(bytes[at]))) return at;
    }
    return start;
}

/// A place of any kind: anywhere, at a token's beginning, in its length and what follows, near the end.
qsizetype placeIn(Random& random, const QByteArray& bytes) {
    const int size = int(bytes.size());
    const int kind = random.bounded(4);
    const qsizetype place = kind == 0   ? random.bounded(size + 1)
                            : kind == 1 ? tokenIn(random, bytes)
                            : kind == 2 ? tokenIn(random, bytes) + 1 + random.bounded(12)
                                        : size - random.bounded(20);
    return std::clamp<qsizetype>(place, 0, size);
}

QByteArray flipped(Random& random, QByteArray bytes) {
    for (int times = 1 + random.bounded(4); times > 0; --times) {
        const qsizetype at = placeIn(random, bytes);
        if (at < bytes.size()) bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
    }
    return bytes;
}

QByteArray withExtreme(Random& random, QByteArray bytes) {
    std::array<char, 4> number{};
    const quint32 value = Extremes[random.bounded(quint32(Extremes.size()))];
    random.bounded(2) ? qToLittleEndian(value, number.data()) : qToBigEndian(value, number.data());
    const qsizetype at = placeIn(random, bytes);
    const qsizetype count = std::min<qsizetype>(1 << random.bounded(3), bytes.size() - at);
    return bytes.replace(at, count, number.data(), count);
}

QByteArray withToken(Random& random, QByteArray bytes) {
    const qsizetype at = tokenIn(random, bytes);
    const quint8 token =
        random.bounded(4) ? Tokens[random.bounded(quint32(Tokens.size()))] : quint8(random.bounded(256));
    if (at < bytes.size()) bytes[at] = char(token);
    return bytes;
}

/// Drops or repeats what lies between two places.
QByteArray withStretch(Random& random, QByteArray bytes, bool twice) {
    const auto [from, to] = std::minmax({placeIn(random, bytes), placeIn(random, bytes)});
    return twice ? bytes.insert(to, bytes.mid(from, to - from)) : bytes.remove(from, to - from);
}

QByteArray withGarbage(Random& random, QByteArray bytes) {
    QByteArray garbage(1 + random.bounded(16), char(random.bounded(2) ? 0xFF : 0));
    if (random.bounded(2)) std::ranges::generate(garbage, [&] { return char(random.bounded(256)); });
    return bytes.insert(placeIn(random, bytes), garbage);
}

QByteArray withHeader(Random& random, const QByteArray& reply) {
    std::vector<QByteArray> packets = packetsOf(reply);
    QByteArray& packet = packets[random.bounded(quint32(packets.size()))];
    packet[random.bounded(4)] = char(random.bounded(3) ? random.bounded(16) : random.bounded(256));
    return joined(packets);
}

QByteArray withPackets(Random& random, const QByteArray& reply) {
    std::vector<QByteArray> packets = packetsOf(packed(payloadOf(reply), 16 + random.bounded(512)));
    const auto any = [&] { return packets.begin() + random.bounded(int(packets.size())); };
    switch (random.bounded(3)) {
        case 0:
            packets.erase(any());
            break;
        case 1: {
            const QByteArray packet = *any();
            packets.insert(any(), packet);
            break;
        }
        default:
            std::iter_swap(any(), any());
    }
    return joined(packets);
}

QByteArray anyOf(Random& random, const Replies& replies) {
    return std::next(replies.begin(), random.bounded(int(replies.size()))).value();
}

}  // namespace

const char* nameOf(Kind kind) {
    static constexpr std::array<const char*, kinds> names{"flip",   "length", "token",  "drop",  "repeat",
                                                          "insert", "header", "packet", "other", "slices",
                                                          "short",  "cut",    "reset",  "stall", "drip"};
    return names[static_cast<size_t>(kind)];
}

Delivery deliver(const Mutation& mutation, const QByteArray& reply, const Replies& others) {
    Random random(mutation.seed);
    const QByteArray payload = payloadOf(reply);
    switch (mutation.kind) {
        case Kind::Flip:
            return {flipped(random, reply)};
        case Kind::Length:
            return {withExtreme(random, reply)};
        case Kind::Token:
            return {packed(withToken(random, payload))};
        case Kind::Drop:
            return {packed(withStretch(random, payload, false))};
        case Kind::Repeat:
            return {packed(withStretch(random, payload, true))};
        case Kind::Insert:
            return {packed(withGarbage(random, payload))};
        case Kind::Header:
            return {withHeader(random, reply)};
        case Kind::Packet:
            return {withPackets(random, reply)};
        case Kind::Other:
            return {anyOf(random, others)};
        case Kind::Slices:
            return {packed(payload, 1 << random.bounded(12))};
        case Kind::Short:
            return {packed(payload.left(placeIn(random, payload)))};
        case Kind::Cut:
            return {reply.left(placeIn(random, reply)), Delivery::Closed};
        case Kind::Reset:
            return {reply.left(placeIn(random, reply)), Delivery::Reset};
        case Kind::Stall:
            return {reply.left(placeIn(random, reply)), Delivery::Deaf};
        case Kind::Drip:
            return {reply, Delivery::Open, placeIn(random, reply)};
    }
    return {reply};
}

}  // namespace attack

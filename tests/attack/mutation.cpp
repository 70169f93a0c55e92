#include "mutation.h"

#include <QByteArrayList>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace attack {

namespace {

using Random = QRandomGenerator;

// MS-TDS 2.2.5.7; the last are no tokens.
constexpr std::array<quint8, 20> tokens{0x79, 0x81, 0x88, 0xA4, 0xA5, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD,
                                        0xAE, 0xD1, 0xD2, 0xD3, 0xE3, 0xE4, 0xED, 0xFD, 0xFE, 0xFF};
constexpr std::array<quint32, 9> extremes{0, 1, 0x7F, 0x80, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF};

/// Where a token begins, most probably: other bytes that look like one are rare in a reply.
qsizetype tokenIn(Random& random, const QByteArray& bytes) {
    const auto start = bytes.begin() + random.bounded(int(bytes.size()) + 1);
    const auto isToken = [](char byte) { return std::ranges::binary_search(tokens, quint8(byte)); };
    const auto found = std::find_if(start, bytes.end(), isToken);
    return (found != bytes.end() ? found : std::find_if(bytes.begin(), start, isToken)) - bytes.begin();
}

/// Anywhere, at a token's beginning, in its length and what follows, in a packet's header, near the end.
qsizetype placeIn(Random& random, const QByteArray& bytes) {
    const int size = int(bytes.size());
    const std::array places{qsizetype(random.bounded(size + 1)), tokenIn(random, bytes),
                            tokenIn(random, bytes) + 1 + random.bounded(12),
                            qsizetype(random.bounded(size / 4096 + 1) * 4096 + random.bounded(8)),
                            qsizetype(size - random.bounded(20))};
    return std::clamp<qsizetype>(places[random.bounded(quint32(places.size()))], 0, size);
}

Delivery flip(Random& random, const QByteArray& reply, const Replies&) {
    QByteArray bytes = reply;
    for (int times = 1 + random.bounded(4); times > 0; --times) {
        const qsizetype at = std::min(placeIn(random, bytes), bytes.size() - 1);
        bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
    }
    return {bytes};
}

/// An extreme number of one to four bytes.
Delivery extreme(Random& random, const QByteArray& reply, const Replies&) {
    std::array<char, 4> number{};
    const quint32 value = extremes[random.bounded(quint32(extremes.size()))];
    random.bounded(2) ? qToLittleEndian(value, number.data()) : qToBigEndian(value, number.data());
    const qsizetype at = placeIn(random, reply);
    const qsizetype count = std::min<qsizetype>(1 << random.bounded(3), reply.size() - at);
    return {QByteArray(reply).replace(at, count, number.data(), count)};
}

Delivery otherToken(Random& random, const QByteArray& reply, const Replies&) {
    QByteArray bytes = payloadOf(reply);
    const quint8 known = tokens[random.bounded(quint32(tokens.size()))];
    bytes[std::min(tokenIn(random, bytes), bytes.size() - 1)] =
        char(random.bounded(4) ? known : random.bounded(256));
    return {packed(bytes)};
}

/// A stretch is missing, or comes twice, or garbage comes in its place.
Delivery stretch(Random& random, const QByteArray& reply, const Replies&) {
    QByteArray bytes = payloadOf(reply);
    const auto [from, to] = std::minmax({placeIn(random, bytes), placeIn(random, bytes)});
    const QByteArray between = bytes.mid(from, to - from);
    QByteArray garbage(random.bounded(16), char(random.bounded(2) ? 0xFF : 0));
    if (random.bounded(2)) std::ranges::generate(garbage, [&] { return char(random.bounded(256)); });
    const std::array instead{QByteArray(), between + between, garbage};
    return {packed(bytes.replace(from, to - from, instead[random.bounded(3u)]))};
}

/// A packet is missing, comes twice or too early.
Delivery packet(Random& random, const QByteArray& reply, const Replies&) {
    const QByteArray small = packed(payloadOf(reply), 16 + random.bounded(512));
    QByteArrayList packets;
    for (qsizetype at = 0; at < small.size(); at += packets.back().size())
        packets += small.mid(at, packetSize(small, at));
    const auto any = [&] { return random.bounded(int(packets.size())); };
    const QByteArray one = packets[any()];
    if (random.bounded(3)) packets.removeAt(any());
    if (random.bounded(3)) packets.insert(packets.isEmpty() ? 0 : any(), one);
    return {packets.join()};
}

Delivery otherReply(Random& random, const QByteArray&, const Replies& others) {
    return {std::next(others.begin(), random.bounded(int(others.size()))).value()};
}

Delivery slices(Random& random, const QByteArray& reply, const Replies&) {
    return {packed(payloadOf(reply), 1 << random.bounded(12))};
}

/// The last packet comes too early.
Delivery shortened(Random& random, const QByteArray& reply, const Replies&) {
    const QByteArray payload = payloadOf(reply);
    return {packed(payload.left(placeIn(random, payload)))};
}

template <Delivery::End End>
Delivery broken(Random& random, const QByteArray& reply, const Replies&) {
    return {reply.left(placeIn(random, reply)), End};
}

Delivery drip(Random& random, const QByteArray& reply, const Replies&) {
    return {reply, Delivery::Open, placeIn(random, reply)};
}

}  // namespace

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all{{"flip", Kind::Lies, flip},
                                       {"length", Kind::Lies, extreme},
                                       {"token", Kind::Lies, otherToken},
                                       {"stretch", Kind::Lies, stretch},
                                       {"packet", Kind::Lies, packet},
                                       {"other", Kind::Lies, otherReply},
                                       {"slices", Kind::Loses, slices},
                                       {"short", Kind::Loses, shortened},
                                       {"cut", Kind::Loses, broken<Delivery::Closed>},
                                       {"reset", Kind::Loses, broken<Delivery::Reset>},
                                       {"stall", Kind::Waits, broken<Delivery::Deaf>},
                                       {"drip", Kind::Waits, drip}};
    return all;
}

qsizetype packetSize(const QByteArray& bytes, qsizetype at) {
    return std::max<qsizetype>(qFromBigEndian<quint16>(bytes.constData() + at + 2), HeaderSize);
}

QByteArray payloadOf(const QByteArray& packets) {
    QByteArray payload;
    for (qsizetype at = 0; at + HeaderSize <= packets.size(); at += packetSize(packets, at))
        payload += packets.mid(at + HeaderSize, packetSize(packets, at) - HeaderSize);
    return payload;
}

QByteArray packed(const QByteArray& payload, qsizetype most) {
    QByteArray packets;
    qsizetype at = 0;
    do {
        const QByteArray piece = payload.mid(at, most);
        at += most;
        QByteArray header(HeaderSize, '\0');
        header[0] = 4;
        header[1] = char(at >= payload.size());
        qToBigEndian(quint16(piece.size() + HeaderSize), header.data() + 2);
        packets += header + piece;
    } while (at < payload.size());
    return packets;
}

}  // namespace attack

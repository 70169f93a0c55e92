#pragma once

#include <QByteArray>
#include <QMap>
#include <QRandomGenerator>

#include <vector>

namespace attack {

/// What a server answers (whole packets), by what it is asked.
using Replies = QMap<QByteArray, QByteArray>;

/// How a reply is sent.
struct Delivery {
    QByteArray bytes;
    enum End { Open, Closed, Reset, Deaf } end = Open;
    qsizetype dripsFrom = -1;  ///< bytes behind come one by one; -1: none
};

/// A way to mutate a reply.
struct Kind {
    const char* name;
    enum Effect {
        Lies,   ///< other bytes than the server's, which may tell something else
        Loses,  ///< the server's bytes, as far as they come: rows may not be missing without a word
        Waits   ///< the same, and it costs a time-out
    } effect;
    Delivery (*deliver)(QRandomGenerator& random, const QByteArray& reply, const Replies& others);
};
/// All ways, those that wait behind the others.
const std::vector<Kind>& kinds();

/// What is done in a session.
struct Mutation {
    size_t kind = 0;
    int turn = 0;  ///< the reply's number
    quint32 seed = 0;
};

/// Bytes of a packet's header, and of the packet that begins at a place (MS-TDS 2.2.3.1).
inline constexpr qsizetype HeaderSize = 8;
qsizetype packetSize(const QByteArray& bytes, qsizetype at);
/// What packets hold, and packets that hold it.
QByteArray payloadOf(const QByteArray& packets);
QByteArray packed(const QByteArray& payload, qsizetype most = 4096 - HeaderSize);

}  // namespace attack

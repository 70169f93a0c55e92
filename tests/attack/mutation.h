#pragma once

#include <QByteArray>
#include <QMap>
#include <QRandomGenerator>

namespace attack {

/// What a server answers (whole packets), by what it is asked.
using Replies = QMap<QByteArray, QByteArray>;

/// What is done to one reply.
enum class Kind {
    // Other bytes than the server's: it may now tell something else.
    Flip,    ///< bits
    Length,  ///< extreme numbers of one to four bytes
    Token,   ///< another token, or none, in a token's place
    Drop,    ///< a stretch is missing
    Repeat,  ///< a stretch comes twice
    Insert,  ///< garbage in between
    Header,  ///< a packet's header says otherwise
    Packet,  ///< packets are missing, twice or swapped
    Other,   ///< the reply to another question
    // The server's bytes, as far as they come: rows may not be missing without a word.
    Slices,  ///< in packets of other sizes
    Short,   ///< the last packet comes too early
    Cut,
    Reset,
    // The same, and they cost a time-out.
    Stall,
    Drip,  ///< a byte now and then
};
inline constexpr int kinds = static_cast<int>(Kind::Drip) + 1;
inline constexpr Kind firstFaithful = Kind::Slices;
inline constexpr Kind firstSlow = Kind::Stall;
const char* nameOf(Kind kind);

struct Mutation {
    Kind kind = Kind::Flip;
    int turn = 0;  ///< the reply's number in its session
    quint32 seed = 0;
};

/// How a reply is sent.
struct Delivery {
    QByteArray bytes;
    enum End { Open, Closed, Reset, Deaf } end = Open;
    qsizetype dripsFrom = -1;  ///< bytes behind come one by one; -1: none
};

Delivery deliver(const Mutation& mutation, const QByteArray& reply, const Replies& others);

}  // namespace attack

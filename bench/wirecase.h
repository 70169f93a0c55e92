#pragma once

#include "result.h"

#include <QStringList>

#include <functional>

namespace bench {

/// Something that is read over the wire in two ways. Each takes a connection string without a database and
/// does the whole of it, logging in included.
struct WireCase {
    QStringList serverArguments;  ///< what the sample server must hold
    std::function<void(const QString& connectionString)> ours;
    std::function<void(const QString& connectionString)> yardstick;
    /// Whether the work of both is complete, asked after each has run; may note the bytes of the texts held.
    std::function<bool(Memory& memory)> isComplete;
    qint64 leastRoundTrips = 0;
};

/// The least of round trips for so many logins and statements: a login takes two, one to agree on the
/// protocol and one to give the name.
constexpr qint64 roundTripsOf(qint64 logins, qint64 statements) {
    return 2 * logins + statements;
}

/// Starts a server of its own and measures both ways in turn, against it or through a relay that makes the
/// way long. Round trips are counted apart from the runs that are measured.
Result runWireCase(const Request& request, const WireCase& wireCase);

}  // namespace bench

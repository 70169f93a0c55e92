#pragma once

#include <QStringList>

#include <functional>
#include <vector>

namespace attack {

/// What a routine gave.
struct Outcome {
    QStringList texts;     ///< of the models that it filled, and what it returned
    QStringList boxes;     ///< message boxes
    bool failed = false;   ///< by what it returned or marked
    bool escaped = false;  ///< it let an error out that it should have reported
    bool tellsFailure() const { return failed || !boxes.isEmpty(); }
};

/// A road on which the tool reads from a server, from the first connection to the last row.
struct Routine {
    const char* name;
    std::function<void(const QString& connectionString, Outcome& outcome)> body;

    Outcome run(const QString& connectionString) const;
};

/// Those of the attacked databases: every catalog routine, the query, its window's data control, a
/// comparison.
std::vector<Routine> allRoutines();

}  // namespace attack

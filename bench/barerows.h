#pragma once

#include "bareloop.h"

namespace bench {

/// What the bare loop made.
struct BareRows {
    qint64 rows = 0;
    qint64 units = 0;  ///< UTF-16 units of all texts
};

/// Reads `statement` a block at a time into arrays of C types and makes each value's text, by the rules for a
/// list's cells, as a QString that is dropped at once. It knows the types that the generated tables' first
/// columns have.
BareRows readRowsBare(const BareConnection& connection, const QString& statement);

}  // namespace bench

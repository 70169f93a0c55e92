#pragma once

#include "bareloop.h"

namespace bench {

/// Reads what a table's column list is made of; the number of columns.
qint64 readTableBare(BareConnection& connection, const QString& table);

/// The rows of a database's details.
struct BareDetails {
    qint64 checks = 0;
    qint64 indexColumns = 0;
    qint64 foreignKeys = 0;
};
/// Reads a database's details, each statement on the connection at its place (which may be one for all).
BareDetails readDetailsBare(BareConnection& first, BareConnection& second, BareConnection& third);

}  // namespace bench

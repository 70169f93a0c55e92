#pragma once

#include <QStringList>

namespace tw {
class SchemaReader;
}

namespace bench {

/// What a comparison of everything came to.
struct Compared {
    int rows = 0;       ///< of both result lists
    int unmatched = 0;  ///< of them, without a counterpart
    qint64 units = 0;   ///< UTF-16 units of their texts
};

/// Compares two systems with all kinds of objects, showing nobody how it goes.
Compared compareSystems(tw::SchemaReader& system1, tw::SchemaReader& system2);

/// The two databases that are compared, and the sample server's options that make them.
QStringList comparedDatabases();
QStringList comparedDatabasesOptions(qint64 tables, qint64 columns);
/// Compares them on one server by our own means.
Compared compareDatabases(const QString& connectionString);

}  // namespace bench

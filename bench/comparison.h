#pragma once

#include "platform/controls/listitems.h"

#include <QStringList>

#include <memory>

namespace tw {
class SchemaReader;
}

namespace bench {

/// What a comparison of everything came to.
struct Compared {
    controls::ListItems results1{};
    controls::ListItems results2{};
    int unmatched = 0;  ///< rows without a counterpart

    int rows() const { return results1.count() + results2.count(); }
    /// UTF-16 units of all texts.
    qint64 units() const;
};

/// Compares two systems, showing nobody how it goes: tables and their columns, and all other kinds of objects
/// if they are wanted.
std::unique_ptr<Compared> compareSystems(tw::SchemaReader& system1, tw::SchemaReader& system2,
                                         bool allKinds = true);

/// The two databases that are compared, and the sample server's options that make them.
QStringList comparedDatabases();
QStringList comparedDatabasesOptions(qint64 tables, qint64 columns);
/// Compares them on one server by our own means.
std::unique_ptr<Compared> compareDatabases(const QString& connectionString);

}  // namespace bench

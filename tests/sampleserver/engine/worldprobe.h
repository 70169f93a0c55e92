#pragma once

#include "engine/catalog/world.h"
#include "engine/session/session.h"

#include <QStringList>

#include <memory>

/// A world made by a script, and a look into its stores with plain SQL.
class WorldProbe {
  public:
    /// Runs the script in a new database "Probe" and seals the world. Throws engine::SqlError.
    explicit WorldProbe(const QString& script);

    engine::World& world() { return *m_world; }
    const engine::Database& database() const;

    /// The rows of a query over a database's tables by their own names and columns; "a|b|~" for each row, ~
    /// for a null.
    QStringList rows(const QString& query, const QString& database = QStringLiteral("Probe"));

    /// Rows of a stored procedure, "a|b|~"; the names of its columns come first.
    QStringList call(const QString& procedure, const QStringList& arguments,
                     const QString& user = QStringLiteral("dbo"));

    /// What a script ends with: "515 at 3", "" when it does not fail.
    static QString failure(const QString& script);

  private:
    std::unique_ptr<engine::World> m_world;
    QStringList m_seen;
};

#pragma once

#include <QString>

namespace engine {

class World;

/// Adds database `name` with `tables` tables of `columns` columns and `rows` rows each: primary keys, foreign
/// keys, indexes and checks among them, every type family in turn. The same numbers give the same database.
void addLargeDatabase(World& world, const QString& name, int tables, int columns, qint64 rows);

/// Adds `databases` databases of `tables` small tables each.
void addManyDatabases(World& world, int databases, int tables);

/// Adds database `name` with so many check constraints, columns of indexes and foreign keys, over as many
/// tables as they need. The primary key that the foreign keys refer to is one of the columns of indexes.
void addDetailsDatabase(World& world, const QString& name, int checks, int indexRows, int foreignKeys);

}  // namespace engine

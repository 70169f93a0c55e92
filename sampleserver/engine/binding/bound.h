#pragma once

#include "engine/store/emission.h"
#include "engine/values/sqltype.h"

#include <QString>

#include <optional>
#include <vector>

namespace engine {

class Scope;

/// A column that an expression reads outside of any aggregate.
struct ColumnUse {
    const Scope* scope;
    QString name;  ///< "t.c", for messages
};

/// An expression whose names are resolved: its type and its SQLite text.
struct Bound {
    QString sql;
    SqlType type;
    bool nullable = true;
    bool isNull = false;    ///< the word NULL, of no type of its own
    bool identity = false;  ///< an identity column as it is
    bool isColumn = false;  ///< a column, which brings its collation along
    bool hasAggregate = false;
    bool hasQuery = false;
    bool isWritten = false;        ///< a number that stands in the statement
    std::optional<Value> literal;  ///< of a constant
    std::vector<ColumnUse> uses;
};

/// Takes over what `part` uses; for the whole of several parts.
void addUses(Bound& whole, const Bound& part);

/// A constant of a type.
Bound boundConstant(const Value& value, const SqlType& type, Emission& emission);

/// `sql` as the whole of `parts`.
Bound boundWhole(const QString& sql, const SqlType& type, std::initializer_list<const Bound*> parts);

/// The text of an expression for a place where its collation matters.
QString collated(const Bound& bound);

/// The collation of a type's values, " COLLATE tsql", or nothing.
QString collationOf(const SqlType& type);

}  // namespace engine

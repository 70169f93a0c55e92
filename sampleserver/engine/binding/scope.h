#pragma once

#include "engine/binding/bound.h"
#include "engine/catalog/world.h"

#include <QSet>
#include <QString>

#include <vector>

namespace engine {

/// A column of a result or of a derived table.
struct OutputColumn {
    QString name;
    SqlType type;
    bool nullable = true;
    bool isNull = false;  ///< the word NULL, of no type of its own
    bool identity = false;
};

/// A table of FROM under the name that the query knows it by.
struct Source {
    QString alias;  ///< as written, empty for a table without one
    const Database* database = nullptr;
    const Table* table = nullptr;       ///< null for a derived table
    std::vector<OutputColumn> columns;  ///< of a derived table
    QString derived;                    ///< the SQLite text of a derived table
    QString sqlName;                    ///< its name in the SQLite statement, "a3"
    bool outer = false;                 ///< its columns may be null because a join found no row

    int columnCount() const;
    int findColumn(const QString& name) const;
    QString columnName(int column) const;
    QString exposedName() const { return alias.isEmpty() ? table->name : alias; }
    /// True when the parts before a column's name mean this table.
    bool matches(const std::vector<QString>& prefix) const;
};

/// Throws SqlError 107.
[[noreturn]] void failPrefix(const std::vector<QString>& prefix);

/// The tables that a query's names are looked up in, and those of the queries around it.
class Scope {
  public:
    explicit Scope(Scope* outer) : m_outer(outer) {}

    Scope* outer() const { return m_outer; }

    std::vector<Source> sources;
    /// Names are looked up in sources [first, last); ON sees the tables of its join only.
    size_t first = 0;
    size_t last = 0;
    /// Texts of the GROUP BY expressions.
    QSet<QString> groups;
    bool aggregatesAllowed = false;
    bool inAggregate = false;
    bool sawAggregate = false;
    /// Columns of outer queries that this one uses.
    std::vector<ColumnUse> outerUses;

    /// Resolves a name of one to four parts. Throws SqlError 107, 207, 209.
    Bound resolve(const std::vector<QString>& path);
    /// The column of a source, as resolve() gives it.
    Bound column(const Source& source, int column) const;

  private:
    struct Found {
        const Source* source = nullptr;
        int column = -1;
        bool prefixKnown = false;
    };
    Found findHere(const std::vector<QString>& prefix, const QString& name) const;

    Scope* m_outer;
};

}  // namespace engine

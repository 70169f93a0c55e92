#pragma once

#include "engine/catalog/sessionfacts.h"
#include "engine/store/emission.h"
#include "engine/store/rowstore.h"

namespace engine {

/// What the text of a CHECK, or of a computed column, says about the rows of its table.
class RowRule {
  public:
    /// Throws SqlError for what makes no sense in that table. The table need not hold rows yet.
    static RowRule condition(const SessionFacts& facts, const Database& database, const Table& table,
                             const QString& text);
    static RowRule computation(const SessionFacts& facts, const Database& database, const Table& table,
                               const QString& text);

    const SqlType& type() const { return m_type; }
    bool nullable() const { return m_nullable; }

    /// Finds a row that breaks the condition, among all or as the last that was inserted.
    StoreStatement breach(bool lastOnly) const;
    /// Computes a column of the row that was inserted last, or of all.
    StoreStatement update(int column, bool lastOnly) const;

  private:
    RowRule(const Database& database, const Table& table) : m_store(database.keeper), m_table(&table) {}
    StoreStatement prepared(const QByteArray& sql, bool lastOnly) const;

    sqlite3* m_store;
    const Table* m_table;
    QByteArray m_sql;
    Emission m_emission;
    SqlType m_type;
    bool m_nullable = true;
};

}  // namespace engine

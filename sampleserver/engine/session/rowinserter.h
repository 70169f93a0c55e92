#pragma once

#include "engine/catalog/world.h"
#include "engine/session/rowrule.h"
#include "engine/store/rowstore.h"
#include "engine/syntax/constant.h"

namespace engine {

/// Inserts rows into one table as the server would: values are converted to the columns' types, identity
/// values, timestamps and defaults filled in, nulls (515), unique keys (2627, 2601) and foreign keys (547)
/// and check constraints (547)
/// checked, computed columns computed.
class RowInserter {
  public:
    /// `identityInsert`: SET IDENTITY_INSERT is on for the table.
    RowInserter(const World& world, Database& database, Table& table, bool identityInsert);

    /// `columns`: positions of the columns that `constants` are for. Throws SqlError.
    void insert(const std::vector<int>& columns, const std::vector<Constant>& constants);

  private:
    struct ForeignKeyCheck {
        const ForeignKey* key;
        const Table* referenced;
        StoreStatement statement;
    };
    struct UniqueCheck {
        const Index* index;
        StoreStatement statement;
    };

    Value valueFor(size_t column, const Constant* given);
    Value identityValue(Column& column, const Constant* given);
    Value timestampValue(const Constant* given);
    void checkUnique();
    void checkChecks();
    void checkForeignKeys();

    Database& m_database;
    Table& m_table;
    bool m_identityInsert;
    RowAppender m_appender;
    std::vector<UniqueCheck> m_uniques;
    std::vector<ForeignKeyCheck> m_foreignKeys;
    std::vector<std::pair<const Check*, StoreStatement>> m_checks;
    std::vector<StoreStatement> m_computations;
    std::vector<Value> m_row;
};

}  // namespace engine

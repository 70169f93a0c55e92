#pragma once

#include "engine/session/rowrule.h"
#include "engine/session/sessionstate.h"
#include "engine/store/rowstore.h"
#include "engine/syntax/ast.h"

namespace engine {

/// A value that a row is given; nothing for the word DEFAULT.
using GivenValue = std::optional<TypedValue>;

/// Inserts rows into one table as the server would: values are converted to the columns' types, identity
/// values, timestamps and defaults filled in, nulls (515), unique keys (2627, 2601), foreign keys and check
/// constraints (547) checked, computed columns computed.
class RowInserter {
  public:
    /// `identityInsert`: SET IDENTITY_INSERT is on for the table.
    RowInserter(SessionState& session, Database& database, Table& table, bool identityInsert);

    /// `columns`: positions of the columns that `values` are for. Throws SqlError.
    void insert(const std::vector<int>& columns, const std::vector<GivenValue>& values);

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

    Value valueFor(size_t column, const GivenValue* given);
    Value identityValue(Column& column, const GivenValue* given);
    Value timestampValue(const GivenValue* given);
    Value defaultValue(size_t column);
    Value assigned(const TypedValue& value, const SqlType& type) const;
    void checkUnique();
    void checkChecks();
    void checkForeignKeys();

    SessionState& m_session;
    Database& m_database;
    Table& m_table;
    bool m_identityInsert;
    RowAppender m_appender;
    std::vector<UniqueCheck> m_uniques;
    std::vector<ForeignKeyCheck> m_foreignKeys;
    std::vector<std::pair<const Check*, StoreStatement>> m_checks;
    std::vector<StoreStatement> m_computations;
    std::vector<ast::ExprPtr> m_defaults;  // by column, those that were needed
    std::vector<Value> m_row;
};

}  // namespace engine

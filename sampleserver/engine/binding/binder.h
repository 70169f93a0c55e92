#pragma once

#include "engine/binding/bound.h"
#include "engine/binding/scope.h"
#include "engine/catalog/sessionfacts.h"
#include "engine/syntax/ast.h"

#include <QString>

#include <vector>

namespace engine {

/// A query ready for SQLite.
struct BoundQuery {
    QString sql;  ///< its columns are called r0, r1 ..
    std::vector<OutputColumn> columns;
    std::vector<QString> variables;  ///< of SELECT @x = .., one for each column; empty for a plain query
    bool readsOwnVariables = false;  ///< it reads a variable that it assigns to
    bool singleRow = false;          ///< it gives one row at most
    std::vector<ColumnUse> uses;     ///< columns of the queries around it
};

/// Refuses a SELECT whose answer depends on the values that it gives to its own variables on the way.
[[noreturn]] void failOwnVariable(const QString& name);

/// Gives the names of a statement their meaning and its expressions their types, and writes the statement
/// anew in SQLite's words. Throws SqlError for what it does not find, allow or understand.
class Binder {
  public:
    Binder(const SessionFacts& facts, Emission& emission) : m_facts(facts), m_emission(emission) {
        m_emission.dateStyle = facts.dateStyle;
    }

    /// `rowLimit` rows at most; -1 for all.
    BoundQuery query(const ast::Query& query, qint64 rowLimit);
    /// An expression that stands alone, without tables.
    Bound constantExpression(const ast::Expr& expr);
    /// An expression over the columns of one row of a table, which stand in SQLite's table itself. Throws
    /// SqlError 1046 for a subquery.
    Bound rowExpression(const ast::Expr& expr, const Database& database, const Table& table);

  private:
    /// One SELECT, its parts not yet put together.
    struct Core {
        std::vector<Bound> items;
        std::vector<OutputColumn> columns;
        std::vector<QString> variables;
        bool distinct = false;
        QString tail;                  ///< from FROM on, without ORDER BY and LIMIT
        QString order;                 ///< with its leading words
        QString limit;                 ///< likewise
        std::vector<Bound> orderKeys;  ///< of ORDER BY, those that are no item
        bool singleRow = false;
        std::vector<ColumnUse> uses;  ///< columns of the queries around it
    };

    // Queries (querybinder.cpp)
    BoundQuery boundQuery(const ast::Query& query, Scope* outer, qint64 rowLimit = -1);
    Core boundCore(const ast::SelectCore& core, const std::vector<ast::OrderItem>& order, Scope* outer);
    BoundQuery boundUnion(const ast::QueryBody& body, Scope* outer);
    BoundQuery boundBody(const ast::QueryBody& body, Scope* outer);
    void boundItems(const ast::SelectCore& core, Scope& scope, Core& result);
    void addStar(const ast::SelectItem& item, Scope& scope, Core& result);
    void addItem(Core& result, Bound bound, const QString& name);
    void boundGroups(const ast::SelectCore& core, Scope& scope, Core& result);
    QString orderText(const std::vector<ast::OrderItem>& order, Scope& scope, Core& core);
    static int orderPosition(const ast::Expr& expr, const Core& core);
    static QString topText(const ast::SelectCore& core, const Core& result);
    static QString render(const Core& core);

    // FROM (frombinder.cpp)
    struct FromTexts {
        QString tables;
        QStringList conditions;
    };
    void addSources(const ast::Table& table, Scope& scope, bool outer);
    void addNamed(const ast::NamedTable& table, Scope& scope, bool outer);
    void addDerived(const ast::Query& query, const QString& alias, const std::vector<QString>& columnNames,
                    Scope& scope, bool outer);
    void flatten(const ast::Table& table, Scope& scope, size_t& next, FromTexts& texts);
    QString nested(const ast::Table& table, Scope& scope, size_t& next);
    QString sourceText(const Source& source);
    QString joinCondition(const ast::Join& join, Scope& scope, size_t first, size_t last);
    QString fromText(const std::vector<ast::TablePtr>& from, Scope& scope, QStringList& conditions);

    // Expressions (expressionbinder.cpp, predicatebinder.cpp)
    Bound expression(const ast::Expr& expr, Scope& scope);
    void checkGrouped(const Bound& bound, const Scope& scope, bool grouped, int number,
                      const char* clause) const;

    Bound bound(const ast::Literal& node, Scope& scope);
    Bound bound(const ast::ColumnName& node, Scope& scope);
    Bound bound(const ast::Variable& node, Scope& scope);
    Bound bound(const ast::Unary& node, Scope& scope);
    Bound bound(const ast::Binary& node, Scope& scope);
    Bound bound(const ast::Comparison& node, Scope& scope);
    Bound bound(const ast::Logical& node, Scope& scope);
    Bound bound(const ast::Not& node, Scope& scope);
    Bound bound(const ast::Like& node, Scope& scope);
    Bound bound(const ast::Between& node, Scope& scope);
    Bound bound(const ast::In& node, Scope& scope);
    Bound bound(const ast::IsNull& node, Scope& scope);
    Bound bound(const ast::Exists& node, Scope& scope);
    Bound bound(const ast::ScalarQuery& node, Scope& scope);
    Bound bound(const ast::Case& node, Scope& scope);
    Bound bound(const ast::Call& node, Scope& scope);
    Bound bound(const ast::Convert& node, Scope& scope);
    static void checkOneColumn(const BoundQuery& query);
    Bound inQuery(const ast::In& node, const Bound& operand, Scope& scope);
    Bound aggregate(const ast::Call& node, Scope& scope);
    Bound aggregateOf(const QString& function, const QString& distinct, const Bound& argument);

    const SessionFacts& m_facts;
    Emission& m_emission;
    int m_sources = 0;
    QSet<QString> m_variablesRead;  // nameKeys
};

}  // namespace engine

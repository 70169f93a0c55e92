#pragma once

#include "engine/syntax/ast.h"
#include "engine/syntax/tokenreader.h"

#include <vector>

namespace engine {

/// Reads a batch of T-SQL statements.
class Parser {
  public:
    Parser(const QString& batch, bool quotedIdentifiers);

    /// All statements of the batch, up to one that is refused. Throws SqlError 102, 105, 113, 156, 170, 2715.
    std::vector<ast::Statement> batch();

    /// "@a int, @b nvarchar(10) OUTPUT": the parameters of a statement, which is all that the batch says.
    std::vector<std::pair<QString, SqlType>> parameters();

    /// The query, or the expression, that the text begins with; `length` becomes that of its text.
    ast::Query leadingQuery(qsizetype* length);
    ast::ExprPtr leadingExpression(qsizetype* length);
    /// A condition that is all of the text.
    ast::ExprPtr wholeCondition();

  private:
    // Statements
    ast::Statement statement(bool first);
    ast::If conditional();
    std::vector<ast::Statement> block();
    ast::Statement refused();
    ast::SetOption setOption();
    ast::Execute execute();
    ast::ExprPtr argumentValue();
    ast::Declare declare();
    ast::WaitFor waitFor();
    ast::Transaction transaction(ast::TransactionStep step);

    // Queries
    ast::Query query();
    ast::QueryPtr subquery();
    ast::QueryBody queryBody();
    ast::QueryBody queryPrimary();
    std::unique_ptr<ast::SelectCore> selectCore();
    void top(ast::SelectCore& core);
    ast::SelectItem selectItem();
    ast::TablePtr joinedTable();
    ast::TablePtr primaryTable();
    std::optional<ast::JoinKind> joinKind(bool* cross);
    QString tableAlias();
    void tableHints();
    std::vector<ast::OrderItem> orderBy();
    ast::Path path();

    // Expressions
    ast::ExprPtr condition();
    ast::ExprPtr scalar();
    ast::ExprPtr asPredicate(ast::ExprPtr expr) const;
    ast::ExprPtr asValue(ast::ExprPtr expr) const;
    ast::ExprPtr expression();
    ast::ExprPtr conjunction();
    ast::ExprPtr negation();
    ast::ExprPtr predicate();
    ast::ExprPtr predicateTail(ast::ExprPtr left);
    ast::ExprPtr additive();
    ast::ExprPtr multiplicative();
    ast::ExprPtr unary();
    ast::ExprPtr primary();
    ast::ExprPtr parenthesized();
    ast::ExprPtr literal();
    ast::ExprPtr caseExpression();
    ast::ExprPtr convertOrCast(bool cast);
    ast::ExprPtr call(const QString& name);
    ast::ExprPtr nameOrCall();
    bool startsQuery() const;
    SqlType typeName();
    SqlType laterTypeName();

    /// Keeps nesting, and chains of operators, within what the stack bears. Throws SqlError 191.
    class Depth {
      public:
        explicit Depth(Parser& parser);
        ~Depth() { --m_parser.m_depth; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;

      private:
        Parser& m_parser;
    };
    void countOperator();

    TokenReader m_tokens;
    int m_depth = 0;
    int m_operators = 0;  // of the statement at work
};

}  // namespace engine

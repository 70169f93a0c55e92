#pragma once

#include "engine/syntax/ast.h"
#include "engine/syntax/tokencursor.h"

#include <vector>

namespace engine {

/// Reads T-SQL statements, and the queries and expressions of scripts, from where the tokens stand. Throws
/// SqlError 156, 170, 191 and the numbers of parseType().
class Parser {
  public:
    explicit Parser(TokenCursor& tokens) : m_tokens(tokens) {}

    /// All statements up to the end, or up to one that is refused.
    std::vector<ast::Statement> batch();

    /// "@a int, @b nvarchar(10) OUTPUT": the parameters of a statement, which is all that there is.
    std::vector<std::pair<QString, SqlType>> parameters();

    ast::Query query();
    ast::ExprPtr scalar();
    ast::ExprPtr condition();
    /// The condition as an expression of 1 or 0.
    ast::ExprPtr conditionAsNumber();
    /// A procedure with its arguments; EXEC has been taken.
    ast::Execute execute();
    /// SET has been taken.
    ast::SetOption setOption();

  private:
    // Statements
    ast::Statement statement(bool first);
    ast::If conditional();
    std::vector<ast::Statement> block();
    ast::Statement refused();
    ast::ExprPtr argumentValue();
    ast::Declare declare();
    ast::WaitFor waitFor();
    ast::Transaction transaction(ast::TransactionStep step);

    // Queries
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

    TokenCursor& m_tokens;
    int m_depth = 0;
    int m_operators = 0;  // of the statement at work
};

/// The expression, or the condition, that is all of the text.
ast::ExprPtr parseExpression(const QString& text);
ast::ExprPtr parseCondition(const QString& text);

}  // namespace engine

#pragma once

#include "engine/values/sqlerror.h"
#include "engine/values/sqltype.h"

#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

/// What a batch says, before names mean anything.
namespace engine::ast {

struct Expr;
struct Query;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

/// Parts of a name as written, "db..t" is {"db", "", "t"}.
using Path = std::vector<QString>;

/// A constant; `isNull` for the word NULL.
struct Literal {
    Value value;
    SqlType type;
    bool isNull = false;
};

struct ColumnName {
    Path path;
};

/// @x and @@x.
struct Variable {
    QString name;
};

enum class UnaryOp { Minus, Plus, BitNot };
struct Unary {
    UnaryOp op;
    ExprPtr operand;
};

enum class BinaryOp { Add, Subtract, Multiply, Divide, Modulo, BitAnd, BitOr, BitXor };
struct Binary {
    BinaryOp op;
    ExprPtr left;
    ExprPtr right;
};

enum class CompareOp { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };
struct Comparison {
    CompareOp op;
    ExprPtr left;
    ExprPtr right;
};

struct Logical {
    bool isAnd;
    ExprPtr left;
    ExprPtr right;
};

struct Not {
    ExprPtr operand;
};

struct Like {
    ExprPtr text;
    ExprPtr pattern;
    ExprPtr escape;
    bool negated;
};

struct Between {
    ExprPtr operand;
    ExprPtr low;
    ExprPtr high;
    bool negated;
};

/// IN with a list or with a query.
struct In {
    ExprPtr operand;
    std::vector<ExprPtr> list;
    QueryPtr query;
    bool negated;
};

struct IsNull {
    ExprPtr operand;
    bool negated;
};

struct Exists {
    QueryPtr query;
};

struct ScalarQuery {
    QueryPtr query;
};

/// CASE; `subject` is null in the form that lists conditions.
struct Case {
    ExprPtr subject;
    std::vector<std::pair<ExprPtr, ExprPtr>> branches;
    ExprPtr otherwise;
};

struct Call {
    QString name;
    std::vector<ExprPtr> arguments;
    bool distinct = false;
    bool star = false;  ///< count(*)
};

/// CAST and CONVERT.
struct Convert {
    SqlType type;
    ExprPtr operand;
    ExprPtr style;
};

struct Expr {
    using Node = std::variant<Literal, ColumnName, Variable, Unary, Binary, Comparison, Logical, Not, Like,
                              Between, In, IsNull, Exists, ScalarQuery, Case, Call, Convert>;
    Node node;
};

struct Table;
using TablePtr = std::unique_ptr<Table>;

struct NamedTable {
    Path path;
    QString alias;
};

struct DerivedTable {
    QueryPtr query;
    QString alias;
    std::vector<QString> columnNames;
};

enum class JoinKind { Inner, Left, Right, Full };
struct Join {
    JoinKind kind;
    TablePtr left;
    TablePtr right;
    ExprPtr on;  ///< null for CROSS JOIN
};

/// What stands between two commas of FROM.
struct Table {
    std::variant<NamedTable, DerivedTable, Join> node;
};

struct SelectItem {
    ExprPtr expr;      ///< null for a star
    Path starPrefix;   ///< of t.*
    QString name;      ///< alias, empty: none
    QString variable;  ///< of @x = expr
};

struct Top {
    double count;
    bool percent;
};

struct SelectCore {
    bool distinct = false;
    std::optional<Top> top;
    std::vector<SelectItem> items;
    std::vector<TablePtr> from;
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
};

/// A SELECT or a UNION of two bodies.
struct QueryBody {
    std::unique_ptr<SelectCore> core;
    std::unique_ptr<QueryBody> left;
    std::unique_ptr<QueryBody> right;
    bool all = false;
};

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

struct Query {
    QueryBody body;
    std::vector<OrderItem> orderBy;
};

struct Select {
    Query query;
};

struct Use {
    QString database;
};

/// SET of an option: its words and its value as written, "rowcount" and "10".
struct SetOption {
    QString option;
    QString value;
};

struct SetVariable {
    QString name;
    ExprPtr expr;
};

struct Declare {
    std::vector<std::pair<QString, SqlType>> variables;
};

struct Argument {
    QString name;  ///< with its @, empty when positional
    ExprPtr expr;
};

struct Execute {
    Path procedure;
    std::vector<Argument> arguments;
};

struct WaitFor {
    qint64 milliseconds;
};

struct Print {
    ExprPtr expr;
};

enum class TransactionStep { Begin, Commit, Rollback };
struct Transaction {
    TransactionStep step;
};

struct Statement;

/// IF; the condition is an expression of 1 or 0.
struct If {
    ExprPtr condition;
    std::vector<Statement> then;
    std::vector<Statement> otherwise;
};

/// A statement that the server does not run for clients; the rest of the batch was not read.
struct Refused {
    enum Kind { Write, Definition } kind;
    QString what;  ///< "CREATE TABLE"
};

struct Statement {
    int line = 1;
    std::variant<Select, Use, SetOption, SetVariable, Declare, Execute, WaitFor, Print, Transaction, Refused,
                 If>
        node;
};

}  // namespace engine::ast

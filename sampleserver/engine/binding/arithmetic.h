#pragma once

#include "engine/binding/bound.h"
#include "engine/syntax/ast.h"

namespace engine {

/// `a` op `b` with SQL Server's result type. Throws SqlError 257, 403.
Bound arithmetic(ast::BinaryOp op, Bound a, Bound b, Emission& emission);

/// -x, +x, ~x. Throws SqlError 403.
Bound unaryArithmetic(ast::UnaryOp op, const Bound& operand, Emission& emission);

/// `a` op `b` as a predicate. Throws SqlError 257, 306.
Bound comparison(ast::CompareOp op, const Bound& a, const Bound& b, Emission& emission);

/// The two sides of an equality as SQLite compares them.
struct EqualSides {
    QString left;
    QString right;
};
EqualSides equalSides(const Bound& a, const Bound& b, Emission& emission);

/// The text of an integer-like expression with a check that it fits its type.
QString checkedInteger(const QString& sql, const SqlType& type);

/// The text of a wide or narrow decimal operation, 0 add, 1 subtract, 2 multiply, 3 divide.
QString decimalCall(int op, const Bound& a, const Bound& b, const SqlType& result);

}  // namespace engine

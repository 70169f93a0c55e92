#pragma once

#include "engine/binding/bound.h"

namespace engine {

/// The type that a value of either type converts to where both meet (CASE, UNION, comparison): the one of the
/// higher rank, wide enough for both.
SqlType commonType(const Bound& a, const Bound& b);
SqlType commonType(const SqlType& a, const SqlType& b);

/// The type of an operand as a decimal: a written whole number has as many digits as it shows.
SqlType exactDecimal(const Bound& bound);

/// The expression as a value of type `to`, as an assignment without CONVERT does it. Throws SqlError 257.
Bound implicitly(const Bound& bound, const SqlType& to, Emission& emission);

/// The expression as CONVERT with a style gives it.
Bound explicitly(const Bound& bound, const SqlType& to, int style, Emission& emission);

/// CONVERT with a style that is not known before the statement runs.
Bound explicitly(const Bound& bound, const SqlType& to, const Bound& style, Emission& emission);

/// The parts joined by commas as the arguments of SQLite function `name`.
QString callText(const char* name, std::initializer_list<QString> arguments);

}  // namespace engine

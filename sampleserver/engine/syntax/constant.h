#pragma once

#include "engine/syntax/tokencursor.h"
#include "engine/values/sqltype.h"

namespace engine {

/// A value that a script spells out, with the type that its spelling has.
struct Constant {
    Value value;
    SqlType type;
    bool isDefault = false;  ///< the word DEFAULT
};

/// Reads one value of an INSERT or of a default: numbers with a sign, $money, strings and their sums, 0x..,
/// NULL, DEFAULT, parentheses, GETDATE(), NEWID(), USER, CHAR(n), NCHAR(n), CAST(x AS type),
/// CONVERT(type, x), and REPLICATE(x, count), which here repeats texts and binary values to any length, so
/// that a script can fill text, ntext and image columns. Throws SqlError 128 for any other name, 195 for
/// another function, 102 for anything else.
Constant parseConstant(TokenCursor& tokens);

/// Reads the text of a default, "(getdate())".
Constant evaluateDefault(const QString& text);

}  // namespace engine

#pragma once

#include "engine/values/sqltype.h"

#include <QString>

namespace engine {

/// Converts a value as SQL Server does when it assigns or casts: a text to a number or date, a number to a
/// text, padding of char, nchar and binary, rounding to a scale. A null stays null.
/// Throws SqlError with the server's number: 245 (syntax error converting), 8114, 8115 (overflow),
/// 220 (overflow of a small integer), 241 (date), 242 (date out of range), 8152 (would be truncated; only
/// when `assigning`, a cast cuts instead), 529 (not allowed between these types). `style` is one of CONVERT's
/// or of dateFormatStyle().
Value convertValue(const Value& value, const SqlType& from, const SqlType& to, bool assigning, int style = 0);

/// The text of a value as the server would print it in a conversion to varchar (style 0 for dates).
QString valueText(const Value& value, const SqlType& type);

}  // namespace engine

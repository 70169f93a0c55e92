#pragma once

#include "engine/values/sqltype.h"

#include <QString>

namespace engine {

/// Converts a value as SQL Server does when it assigns or casts: a text to a number or date, a number to a
/// text, padding of char, nchar and binary, rounding to a scale. A null stays null.
/// Throws SqlError with the server's number: 245 (syntax error converting), 8114, 8115 (overflow),
/// 220 (overflow of a small integer), 241 (date), 242 (date out of range), 8152 (would be truncated; only
/// when `assigning`, a cast cuts instead), 529 (not allowed between these types).
Value convertValue(const Value& value, const SqlType& from, const SqlType& to, bool assigning);

/// Parses the text of a type as a declaration writes it, "varchar", with its measures already read.
/// Returns false for a name that is no type of SQL Server 7.0. Applies the defaults (char(1), decimal(18, 0),
/// float(53) ..) where a measure is -1.
bool resolveType(const QString& name, int length, int precision, int scale, SqlType* type);

/// A datetime from its parts, and back, in three-hundredths of a second since 1900-01-01.
qint64 makeDateTime(int year, int month, int day, int hour, int minute, int second, int ticks);

/// The text of a value as the server would print it in a conversion to varchar (style 0 for dates).
QString valueText(const Value& value, const SqlType& type);

}  // namespace engine

#pragma once

#include "engine/values/sqltype.h"

#include <QString>

#include <optional>

namespace engine {

/// The server's name of a type, "numeric", "varchar".
QString typeName(TypeId id);

bool isInteger(TypeId id);    ///< bit, tinyint, smallint, int
bool isDecimal(TypeId id);    ///< decimal, numeric
bool isMoney(TypeId id);      ///< money, smallmoney
bool isFloat(TypeId id);      ///< float, real
bool isNumber(TypeId id);     ///< any of the four families above
bool isDateTime(TypeId id);   ///< datetime, smalldatetime
bool isText(TypeId id);       ///< char, varchar, text and their national kinds
bool isNational(TypeId id);   ///< nchar, nvarchar, ntext
bool isBinary(TypeId id);     ///< binary, varbinary, image, timestamp
bool isLong(TypeId id);       ///< text, ntext, image
bool isFixedText(TypeId id);  ///< char, nchar

/// True for a decimal whose rows lie as scaled integers (up to 18 digits).
bool isNarrowDecimal(const SqlType& type);

/// The type as a decimal when its values are whole or have a fixed scale: int is decimal(10, 0),
/// money is decimal(19, 4).
SqlType asDecimal(const SqlType& type);

/// Rank in SQL Server's order of types: of two operands the one with the higher rank decides.
int typeRank(TypeId id);

/// Bytes that a value of the type takes at most, as the catalog tells them (2 a character for n-types).
int typeBytes(const SqlType& type);

/// The nearest type there is to one that came with a later server, "bigint" or, when `longest`,
/// "varchar(max)".
std::optional<SqlType> laterType(const QString& name, bool longest);

/// The type of a name in lower case, without the measures that a declaration gives it.
std::optional<SqlType> typeNamed(const QString& name);

}  // namespace engine

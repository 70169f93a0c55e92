#pragma once

#include <QString>

namespace ado {

/// What kind of value a column holds, as its texts are made.
enum class FieldType {
    Text,      ///< char, varchar, text and their n-kinds
    Integer,   ///< tinyint, smallint, int, bigint
    Exact,     ///< decimal, numeric, money, smallmoney: all digits
    Float,     ///< float: the fewest digits that read back the same
    Real,      ///< real: as float, in single precision
    Boolean,   ///< bit: True or False
    DateTime,  ///< yyyy-mm-dd hh:mm:ss with a fraction only where it is not zero
    Date,      ///< yyyy-mm-dd
    Guid,      ///< {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}
    Binary     ///< binary, varbinary, image, timestamp: no text
};

/// Whether values of a type are numbers, which stand to the right of their columns.
constexpr bool isNumber(FieldType type) {
    return type == FieldType::Integer || type == FieldType::Exact || type == FieldType::Float ||
           type == FieldType::Real;
}

/// A column of a record set with the current row's value. Reading a value throws Error 3021 when there is no
/// row.
class Field {
  public:
    virtual ~Field() = default;

    /// As the server gave it; empty for an unnamed column.
    virtual QString Name() const = 0;
    virtual FieldType Type() const = 0;
    virtual bool isNull() const = 0;
    /// The value as text. Throws Error 13 "Type mismatch" for a null and for binary data. The view holds
    /// until the record set moves or another statement runs on its connection.
    virtual QStringView text() const = 0;
    /// The value as a whole number, a fraction rounded half to even, True as 1. Throws Error 13 when it is
    /// none.
    virtual qint64 toInteger() const = 0;
};

}  // namespace ado

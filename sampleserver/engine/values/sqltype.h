#pragma once

#include <QByteArray>
#include <QString>

#include <variant>

namespace engine {

/// The data types of SQL Server 7.0. `sysname` is nvarchar(128), `integer` is int, `dec` is decimal.
enum class TypeId {
    Bit,
    TinyInt,
    SmallInt,
    Int,
    Decimal,
    Numeric,
    Money,
    SmallMoney,
    Float,
    Real,
    DateTime,
    SmallDateTime,
    Char,
    VarChar,
    Text,
    NChar,
    NVarChar,
    NText,
    Binary,
    VarBinary,
    Image,
    Timestamp,
    UniqueIdentifier
};

/// A type with its measures.
struct SqlType {
    TypeId id = TypeId::Int;
    int length = 0;     ///< declared length: characters for char types (also n-types), bytes for binary types
    int precision = 0;  ///< decimal and numeric only
    int scale = 0;      ///< decimal and numeric only

    bool operator==(const SqlType&) const = default;
};

/// A value between engine and wire; which alternative it holds follows from its column's type:
///  - null: std::monostate, for every type
///  - bit, tinyint, smallint, int: qint64
///  - money, smallmoney: qint64, in ten-thousandths
///  - datetime, smalldatetime: qint64, in three-hundredths of a second since 1900-01-01 (negative before)
///  - float, real: double
///  - decimal, numeric: QString in plain decimal notation with exactly `scale` digits after the point,
///  "-0.50"
///  - char, varchar, text, nchar, nvarchar, ntext: QString (char and nchar already padded to their length)
///  - binary, varbinary, image, timestamp, uniqueidentifier: QByteArray (a uniqueidentifier in its 16 bytes
///    in wire order: the first three groups little-endian)
using Value = std::variant<std::monostate, qint64, double, QString, QByteArray>;

/// A value with the type that says what it is.
struct TypedValue {
    SqlType type;
    Value value;
};

}  // namespace engine

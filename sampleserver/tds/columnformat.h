#pragma once

#include "engine/values/resultsink.h"
#include "tds/tdsversion.h"

#include <QByteArray>

#include <span>
#include <vector>

namespace tds {

/// The data types as tokens name them (MS-TDS 2.2.5.4): for most types one that can hold a null; the fixed
/// ones cannot, and have no length before a value.
enum class WireType : quint8 {
    Image = 0x22,
    Text = 0x23,
    Guid = 0x24,
    IntN = 0x26,
    TinyInt = 0x30,
    Bit = 0x32,
    SmallInt = 0x34,
    Int = 0x38,
    SmallDateTime = 0x3A,
    Real = 0x3B,
    Money = 0x3C,
    DateTime = 0x3D,
    Float = 0x3E,
    NText = 0x63,
    BitN = 0x68,
    DecimalN = 0x6A,
    NumericN = 0x6C,
    FloatN = 0x6D,
    MoneyN = 0x6E,
    DateTimeN = 0x6F,
    SmallMoney = 0x7A,
    BigInt = 0x7F,  ///< comes from clients only
    BigVarBinary = 0xA5,
    BigVarChar = 0xA7,
    BigBinary = 0xAD,
    BigChar = 0xAF,
    NVarChar = 0xE7,
    NChar = 0xEF
};

/// How the values of a column lie on the wire.
struct ColumnFormat {
    WireType type = WireType::IntN;
    quint32 bytes = 4;  ///< most bytes of a value (of a decimal: with its sign)
    quint8 precision = 0;
    quint8 scale = 0;
    bool fixed = false;  ///< never null, so the wire has the fixed type in the place of `type`

    bool operator==(const ColumnFormat&) const = default;
};

ColumnFormat formatOf(const engine::SqlType& type, bool nullable = true);

/// How a type of a fixed size goes with nulls and without.
struct NumberFormat {
    engine::TypeId id;  ///< decimal for the eight-byte integer, which there is no type for
    WireType nullable;
    quint32 bytes;
    WireType fixed;
};
std::span<const NumberFormat> numberFormats();

/// Bytes of the length that stands before a value, and in TYPE_INFO: 4 for the long types, 2, or 1.
int lengthBytes(WireType type);
bool isText(WireType type);

/// The collation of every text: SQL_Latin1_General_CP1_CI_AS, that is LCID 0x0409 and sort order 52.
QByteArrayView collationBytes();

/// Appends TYPE_INFO (MS-TDS 2.2.5.6).
void appendTypeInfo(QByteArray& out, const ColumnFormat& format, TdsVersion version);

/// Appends COLMETADATA (MS-TDS 2.2.7.4).
void appendColumns(QByteArray& out, const std::vector<engine::ResultColumn>& columns, TdsVersion version);

}  // namespace tds

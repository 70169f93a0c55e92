#pragma once

#include "engine/values/resultsink.h"
#include "tds/tdsversion.h"

#include <QByteArray>

#include <vector>

namespace tds {

/// The data types as tokens name them (MS-TDS 2.2.5.4), in the forms that can hold a null.
enum class WireType : quint8 {
    Image = 0x22,
    Text = 0x23,
    Guid = 0x24,
    IntN = 0x26,
    NText = 0x63,
    BitN = 0x68,
    DecimalN = 0x6A,
    NumericN = 0x6C,
    FloatN = 0x6D,
    MoneyN = 0x6E,
    DateTimeN = 0x6F,
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

    bool operator==(const ColumnFormat&) const = default;
};

ColumnFormat formatOf(const engine::SqlType& type);

/// The collation of every text: SQL_Latin1_General_CP1_CI_AS, that is LCID 0x0409 and sort order 52.
QByteArrayView collationBytes();

/// Appends COLMETADATA (MS-TDS 2.2.7.4).
void appendColumns(QByteArray& out, const std::vector<engine::ResultColumn>& columns, TdsVersion version);

}  // namespace tds

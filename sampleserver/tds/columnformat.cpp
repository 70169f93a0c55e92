#include "tds/columnformat.h"

#include "tds/tokens.h"
#include "tds/wirebytes.h"

#include <algorithm>
#include <array>

namespace tds {

namespace {

using engine::TypeId;

constexpr quint32 kLongestShortValue = 8000;
constexpr quint32 kLongestLongValue = 0x7FFFFFFF;
constexpr quint32 kTimestampUserType = 80;
constexpr quint16 kNullableFlag = 0x0001;
constexpr quint16 kIdentityFlag = 0x0010;

quint32 shortBytes(int length, int bytesEach) {
    return quint32(std::clamp(length * bytesEach, bytesEach, int(kLongestShortValue)));
}

ColumnFormat decimalFormat(WireType wireType, const engine::SqlType& type) {
    const int precision = std::clamp(type.precision, 1, 38);
    const quint32 digits = precision <= 9 ? 4 : precision <= 19 ? 8 : precision <= 28 ? 12 : 16;
    return {wireType, digits + 1, quint8(precision), quint8(std::clamp(type.scale, 0, precision))};
}

// Texts and images carry the name of their table. A result does not know it, so the name is empty.
void appendTableName(QByteArray& out, TdsVersion version) {
    if (isWide(version)) appendNumber(out, quint8(1));
    appendShortText(out, {});
}

}  // namespace

std::span<const NumberFormat> numberFormats() {
    static constexpr std::array<NumberFormat, 11> formats{{
        {TypeId::Bit, WireType::BitN, 1, WireType::Bit},
        {TypeId::TinyInt, WireType::IntN, 1, WireType::TinyInt},
        {TypeId::SmallInt, WireType::IntN, 2, WireType::SmallInt},
        {TypeId::Int, WireType::IntN, 4, WireType::Int},
        {TypeId::Money, WireType::MoneyN, 8, WireType::Money},
        {TypeId::SmallMoney, WireType::MoneyN, 4, WireType::SmallMoney},
        {TypeId::Float, WireType::FloatN, 8, WireType::Float},
        {TypeId::Real, WireType::FloatN, 4, WireType::Real},
        {TypeId::DateTime, WireType::DateTimeN, 8, WireType::DateTime},
        {TypeId::SmallDateTime, WireType::DateTimeN, 4, WireType::SmallDateTime},
        {TypeId::Decimal, WireType::IntN, 8, WireType::BigInt},
    }};
    return formats;
}

int lengthBytes(WireType type) {
    switch (type) {
        case WireType::Text:
        case WireType::NText:
        case WireType::Image:
            return 4;
        case WireType::BigChar:
        case WireType::BigVarChar:
        case WireType::NChar:
        case WireType::NVarChar:
        case WireType::BigBinary:
        case WireType::BigVarBinary:
            return 2;
        default:
            return 1;
    }
}

bool isText(WireType type) {
    return lengthBytes(type) > 1 && type != WireType::Image && type != WireType::BigBinary &&
           type != WireType::BigVarBinary;
}

ColumnFormat formatOf(const engine::SqlType& type, bool nullable) {
    switch (type.id) {
        case TypeId::Decimal:
            return decimalFormat(WireType::DecimalN, type);
        case TypeId::Numeric:
            return decimalFormat(WireType::NumericN, type);
        case TypeId::Char:
            return {WireType::BigChar, shortBytes(type.length, 1)};
        case TypeId::VarChar:
            return {WireType::BigVarChar, shortBytes(type.length, 1)};
        case TypeId::NChar:
            return {WireType::NChar, shortBytes(type.length, 2)};
        case TypeId::NVarChar:
            return {WireType::NVarChar, shortBytes(type.length, 2)};
        case TypeId::Binary:
            return {WireType::BigBinary, shortBytes(type.length, 1)};
        case TypeId::VarBinary:
            return {WireType::BigVarBinary, shortBytes(type.length, 1)};
        case TypeId::Timestamp:
            return {WireType::BigBinary, 8};
        case TypeId::Text:
            return {WireType::Text, kLongestLongValue};
        case TypeId::NText:
            return {WireType::NText, kLongestLongValue - 1};
        case TypeId::Image:
            return {WireType::Image, kLongestLongValue};
        case TypeId::UniqueIdentifier:
            return {WireType::Guid, 16};
        default:
            break;
    }
    const auto number = std::ranges::find(numberFormats(), type.id, &NumberFormat::id);
    return {.type = number->nullable, .bytes = number->bytes, .fixed = !nullable};
}

void appendTypeInfo(QByteArray& out, const ColumnFormat& format, TdsVersion version) {
    if (format.fixed) {
        const auto number = std::ranges::find_if(numberFormats(), [&](const NumberFormat& one) {
            return one.nullable == format.type && one.bytes == format.bytes;
        });
        return appendNumber(out, quint8(number->fixed));
    }
    appendNumber(out, quint8(format.type));
    const int length = lengthBytes(format.type);
    if (length == 4)
        appendNumber(out, format.bytes);
    else if (length == 2)
        appendNumber(out, quint16(format.bytes));
    else
        appendNumber(out, quint8(format.bytes));
    if (isText(format.type) && hasCollations(version)) out.append(collationBytes());
    if (format.precision > 0) {
        appendNumber(out, format.precision);
        appendNumber(out, format.scale);
    }
}

QByteArrayView collationBytes() {
    static constexpr std::array<char, 5> bytes{'\x09', '\x04', '\xD0', '\x00', '\x34'};
    return {bytes.data(), qsizetype(bytes.size())};
}

void appendColumns(QByteArray& out, const std::vector<engine::ResultColumn>& columns, TdsVersion version) {
    appendNumber(out, quint8(Token::ColumnMetadata));
    appendNumber(out, quint16(columns.size()));
    for (const engine::ResultColumn& column : columns) {
        const ColumnFormat format = formatOf(column.type, column.nullable);
        const quint32 userType = column.type.id == TypeId::Timestamp ? kTimestampUserType : 0;
        if (isWide(version))
            appendNumber(out, userType);
        else
            appendNumber(out, quint16(userType));
        appendNumber(out,
                     quint16((column.nullable ? kNullableFlag : 0) | (column.identity ? kIdentityFlag : 0)));
        appendTypeInfo(out, format, version);
        if (lengthBytes(format.type) == 4) appendTableName(out, version);
        appendByteText(out, column.name);
    }
}

}  // namespace tds

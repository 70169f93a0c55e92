#include "tds/columnformat.h"

#include "tds/tokens.h"
#include "tds/wirebytes.h"

#include <algorithm>
#include <array>
#include <optional>

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

bool isLong(WireType type) {
    return type == WireType::Text || type == WireType::NText || type == WireType::Image;
}

ColumnFormat nullableFormat(const engine::SqlType& type) {
    switch (type.id) {
        case TypeId::Bit:
            return {WireType::BitN, 1};
        case TypeId::TinyInt:
            return {WireType::IntN, 1};
        case TypeId::SmallInt:
            return {WireType::IntN, 2};
        case TypeId::Int:
            return {WireType::IntN, 4};
        case TypeId::Decimal:
            return decimalFormat(WireType::DecimalN, type);
        case TypeId::Numeric:
            return decimalFormat(WireType::NumericN, type);
        case TypeId::Money:
            return {WireType::MoneyN, 8};
        case TypeId::SmallMoney:
            return {WireType::MoneyN, 4};
        case TypeId::Float:
            return {WireType::FloatN, 8};
        case TypeId::Real:
            return {WireType::FloatN, 4};
        case TypeId::DateTime:
            return {WireType::DateTimeN, 8};
        case TypeId::SmallDateTime:
            return {WireType::DateTimeN, 4};
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
    }
    return {};
}

/// The type that stands for a nullable one where there are no nulls; nothing where there is but the one.
std::optional<WireType> fixedType(const ColumnFormat& format) {
    const bool small = format.bytes == 4;
    switch (format.type) {
        case WireType::BitN:
            return WireType::Bit;
        case WireType::IntN:
            return small ? WireType::Int : format.bytes == 2 ? WireType::SmallInt : WireType::TinyInt;
        case WireType::MoneyN:
            return small ? WireType::SmallMoney : WireType::Money;
        case WireType::FloatN:
            return small ? WireType::Real : WireType::Float;
        case WireType::DateTimeN:
            return small ? WireType::SmallDateTime : WireType::DateTime;
        default:
            return std::nullopt;
    }
}

}  // namespace

ColumnFormat formatOf(const engine::SqlType& type, bool nullable) {
    ColumnFormat format = nullableFormat(type);
    format.fixed = !nullable && fixedType(format);
    return format;
}

void appendTypeInfo(QByteArray& out, const ColumnFormat& format, TdsVersion version) {
    if (format.fixed) return appendNumber(out, quint8(*fixedType(format)));
    appendNumber(out, quint8(format.type));
    const auto appendCollation = [&] {
        if (hasCollations(version)) out.append(collationBytes());
    };
    switch (format.type) {
        case WireType::BigChar:
        case WireType::BigVarChar:
        case WireType::NChar:
        case WireType::NVarChar:
            appendNumber(out, quint16(format.bytes));
            appendCollation();
            break;
        case WireType::BigBinary:
        case WireType::BigVarBinary:
            appendNumber(out, quint16(format.bytes));
            break;
        case WireType::Text:
        case WireType::NText:
            appendNumber(out, format.bytes);
            appendCollation();
            break;
        case WireType::Image:
            appendNumber(out, format.bytes);
            break;
        default:
            appendNumber(out, quint8(format.bytes));
            break;
    }
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
        if (isLong(format.type)) appendTableName(out, version);
        appendByteText(out, column.name);
    }
}

}  // namespace tds

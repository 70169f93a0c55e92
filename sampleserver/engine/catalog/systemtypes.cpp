#include "engine/catalog/systemtypes.h"

#include "engine/values/typeinfo.h"

#include <array>

namespace engine {

namespace {

constexpr int longBytes = 2147483647;

/// In the order of TypeId; in the inner braces, ODBC's.
constexpr std::array<SystemType, 23> types{{
    {TypeId::Bit, 104, 16, 50, 50, 1, -1, {-7, 1, 1, -1, 0}},
    {TypeId::TinyInt, 48, 5, 48, 38, 3, 0, {-6, 3, 1, 0, 10}},
    {TypeId::SmallInt, 52, 6, 52, 38, 5, 0, {5, 5, 2, 0, 10}},
    {TypeId::Int, 56, 7, 56, 38, 10, 0, {4, 10, 4, 0, 10}},
    {TypeId::Decimal, 106, 24, 55, 106, 0, 0, {3, 0, 0, 0, 10}},
    {TypeId::Numeric, 108, 10, 63, 108, 0, 0, {2, 0, 0, 0, 10}},
    {TypeId::Money, 60, 11, 60, 110, 19, 4, {3, 19, 21, 4, 10}},
    {TypeId::SmallMoney, 122, 21, 122, 110, 10, 4, {3, 10, 12, 4, 10}},
    {TypeId::Float, 62, 8, 62, 109, 53, -1, {6, 15, 8, -1, 10}},
    {TypeId::Real, 59, 23, 59, 109, 24, -1, {7, 7, 4, -1, 10}},
    {TypeId::DateTime, 61, 12, 61, 111, 23, 3, {11, 23, 16, 3, 0}},
    {TypeId::SmallDateTime, 58, 22, 58, 111, 16, 0, {11, 16, 16, 0, 0}},
    {TypeId::Char, 175, 1, 47, 39, 0, -1, {1, 0, 0, -1, 0}},
    {TypeId::VarChar, 167, 2, 39, 39, 0, -1, {12, 0, 0, -1, 0}},
    {TypeId::Text, 35, 19, 35, 35, 0, -1, {-1, longBytes, longBytes, -1, 0}},
    {TypeId::NChar, 239, 0, 47, 39, 0, -1, {-8, 0, 0, -1, 0}},
    {TypeId::NVarChar, 231, 0, 39, 39, 0, -1, {-9, 0, 0, -1, 0}},
    {TypeId::NText, 99, 0, 35, 35, 0, -1, {-10, longBytes / 2, longBytes - 1, -1, 0}},
    {TypeId::Binary, 173, 3, 45, 37, 0, -1, {-2, 0, 0, -1, 0}},
    {TypeId::VarBinary, 165, 4, 37, 37, 0, -1, {-3, 0, 0, -1, 0}},
    {TypeId::Image, 34, 20, 34, 34, 0, -1, {-4, longBytes, longBytes, -1, 0}},
    {TypeId::Timestamp, 189, 80, 45, 37, 8, -1, {-2, 8, 8, -1, 0}},
    {TypeId::UniqueIdentifier, 36, 0, 37, 37, 16, -1, {-11, 36, 16, -1, 0}},
}};

}  // namespace

const SystemType& systemType(TypeId id) {
    return types[static_cast<size_t>(id)];
}

int catalogPrecision(const SqlType& type) {
    if (isLong(type.id)) return -1;
    if (isDecimal(type.id)) return type.precision;
    const int fixed = systemType(type.id).precision;
    return fixed > 0 ? fixed : type.length;
}

int catalogScale(const SqlType& type) {
    return isDecimal(type.id) ? type.scale : systemType(type.id).scale;
}

OdbcType odbcType(const SqlType& type, bool sysname, int version) {
    constexpr int timestampType = 93;
    constexpr int dateTimeFamily = 9;
    const OdbcFacts& known = systemType(type.id).odbc;
    OdbcType odbc{.dataType = known.dataType, .precision = known.precision, .length = known.length};
    if (known.scale >= 0) odbc.scale = known.scale;
    if (known.radix > 0) odbc.radix = known.radix;
    if (isDecimal(type.id)) {
        odbc.precision = type.precision;
        odbc.length = type.precision + 2;
        odbc.scale = type.scale;
    } else if (known.precision == 0) {
        odbc.precision = type.length;
        odbc.length = typeBytes(type);
    }
    if (isText(type.id) || isBinary(type.id)) odbc.octetLength = odbc.length;
    if (sysname) odbc.dataType = -9;
    odbc.sqlDataType = odbc.dataType;
    if (isDateTime(type.id)) {
        odbc.sqlDataType = dateTimeFamily;
        odbc.dateTimeSub = 3;
        if (version == 3) odbc.dataType = timestampType;
    }
    if (isFloat(type.id) && version == 3) {
        odbc.radix = 2;
        odbc.precision = type.id == TypeId::Float ? 53 : 24;
    }
    return odbc;
}

}  // namespace engine

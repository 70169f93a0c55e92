#include "engine/catalog/systemtypes.h"

#include "engine/values/typeinfo.h"

#include <array>

namespace engine {

namespace {

/// In the order of TypeId.
constexpr std::array<SystemType, 23> types{{
    {TypeId::Bit, 104, 16, 50, 50, 1, -1},
    {TypeId::TinyInt, 48, 5, 48, 38, 3, 0},
    {TypeId::SmallInt, 52, 6, 52, 38, 5, 0},
    {TypeId::Int, 56, 7, 56, 38, 10, 0},
    {TypeId::Decimal, 106, 24, 55, 106, 0, 0},
    {TypeId::Numeric, 108, 10, 63, 108, 0, 0},
    {TypeId::Money, 60, 11, 60, 110, 19, 4},
    {TypeId::SmallMoney, 122, 21, 122, 110, 10, 4},
    {TypeId::Float, 62, 8, 62, 109, 53, -1},
    {TypeId::Real, 59, 23, 59, 109, 24, -1},
    {TypeId::DateTime, 61, 12, 61, 111, 23, 3},
    {TypeId::SmallDateTime, 58, 22, 58, 111, 16, 0},
    {TypeId::Char, 175, 1, 47, 39, 0, -1},
    {TypeId::VarChar, 167, 2, 39, 39, 0, -1},
    {TypeId::Text, 35, 19, 35, 35, 0, -1},
    {TypeId::NChar, 239, 0, 47, 39, 0, -1},
    {TypeId::NVarChar, 231, 0, 39, 39, 0, -1},
    {TypeId::NText, 99, 0, 35, 35, 0, -1},
    {TypeId::Binary, 173, 3, 45, 37, 0, -1},
    {TypeId::VarBinary, 165, 4, 37, 37, 0, -1},
    {TypeId::Image, 34, 20, 34, 34, 0, -1},
    {TypeId::Timestamp, 189, 80, 45, 37, 8, -1},
    {TypeId::UniqueIdentifier, 36, 0, 37, 37, 16, -1},
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

}  // namespace engine

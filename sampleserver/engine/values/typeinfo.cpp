#include "engine/values/typeinfo.h"

#include <QHash>

#include <array>

namespace engine {

namespace {

struct TypeFacts {
    const char* name;
    int rank;
    int bytes;  // 0: by length
};

/// In the order of TypeId.
constexpr std::array<TypeFacts, 23> facts{{
    {"bit", 12, 1},      {"tinyint", 13, 1},          {"smallint", 14, 2},
    {"int", 15, 4},      {"decimal", 18, 0},          {"numeric", 18, 0},
    {"money", 17, 8},    {"smallmoney", 16, 4},       {"float", 20, 8},
    {"real", 19, 4},     {"datetime", 22, 8},         {"smalldatetime", 21, 4},
    {"char", 3, 0},      {"varchar", 4, 0},           {"text", 10, 16},
    {"nchar", 5, 0},     {"nvarchar", 6, 0},          {"ntext", 11, 16},
    {"binary", 1, 0},    {"varbinary", 2, 0},         {"image", 9, 16},
    {"timestamp", 8, 8}, {"uniqueidentifier", 7, 16},
}};

const TypeFacts& factsOf(TypeId id) {
    return facts[static_cast<size_t>(id)];
}

QHash<QString, TypeId> typesByName() {
    QHash<QString, TypeId> types;
    for (size_t i = 0; i < facts.size(); ++i)
        types.insert(QString::fromLatin1(facts[i].name), static_cast<TypeId>(i));
    types.insert(QStringLiteral("integer"), TypeId::Int);
    types.insert(QStringLiteral("dec"), TypeId::Decimal);
    types.insert(QStringLiteral("character"), TypeId::Char);
    types.insert(QStringLiteral("rowversion"), TypeId::Timestamp);
    return types;
}

bool measured(TypeId id, int length, SqlType* type) {
    const int most = isNational(id) ? 4000 : 8000;
    *type = SqlType{.id = id, .length = length < 0 ? 1 : length};
    return type->length >= 1 && type->length <= most;
}

}  // namespace

QString typeName(TypeId id) {
    return QString::fromLatin1(factsOf(id).name);
}

bool isInteger(TypeId id) {
    return id == TypeId::Bit || id == TypeId::TinyInt || id == TypeId::SmallInt || id == TypeId::Int;
}

bool isDecimal(TypeId id) {
    return id == TypeId::Decimal || id == TypeId::Numeric;
}

bool isMoney(TypeId id) {
    return id == TypeId::Money || id == TypeId::SmallMoney;
}

bool isFloat(TypeId id) {
    return id == TypeId::Float || id == TypeId::Real;
}

bool isNumber(TypeId id) {
    return isInteger(id) || isDecimal(id) || isMoney(id) || isFloat(id);
}

bool isDateTime(TypeId id) {
    return id == TypeId::DateTime || id == TypeId::SmallDateTime;
}

bool isText(TypeId id) {
    return id == TypeId::Char || id == TypeId::VarChar || id == TypeId::Text || isNational(id);
}

bool isNational(TypeId id) {
    return id == TypeId::NChar || id == TypeId::NVarChar || id == TypeId::NText;
}

bool isBinary(TypeId id) {
    return id == TypeId::Binary || id == TypeId::VarBinary || id == TypeId::Image || id == TypeId::Timestamp;
}

bool isLong(TypeId id) {
    return id == TypeId::Text || id == TypeId::NText || id == TypeId::Image;
}

bool isFixedText(TypeId id) {
    return id == TypeId::Char || id == TypeId::NChar;
}

bool isNarrowDecimal(const SqlType& type) {
    return isDecimal(type.id) && type.precision <= 18;
}

SqlType asDecimal(const SqlType& type) {
    const auto decimal = [](int precision, int scale) {
        return SqlType{.id = TypeId::Decimal, .precision = precision, .scale = scale};
    };
    switch (type.id) {
        case TypeId::Bit:
            return decimal(1, 0);
        case TypeId::TinyInt:
            return decimal(3, 0);
        case TypeId::SmallInt:
            return decimal(5, 0);
        case TypeId::Int:
            return decimal(10, 0);
        case TypeId::SmallMoney:
            return decimal(10, 4);
        case TypeId::Money:
            return decimal(19, 4);
        default:
            return type;
    }
}

int typeRank(TypeId id) {
    return factsOf(id).rank;
}

int typeBytes(const SqlType& type) {
    if (isDecimal(type.id)) {
        return type.precision <= 9 ? 5 : type.precision <= 19 ? 9 : type.precision <= 28 ? 13 : 17;
    }
    if (const int bytes = factsOf(type.id).bytes) return bytes;
    return isNational(type.id) ? 2 * type.length : type.length;
}

bool laterType(const QString& name, bool longest, SqlType* type) {
    static const QHash<QString, SqlType> later{
        {QStringLiteral("bigint"), {.id = TypeId::Decimal, .precision = 19}},
        {QStringLiteral("date"), {.id = TypeId::DateTime}},
        {QStringLiteral("time"), {.id = TypeId::DateTime}},
        {QStringLiteral("datetime2"), {.id = TypeId::DateTime}},
        {QStringLiteral("datetimeoffset"), {.id = TypeId::DateTime}},
        {QStringLiteral("rowversion"), {.id = TypeId::Timestamp}},
        {QStringLiteral("xml"), {.id = TypeId::NText}},
        {QStringLiteral("varchar(max)"), {.id = TypeId::Text}},
        {QStringLiteral("nvarchar(max)"), {.id = TypeId::NText}},
        {QStringLiteral("varbinary(max)"), {.id = TypeId::Image}},
    };
    const auto found = later.constFind(longest ? name.toLower() + QStringLiteral("(max)") : name.toLower());
    if (found == later.constEnd()) return false;
    *type = *found;
    return true;
}

bool resolveType(const QString& name, int length, int precision, int scale, SqlType* type) {
    static const QHash<QString, TypeId> types = typesByName();
    const QString key = name.toLower();
    if (key == QLatin1String("sysname")) {
        *type = SqlType{.id = TypeId::NVarChar, .length = 128};
        return true;
    }
    const auto found = types.find(key);
    if (found == types.end()) return false;
    const TypeId id = *found;
    *type = SqlType{.id = id};
    if (isDecimal(id)) {
        // A declaration writes the precision where a text type has its length.
        const int digits = precision >= 0 ? precision : length;
        type->precision = digits < 0 ? 18 : digits;
        type->scale = scale < 0 ? 0 : scale;
        return type->precision >= 1 && type->precision <= 38 && type->scale <= type->precision;
    }
    if (id == TypeId::Float) {
        const int bits = precision >= 0 ? precision : length;
        if (bits > 53 || bits == 0) return false;
        if (bits > 0 && bits <= 24) type->id = TypeId::Real;
        return true;
    }
    if (isLong(id) || id == TypeId::Timestamp) return true;
    if (isText(id) || isBinary(id)) return measured(id, length, type);
    return true;
}

}  // namespace engine

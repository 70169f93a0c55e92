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

QHash<QString, SqlType> typesByName() {
    QHash<QString, SqlType> types;
    for (size_t i = 0; i < facts.size(); ++i)
        types.insert(QString::fromLatin1(facts[i].name), {.id = static_cast<TypeId>(i)});
    types.insert(QStringLiteral("integer"), {.id = TypeId::Int});
    types.insert(QStringLiteral("dec"), {.id = TypeId::Decimal});
    types.insert(QStringLiteral("character"), {.id = TypeId::Char});
    types.insert(QStringLiteral("sysname"), {.id = TypeId::NVarChar, .length = 128});
    return types;
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

std::optional<SqlType> laterType(const QString& name, bool longest) {
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
    return found == later.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<SqlType> typeNamed(const QString& name) {
    static const QHash<QString, SqlType> types = typesByName();
    const auto found = types.constFind(name);
    return found == types.constEnd() ? std::nullopt : std::optional(*found);
}

}  // namespace engine

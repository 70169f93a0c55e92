#include "engine/catalog/systemtables.h"
#include "engine/catalog/systemtypes.h"
#include "engine/values/typeinfo.h"

#include <array>

namespace engine {

namespace {

constexpr int nullableStatus = 0x08;
constexpr int identityStatus = 0x80;

Value orNull(int number) {
    return number < 0 ? Value() : Value(number);
}

bool isVariable(TypeId id) {
    return id == TypeId::VarChar || id == TypeId::NVarChar || id == TypeId::VarBinary;
}

// Types of users' making are numbered from here.
constexpr int firstXUserType = 257;
constexpr int firstUserType = 101;

/// From 1; 0 for a column of no such type.
int userTypeNumber(const Database& database, const QString& name) {
    for (size_t i = 0; !name.isEmpty() && i < database.userTypes.size(); ++i) {
        if (nameKey(database.userTypes[i].name) == nameKey(name)) return static_cast<int>(i) + 1;
    }
    return 0;
}

void appendColumn(SystemRows& rows, const Database& database, const Table& table, const Column& column,
                  int position) {
    const SystemType& type = systemType(column.type.id);
    const int precision = catalogPrecision(column.type);
    const int scale = catalogScale(column.type);
    const bool sized = type.precision == 0 && !isDecimal(type.id);
    const int made = userTypeNumber(database, column.userType);
    const int xUserType = made > 0         ? firstXUserType + made - 1
                          : column.sysname ? sysnameXUserType
                                           : type.xtype;
    const int userType = made > 0         ? firstUserType + made - 1
                         : column.sysname ? sysnameUserType
                                          : type.userType;
    const int status = (column.nullable ? nullableStatus : 0) | (column.identity ? identityStatus : 0);
    rows.append({column.name, table.id, type.xtype, xUserType, typeBytes(column.type), sized ? 0 : precision,
                 std::max(0, scale), position, column.identity ? 1 : 0, column.defaultId, position, userType,
                 status, column.nullable ? type.tdsNullableType : type.tdsType, orNull(precision),
                 orNull(scale), column.computedText.isEmpty() ? 0 : 1, column.nullable ? 1 : 0});
}

/// The measures a type has where a declaration says none: those of systypes.
SqlType widest(TypeId id) {
    SqlType type{.id = id};
    if (isDecimal(id)) type.precision = type.scale = 38;
    if (systemType(id).precision == 0) type.length = isNational(id) ? 4000 : 8000;
    return type;
}

void appendType(SystemRows& rows, const SqlType& measured, const QString& name, int xUserType, int userType,
                bool nullable) {
    const SystemType& type = systemType(measured.id);
    const int precision = catalogPrecision(measured);
    const int scale = catalogScale(measured);
    const bool sized = type.precision == 0 && !isDecimal(type.id);
    rows.append({name, type.xtype, nullable ? 0 : 1, xUserType, typeBytes(measured), sized ? 0 : precision,
                 std::max(0, scale), 0, 0, 1, 0, userType, isVariable(type.id) ? 1 : 0, nullable ? 1 : 0,
                 type.tdsType, orNull(precision), orNull(scale)});
}

}  // namespace

void fillColumns(const Database& database) {
    SystemRows columns(database, "syscolumns",
                       "name id xtype xusertype length xprec xscale colid colstat cdefault colorder usertype "
                       "status type prec scale iscomputed isnullable");
    for (const auto& table : database.tables) {
        int position = 0;
        for (const Column& column : table->columns)
            appendColumn(columns, database, *table, column, ++position);
    }
    SystemRows types(database, "systypes");
    constexpr int last = static_cast<int>(TypeId::UniqueIdentifier);
    for (int i = 0; i <= last; ++i) {
        const SqlType type = widest(static_cast<TypeId>(i));
        const SystemType& facts = systemType(type.id);
        appendType(types, type, typeName(type.id), facts.xtype, facts.userType, type.id != TypeId::Timestamp);
    }
    appendType(types, {.id = TypeId::NVarChar, .length = 128}, QStringLiteral("sysname"), sysnameXUserType,
               sysnameUserType, false);
    int made = 0;
    for (const UserType& type : database.userTypes) {
        appendType(types, type.type, type.name, firstXUserType + made, firstUserType + made, type.nullable);
        ++made;
    }
}

}  // namespace engine

#pragma once

#include "engine/values/sqltype.h"

namespace engine {

/// What systypes and syscolumns say of a type; numbers as in SQL Server 7.0's system tables.
struct SystemType {
    TypeId id;
    int xtype;
    int userType;
    int tdsType;          ///< systypes.type; syscolumns.type of a column that refuses nulls
    int tdsNullableType;  ///< syscolumns.type of a column that accepts nulls
    int precision;        ///< 0: by the column's length
    int scale;            ///< -1: none
};

const SystemType& systemType(TypeId id);

/// xusertype and usertype of sysname, the one type of users' making that every database has.
constexpr int sysnameXUserType = 256;
constexpr int sysnameUserType = 18;

/// syscolumns.prec: digits, or characters or bytes for what has a length; -1 for text, ntext and image.
int catalogPrecision(const SqlType& type);
/// syscolumns.scale; -1 where the type has none.
int catalogScale(const SqlType& type);

}  // namespace engine

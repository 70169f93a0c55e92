#pragma once

#include "engine/values/sqltype.h"

#include <optional>

namespace engine {

/// What sp_columns says of a type (values after ODBC's SQLColumns and SQL Server 7.0's spt_datatype_info).
struct OdbcFacts {
    int dataType;
    int precision;  ///< 0: from the declaration
    int length;     ///< likewise
    int scale;      ///< -1: none
    int radix;      ///< 0: none
};

/// What systypes and syscolumns say of a type; numbers as in SQL Server 7.0's system tables.
struct SystemType {
    TypeId id;
    int xtype;
    int userType;
    int tdsType;          ///< systypes.type; syscolumns.type of a column that refuses nulls
    int tdsNullableType;  ///< syscolumns.type of a column that accepts nulls
    int precision;        ///< 0: by the column's length
    int scale;            ///< -1: none
    OdbcFacts odbc;
};

const SystemType& systemType(TypeId id);

/// xusertype and usertype of sysname, the one type of users' making that every database has.
constexpr int sysnameXUserType = 256;
constexpr int sysnameUserType = 18;

/// syscolumns.prec: digits, or characters or bytes for what has a length; -1 for text, ntext and image.
int catalogPrecision(const SqlType& type);
/// syscolumns.scale; -1 where the type has none.
int catalogScale(const SqlType& type);

/// A column's type in the terms of ODBC, as sp_columns tells it.
struct OdbcType {
    int dataType = 0;
    int precision = 0;
    int length = 0;  ///< bytes of the transfer, 2 for a character of the n-types
    std::optional<int> scale = std::nullopt;
    std::optional<int> radix = std::nullopt;
    int sqlDataType = 0;
    std::optional<int> dateTimeSub = std::nullopt;
    std::optional<int> octetLength = std::nullopt;
};

/// `version`: 2 or 3, the version of ODBC that the caller speaks.
OdbcType odbcType(const SqlType& type, bool sysname, int version);

}  // namespace engine

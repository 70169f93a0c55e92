#include "engine/catalog/odbctypes.h"

#include "engine/values/typeinfo.h"

#include <array>

namespace engine {

namespace {

struct Facts {
    int dataType;
    int precision;  // 0: from the declaration
    int length;     // 0: from the declaration
    int scale;      // -1: none
    int radix;      // 0: none
};

constexpr int longBytes = 2147483647;

/// In the order of TypeId.
constexpr std::array<Facts, 23> facts{{
    {-7, 1, 1, -1, 0},                           // bit
    {-6, 3, 1, 0, 10},                           // tinyint
    {5, 5, 2, 0, 10},                            // smallint
    {4, 10, 4, 0, 10},                           // int
    {3, 0, 0, 0, 10},                            // decimal
    {2, 0, 0, 0, 10},                            // numeric
    {3, 19, 21, 4, 10},                          // money
    {3, 10, 12, 4, 10},                          // smallmoney
    {6, 15, 8, -1, 10},                          // float
    {7, 7, 4, -1, 10},                           // real
    {11, 23, 16, 3, 0},                          // datetime
    {11, 16, 16, 0, 0},                          // smalldatetime
    {1, 0, 0, -1, 0},                            // char
    {12, 0, 0, -1, 0},                           // varchar
    {-1, longBytes, longBytes, -1, 0},           // text
    {-8, 0, 0, -1, 0},                           // nchar
    {-9, 0, 0, -1, 0},                           // nvarchar
    {-10, longBytes / 2, longBytes - 1, -1, 0},  // ntext
    {-2, 0, 0, -1, 0},                           // binary
    {-3, 0, 0, -1, 0},                           // varbinary
    {-4, longBytes, longBytes, -1, 0},           // image
    {-2, 8, 8, -1, 0},                           // timestamp
    {-11, 36, 16, -1, 0},                        // uniqueidentifier
}};

}  // namespace

OdbcType odbcType(const SqlType& type, bool sysname, int version) {
    constexpr int timestampType = 93;
    constexpr int dateTimeFamily = 9;
    const Facts& known = facts[static_cast<size_t>(type.id)];
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

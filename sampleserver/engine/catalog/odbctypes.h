#pragma once

#include "engine/values/sqltype.h"

#include <optional>

namespace engine {

/// A column's type in the terms of ODBC, as sp_columns tells it (values after ODBC's SQLColumns and SQL
/// Server 7.0's spt_datatype_info).
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

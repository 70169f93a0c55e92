#pragma once

#include "platform/ado/recordset.h"

#include <exception>
#include <map>

namespace ado {

/// What a statement gave: rows in memory, which belong to no connection and no thread, or a failure.
struct Answer {
    Recordset rows;
    std::exception_ptr failure;
};

/// Answers by the text of their statements.
using Answers = std::map<QString, Answer>;

}  // namespace ado

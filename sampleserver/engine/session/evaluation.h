#pragma once

#include "engine/catalog/sessionfacts.h"
#include "engine/store/storeconnection.h"
#include "engine/syntax/ast.h"

#include <vector>

namespace engine {

/// The value of an expression that stands alone. Throws SqlError.
TypedValue evaluate(const SessionFacts& facts, StoreConnection& store, const ast::Expr& expr);

/// All rows of a query. Throws SqlError.
std::vector<std::vector<TypedValue>> evaluateRows(const SessionFacts& facts, StoreConnection& store,
                                                  const ast::Query& query);

}  // namespace engine

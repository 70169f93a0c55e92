#pragma once

#include "engine/syntax/ast.h"

namespace engine {

/// True for an option of SET whose settings, all of them, change nothing that a script leaves in the catalog.
bool bearsOnNoCatalog(const QString& option);

/// The style of SET DATEFORMAT, see dateFormatStyle(). Throws SqlError 2741.
int dateStyleOf(const ast::SetOption& statement);

}  // namespace engine

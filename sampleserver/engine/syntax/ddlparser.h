#pragma once

#include "engine/syntax/tabledraft.h"

namespace engine {

/// "CREATE TABLE" has been taken. Reads to the end of the statement. Throws SqlError 102 for what it does not
/// know (computed columns, COLLATE, cascading references, ASC and DESC) and the numbers of parseType().
TableDraft parseCreateTable(TokenCursor& tokens);

/// "ALTER TABLE" has been taken; ADD of columns and constraints, and CHECK CONSTRAINT and NOCHECK CONSTRAINT,
/// which change nothing here.
TableDraft parseAlterTable(TokenCursor& tokens);

/// "CREATE" has been taken, "[UNIQUE] [CLUSTERED | NONCLUSTERED] INDEX" or "STATISTICS" comes.
IndexDraft parseCreateIndex(TokenCursor& tokens);

/// Reads a data type with its measures. `column` is what messages call the thing declared. Sets `sysname`
/// when the type was declared by that name. Throws SqlError 2715 (no such type), 2716 (no measure allowed),
/// 131 (too long), 1001 (zero), 2750 (precision), 2751 (scale).
SqlType parseType(TokenCursor& tokens, const QString& column, bool* sysname = nullptr);

}  // namespace engine

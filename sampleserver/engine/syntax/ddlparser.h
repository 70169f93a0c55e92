#pragma once

#include "engine/syntax/tabledraft.h"

namespace engine {

/// "CREATE TABLE" has been taken. Reads to the end of the statement. Throws SqlError 170 for what it does not
/// know and the numbers of parseType().
TableDraft parseCreateTable(TokenCursor& tokens);

/// "ALTER TABLE" has been taken; ADD of columns and constraints, CHECK CONSTRAINT and NOCHECK CONSTRAINT.
TableDraft parseAlterTable(TokenCursor& tokens);

/// "CREATE" has been taken, "[UNIQUE] [CLUSTERED | NONCLUSTERED] INDEX" or "STATISTICS" comes.
IndexDraft parseCreateIndex(TokenCursor& tokens);

/// Reads a data type with its measures. `column` is what messages call the thing declared, nothing for the
/// type of a conversion; a text or binary without a length has `defaultLength`. Sets `sysname` when the type
/// was declared by that name. Throws SqlError 243 and 2715 (no such type), 2716 (no measure allowed), 131
/// (too long), 1001 (zero), 2750 (precision), 2751 (scale).
SqlType parseType(TokenCursor& tokens, const QString& column = {}, int defaultLength = 1,
                  bool* sysname = nullptr);

/// True where a name comes that is a type of the server's own or of a later server.
bool isTypeName(const TokenCursor& tokens);

}  // namespace engine

#pragma once

#include "engine/syntax/tokencursor.h"

namespace engine {

/// True for a word that a statement may begin with.
bool startsStatement(const Token& token);

/// Goes to the end of a statement that is not run: to a semicolon, or to a line that begins with a statement.
/// The body of a view, a procedure or a trigger takes the rest of its batch.
void passOver(TokenCursor& tokens);

/// The first words of what comes, for a message.
QString firstWords(const TokenCursor& tokens);

}  // namespace engine

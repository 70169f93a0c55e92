#include "engine/session/scriptpassing.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace engine {

namespace {

bool isOneOf(const Token& token, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return token.is(QLatin1String(word)); });
}

/// Takes "BEGIN .. END" with what it holds.
void passBlock(TokenCursor& tokens) {
    int depth = 0;
    do {
        const bool transaction = tokens.is("begin") && (tokens.is("tran", 1) || tokens.is("transaction", 1) ||
                                                        tokens.is("dialog", 1));
        if ((tokens.is("begin") && !transaction) || tokens.is("case")) ++depth;
        if (tokens.is("end")) --depth;
        tokens.take();
    } while (depth > 0 && !tokens.atEnd());
}

/// Takes IF or WHILE with what it decides.
void passControlled(TokenCursor& tokens) {
    do {
        tokens.take();
        if (tokens.isSymbol("(")) tokens.parenthesised();
    } while (!tokens.atEnd() && !startsStatement(tokens.peek()));
    if (!tokens.atEnd()) passOver(tokens);
    if (tokens.accept("else") && !tokens.atEnd()) passOver(tokens);
}

/// CREATE or ALTER of what has a body of statements; it must be alone in its batch.
bool hasBody(const TokenCursor& tokens) {
    if (!tokens.is("create") && !tokens.is("alter")) return false;
    const int kind = tokens.is("or", 1) ? 3 : 1;
    return isOneOf(tokens.peek(kind),
                   {"view", "proc", "procedure", "trigger", "function", "rule", "default"});
}

}  // namespace

bool startsStatement(const Token& token) {
    return isOneOf(
        token,
        {"select", "insert",      "update",  "delete", "create",     "alter",     "drop",       "use",
         "set",    "if",          "declare", "exec",   "execute",    "print",     "grant",      "deny",
         "revoke", "begin",       "end",     "while",  "return",     "raiserror", "truncate",   "waitfor",
         "commit", "rollback",    "save",    "backup", "restore",    "dump",      "checkpoint", "dbcc",
         "kill",   "fetch",       "open",    "close",  "deallocate", "merge",     "else",       "goto",
         "throw",  "reconfigure", "disable", "enable"});
}

QString firstWords(const TokenCursor& tokens) {
    constexpr int most = 3;
    QStringList words;
    for (int i = 0; i < most && tokens.peek(i).kind != TokenKind::End; ++i)
        words.append(tokens.peek(i).text.left(40));
    return words.join(QLatin1Char(' '));
}

void passOver(TokenCursor& tokens) {
    if (hasBody(tokens)) {
        while (!tokens.atEnd())
            tokens.take();
        return;
    }
    if (tokens.is("if") || tokens.is("while")) return passControlled(tokens);
    if (tokens.is("begin") && !tokens.is("tran", 1) && !tokens.is("transaction", 1)) return passBlock(tokens);
    const bool update = tokens.is("update");
    const bool queries = tokens.is("insert") || tokens.is("declare") || tokens.is("grant") ||
                         tokens.is("deny") || tokens.is("revoke");
    tokens.take();
    int cases = 0;
    for (int depth = 0; !tokens.atEnd() && !tokens.isSymbol(";"); tokens.take()) {
        if (tokens.isSymbol("(")) ++depth;
        if (tokens.isSymbol(")")) --depth;
        if (tokens.is("case")) ++cases;
        if (tokens.is("end") && cases > 0) --cases;
        if (depth > 0 || cases > 0) continue;
        if (tokens.is("else")) return;
        const bool own =
            (update && tokens.is("set")) || (queries && isOneOf(tokens.peek(), {"select", "exec"}));
        if (tokens.startsLine() && startsStatement(tokens.peek()) && !own) return;
    }
}

}  // namespace engine

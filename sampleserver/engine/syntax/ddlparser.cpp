#include "engine/syntax/ddlparser.h"

namespace engine {

namespace {

QString optionalConstraintName(TokenCursor& tokens) {
    return tokens.accept("constraint") ? tokens.name() : QString();
}

/// "ON [PRIMARY]" or "ON scheme (column)".
void skipFilegroup(TokenCursor& tokens) {
    if (!tokens.accept("on")) return;
    tokens.accept("primary") ? void() : void(tokens.name());
    if (tokens.isSymbol("(")) tokens.parenthesised();
}

/// "WITH FILLFACTOR = n, PAD_INDEX": how full the pages are is nothing a client can see.
void skipIndexOptions(TokenCursor& tokens) {
    if (tokens.is("with") && tokens.peek(1).isSymbol(QLatin1String("("))) {
        tokens.take();
        tokens.parenthesised();
    } else if (tokens.accept("with")) {
        do {
            if (tokens.accept("fillfactor")) {
                tokens.expectSymbol("=");
                tokens.integer();
            } else if (!tokens.accept("pad_index") && !tokens.accept("statistics_norecompute") &&
                       !tokens.accept("drop_existing") && !tokens.accept("ignore_dup_key")) {
                tokens.fail();
            }
        } while (tokens.acceptSymbol(","));
    }
    skipFilegroup(tokens);
}

std::optional<bool> clusteredOption(TokenCursor& tokens) {
    if (tokens.accept("clustered")) return true;
    if (tokens.accept("nonclustered")) return false;
    return std::nullopt;
}

void skipNotForReplication(TokenCursor& tokens) {
    if (tokens.is("not") && tokens.is("for", 1)) {
        tokens.take();
        tokens.take();
        tokens.expect("replication");
    }
}

/// A constant, a function or anything in parentheses, as DEFAULT takes it; always given in parentheses.
QString defaultText(TokenCursor& tokens) {
    if (tokens.isSymbol("(")) return tokens.parenthesised();
    const Token first = tokens.peek();
    if (tokens.isSymbol("-") || tokens.isSymbol("+")) tokens.take();
    if (tokens.atEnd() || tokens.peek().kind == TokenKind::Symbol) tokens.fail();
    tokens.take();
    if (tokens.isSymbol("(")) tokens.parenthesised();
    return QLatin1Char('(') + tokens.textSince(first) + QLatin1Char(')');
}

/// "PRIMARY KEY" or "UNIQUE" comes. `column` stands for a list of columns that may be left out.
KeyDraft parseKey(TokenCursor& tokens, const QString& name, const QString& column) {
    KeyDraft key;
    key.name = name;
    key.primary = tokens.accept("primary");
    tokens.expect(key.primary ? "key" : "unique");
    key.clustered = clusteredOption(tokens);
    key.columns = column.isEmpty() || tokens.isSymbol("(") ? tokens.keyList() : QStringList{column};
    skipIndexOptions(tokens);
    return key;
}

CheckDraft parseCheck(TokenCursor& tokens, const QString& name, const QString& column) {
    tokens.expect("check");
    skipNotForReplication(tokens);
    return {.name = name, .text = tokens.parenthesised(), .column = column};
}

/// "[FOREIGN KEY [(..)]] REFERENCES" comes.
ForeignKeyDraft parseForeignKey(TokenCursor& tokens, const QString& name, const QString& column) {
    ForeignKeyDraft key;
    key.name = name;
    key.onColumn = !column.isEmpty();
    if (tokens.accept("foreign")) {
        tokens.expect("key");
        if (column.isEmpty() || tokens.isSymbol("(")) key.columns = tokens.nameList();
    }
    if (key.columns.isEmpty()) key.columns.append(column);
    tokens.expect("references");
    key.referenced = tokens.objectName();
    if (tokens.isSymbol("(")) key.referencedColumns = tokens.nameList();
    while (tokens.is("on") && (tokens.is("delete", 1) || tokens.is("update", 1))) {
        tokens.take();
        tokens.take();
        // What happens to rows is nothing that the catalog tells.
        if (tokens.accept("cascade")) continue;
        if (tokens.accept("set")) {
            if (!tokens.accept("null")) tokens.expect("default");
            continue;
        }
        tokens.expect("no");
        tokens.expect("action");
    }
    skipNotForReplication(tokens);
    return key;
}

bool acceptColumnAttribute(TokenCursor& tokens, ColumnDraft& column) {
    if (tokens.accept("null")) {
        column.nullable = true;
    } else if (tokens.accept("rowguidcol") || tokens.accept("sparse") || tokens.accept("persisted")) {
        return true;
    } else if (tokens.accept("collate")) {
        tokens.name();
    } else if (tokens.is("not")) {
        tokens.take();
        tokens.expect("null");
        column.nullable = false;
    } else if (tokens.accept("identity")) {
        column.identity = true;
        if (tokens.acceptSymbol("(")) {
            column.identitySeed = tokens.integer();
            tokens.expectSymbol(",");
            column.identityStep = tokens.integer();
            tokens.expectSymbol(")");
        }
        skipNotForReplication(tokens);
    } else {
        return false;
    }
    return true;
}

/// What stands behind a column's type, in any order.
void parseColumnConstraints(TokenCursor& tokens, ColumnDraft& column, TableDraft& table) {
    for (;;) {
        if (acceptColumnAttribute(tokens, column)) continue;
        const bool named = tokens.is("constraint");
        const QString name = optionalConstraintName(tokens);
        if (tokens.accept("default")) {
            if (column.defaultValue) tokens.fail();
            column.defaultValue = DefaultDraft{.name = name, .text = defaultText(tokens), .column = {}};
            if (tokens.is("with") && tokens.is("values", 1)) {
                tokens.take();
                tokens.take();
                column.withValues = true;
            }
        } else if (tokens.is("primary") || tokens.is("unique")) {
            table.keys.push_back(parseKey(tokens, name, column.name));
        } else if (tokens.is("check")) {
            table.checks.push_back(parseCheck(tokens, name, column.name));
        } else if (tokens.is("foreign") || tokens.is("references")) {
            table.foreignKeys.push_back(parseForeignKey(tokens, name, column.name));
        } else if (named) {
            tokens.fail();
        } else {
            return;
        }
    }
}

/// The expression of a computed column, up to what may follow it.
QString computedText(TokenCursor& tokens) {
    if (tokens.atEnd()) tokens.fail();
    const Token first = tokens.peek();
    while (!tokens.atEnd() && !tokens.isSymbol(",") && !tokens.isSymbol(")") && !tokens.is("persisted") &&
           !tokens.is("constraint") && !tokens.is("not") && !tokens.is("primary") && !tokens.is("unique") &&
           !tokens.is("check")) {
        if (tokens.isSymbol("("))
            tokens.parenthesised();
        else
            tokens.take();
    }
    return QLatin1Char('(') + tokens.textSince(first) + QLatin1Char(')');
}

void parseColumn(TokenCursor& tokens, TableDraft& table) {
    ColumnDraft column;
    column.name = tokens.name();
    // A timestamp column may do without a type.
    if (column.name.compare(QLatin1String("timestamp"), Qt::CaseInsensitive) == 0 &&
        tokens.peek().kind == TokenKind::Symbol) {
        column.type = {.id = TypeId::Timestamp, .length = 8};
    } else if (tokens.accept("as")) {
        column.computedText = computedText(tokens);
    } else if (isTypeName(tokens)) {
        column.type = parseType(tokens, column.name, 1, &column.sysname);
    } else {
        column.userType = tokens.objectName().name;
        if (tokens.isSymbol("(")) tokens.parenthesised();
    }
    parseColumnConstraints(tokens, column, table);
    table.columns.push_back(std::move(column));
}

bool acceptTableConstraint(TokenCursor& tokens, TableDraft& table) {
    const bool named = tokens.is("constraint");
    const QString name = optionalConstraintName(tokens);
    if (tokens.is("primary") || tokens.is("unique")) {
        table.keys.push_back(parseKey(tokens, name, {}));
    } else if (tokens.is("check")) {
        table.checks.push_back(parseCheck(tokens, name, {}));
    } else if (tokens.is("foreign")) {
        table.foreignKeys.push_back(parseForeignKey(tokens, name, {}));
    } else if (tokens.accept("default")) {
        DefaultDraft value{.name = name, .text = defaultText(tokens), .column = {}};
        tokens.expect("for");
        value.column = tokens.name();
        table.defaults.push_back(std::move(value));
    } else if (named) {
        tokens.fail();
    } else {
        return false;
    }
    return true;
}

}  // namespace

TableDraft parseCreateTable(TokenCursor& tokens) {
    TableDraft table;
    table.name = tokens.objectName();
    tokens.expectSymbol("(");
    do {
        if (tokens.isSymbol(")") && !table.columns.empty()) break;
        if (tokens.is("default")) tokens.fail();
        if (acceptTableConstraint(tokens, table)) {
            // Old scripts leave the comma between two table constraints out.
            while (acceptTableConstraint(tokens, table)) {
            }
        } else {
            parseColumn(tokens, table);
        }
    } while (tokens.acceptSymbol(","));
    tokens.expectSymbol(")");
    skipFilegroup(tokens);
    if (tokens.accept("textimage_on") && !tokens.accept("primary")) tokens.name();
    return table;
}

TableDraft parseAlterTable(TokenCursor& tokens) {
    TableDraft table;
    table.name = tokens.objectName();
    if (tokens.accept("with")) {
        table.checkExisting = !tokens.is("nocheck");
        tokens.expect(table.checkExisting ? "check" : "nocheck");
    } else if (tokens.is("check") || tokens.is("nocheck")) {
        table.checkExisting = false;
    }
    if (tokens.is("check") || tokens.is("nocheck")) {
        table.enable = tokens.is("check");
        tokens.take();
        tokens.expect("constraint");
        if (tokens.accept("all")) return table;
        do {
            table.constraints.append(tokens.name());
        } while (tokens.acceptSymbol(","));
        return table;
    }
    for (const char* other : {"drop", "alter", "enable", "disable", "set", "switch", "rebuild"})
        table.otherChange = table.otherChange || tokens.is(other);
    if (table.otherChange) return table;
    tokens.expect("add");
    do {
        if (!acceptTableConstraint(tokens, table)) parseColumn(tokens, table);
    } while (tokens.acceptSymbol(","));
    return table;
}

IndexDraft parseCreateIndex(TokenCursor& tokens) {
    IndexDraft index;
    index.statistics = tokens.accept("statistics");
    if (!index.statistics) {
        index.unique = tokens.accept("unique");
        index.clustered = clusteredOption(tokens).value_or(false);
        tokens.expect("index");
    }
    index.name = tokens.name();
    tokens.expect("on");
    index.table = tokens.objectName();
    index.columns = tokens.keyList();
    if (tokens.accept("include")) tokens.parenthesised();
    // Which rows an index leaves out is nothing that the catalog tells.
    if (tokens.accept("where")) {
        while (!tokens.atEnd() && !tokens.isSymbol(";") && !tokens.is("with") && !tokens.is("on") &&
               !tokens.startsLine())
            tokens.take();
    }
    if (!index.statistics) skipIndexOptions(tokens);
    return index;
}

}  // namespace engine

#include "engine/syntax/ddlparser.h"
#include "engine/syntax/parser.h"
#include "engine/values/convert.h"
#include "engine/values/datetime.h"

namespace engine {

using namespace ast;

std::vector<Statement> Parser::batch() {
    std::vector<Statement> statements;
    while (m_tokens.acceptSymbol(";")) {
    }
    while (!m_tokens.atEnd()) {
        const int line = m_tokens.peek().line;
        m_operators = 0;
        statements.push_back(statement(statements.empty()));
        statements.back().line = line;
        if (std::holds_alternative<Refused>(statements.back().node)) break;
        while (m_tokens.acceptSymbol(";")) {
        }
    }
    return statements;
}

/// What IF or ELSE is followed by: a statement, or several between BEGIN and END.
std::vector<Statement> Parser::block() {
    const Depth depth(*this);
    std::vector<Statement> statements;
    const bool transaction = m_tokens.is("tran", 1) || m_tokens.is("transaction", 1);
    const bool several = !transaction && m_tokens.accept("begin");
    do {
        const int line = m_tokens.peek().line;
        statements.push_back(statement(false));
        statements.back().line = line;
        while (m_tokens.acceptSymbol(";")) {
        }
    } while (several && !m_tokens.accept("end"));
    return statements;
}

ExprPtr Parser::conditionAsNumber() {
    const auto number = [](qint64 value) {
        return std::make_unique<Expr>(Expr{Literal{.value = value, .type = {.id = TypeId::Int}}});
    };
    Case holds;
    holds.branches.emplace_back(condition(), number(1));
    holds.otherwise = number(0);
    return std::make_unique<Expr>(Expr{std::move(holds)});
}

If Parser::conditional() {
    If result{.condition = conditionAsNumber(), .then = block(), .otherwise = {}};
    if (m_tokens.accept("else")) result.otherwise = block();
    return result;
}

Statement Parser::statement(bool first) {
    Statement result;
    if (m_tokens.is("select") || m_tokens.isSymbol("(")) {
        result.node = Select{query()};
        if (m_tokens.is("into")) result.node = Refused{Refused::Write, QStringLiteral("SELECT INTO")};
    } else if (m_tokens.accept("use")) {
        result.node = Use{m_tokens.name()};
    } else if (m_tokens.accept("set")) {
        if (m_tokens.isVariable()) {
            SetVariable set{.name = m_tokens.take().text, .expr = nullptr};
            m_tokens.expectSymbol("=");
            set.expr = scalar();
            result.node = std::move(set);
        } else {
            result.node = setOption();
        }
    } else if (m_tokens.accept("declare")) {
        result.node = declare();
    } else if (m_tokens.accept("exec") || m_tokens.accept("execute")) {
        result.node = execute();
    } else if (m_tokens.accept("if")) {
        result.node = conditional();
    } else if (m_tokens.accept("waitfor")) {
        result.node = waitFor();
    } else if (m_tokens.accept("print")) {
        result.node = Print{scalar()};
    } else if (m_tokens.is("begin") && (m_tokens.is("tran", 1) || m_tokens.is("transaction", 1))) {
        m_tokens.take();
        result.node = transaction(TransactionStep::Begin);
    } else if (m_tokens.accept("commit")) {
        result.node = transaction(TransactionStep::Commit);
    } else if (m_tokens.accept("rollback")) {
        result.node = transaction(TransactionStep::Rollback);
    } else if (first && m_tokens.isName()) {
        result.node = execute();
    } else {
        return refused();
    }
    return result;
}

Statement Parser::refused() {
    for (const char* word : {"insert", "update", "delete", "truncate", "updatetext", "writetext"}) {
        if (m_tokens.is(word)) return {.node = Refused{Refused::Write, m_tokens.peek().text.toUpper()}};
    }
    for (const char* word : {"create", "alter", "drop", "grant", "revoke", "deny"}) {
        if (!m_tokens.is(word)) continue;
        QString what = m_tokens.take().text.toUpper();
        what += u' ' + m_tokens.peek().text.toUpper();
        return {.node = Refused{Refused::Definition, what}};
    }
    m_tokens.fail();
}

Transaction Parser::transaction(TransactionStep step) {
    if (!m_tokens.accept("tran") && !m_tokens.accept("transaction")) m_tokens.accept("work");
    if (m_tokens.isName() || m_tokens.isVariable()) m_tokens.take();
    return {step};
}

SetOption Parser::setOption() {
    // Options of two and three words that stand before their value.
    SetOption result;
    if (m_tokens.accept("transaction")) {
        m_tokens.expect("isolation");
        m_tokens.expect("level");
        result.option = QStringLiteral("transaction isolation level");
        result.value = m_tokens.take().text;
        if (m_tokens.is("read") || m_tokens.is("committed") || m_tokens.is("uncommitted")) {
            result.value += u' ' + m_tokens.take().text;
        }
        return result;
    }
    do {
        if (m_tokens.peek().kind != TokenKind::Identifier) m_tokens.fail();
        if (!result.option.isEmpty()) result.option += u',';
        result.option += m_tokens.take().text.toLower();
        if (result.option == QLatin1String("statistics"))
            result.option += u' ' + m_tokens.take().text.toLower();
    } while (m_tokens.acceptSymbol(","));
    const bool negative = m_tokens.acceptSymbol("-");
    if (m_tokens.atEnd() || m_tokens.peek().kind == TokenKind::Symbol) m_tokens.fail();
    result.value = m_tokens.take().text;
    if (negative) result.value.prepend(u'-');
    if (result.option == QLatin1String("quoted_identifier")) {
        m_tokens.setQuotedIdentifiers(result.value.compare(QLatin1String("on"), Qt::CaseInsensitive) == 0);
    }
    return result;
}

Execute Parser::execute() {
    Execute result;
    // EXEC ('text') would need a second look at the text with its own settings.
    if (m_tokens.isVariable() || m_tokens.isSymbol("(")) m_tokens.fail();
    result.procedure = path();
    const auto startsStatement = [this] {
        const Token& token = m_tokens.peek();
        return token.kind == TokenKind::Identifier && !m_tokens.isName() &&
               !token.is(QLatin1String("null")) && !token.is(QLatin1String("default"));
    };
    while (!m_tokens.atEnd() && !m_tokens.isSymbol(";") && !startsStatement()) {
        Argument argument;
        if (m_tokens.isVariable() && m_tokens.isSymbol("=", 1)) {
            argument.name = m_tokens.take().text;
            m_tokens.take();
        }
        argument.expr = argumentValue();
        result.arguments.push_back(std::move(argument));
        if (!m_tokens.acceptSymbol(",")) break;
    }
    return result;
}

ExprPtr Parser::argumentValue() {
    const bool negative = m_tokens.acceptSymbol("-");
    if (m_tokens.is("null") || m_tokens.is("default")) {
        m_tokens.take();
        return std::make_unique<Expr>(Expr{Literal{.value = {}, .type = {}, .isNull = true}});
    }
    if (m_tokens.isName()) {
        // An identifier without quotes is the text of itself.
        const QString text = m_tokens.take().text;
        const SqlType type{.id = TypeId::NVarChar, .length = std::max(1, static_cast<int>(text.size()))};
        return std::make_unique<Expr>(Expr{Literal{.value = text, .type = type}});
    }
    if (m_tokens.peek().kind == TokenKind::Symbol || m_tokens.peek().kind == TokenKind::Identifier) {
        m_tokens.fail();
    }
    ExprPtr value = primary();
    if (negative) value = std::make_unique<Expr>(Expr{Unary{UnaryOp::Minus, std::move(value)}});
    return value;
}

Declare Parser::declare() {
    Declare result;
    do {
        if (!m_tokens.isVariable()) m_tokens.fail();
        const QString name = m_tokens.take().text;
        m_tokens.accept("as");
        result.variables.emplace_back(name, parseType(m_tokens));
    } while (m_tokens.acceptSymbol(","));
    return result;
}

std::vector<std::pair<QString, SqlType>> Parser::parameters() {
    std::vector<std::pair<QString, SqlType>> result;
    while (!m_tokens.atEnd()) {
        if (!result.empty()) m_tokens.expectSymbol(",");
        if (!m_tokens.isVariable()) m_tokens.fail();
        const QString name = m_tokens.take().text;
        m_tokens.accept("as");
        result.emplace_back(name, parseType(m_tokens));
        if (!m_tokens.accept("output")) m_tokens.accept("out");
    }
    return result;
}

WaitFor Parser::waitFor() {
    m_tokens.expect("delay");
    if (m_tokens.peek().kind != TokenKind::String) m_tokens.fail();
    const QString text = m_tokens.peek().text;
    qint64 ticks = 0;
    if (!text.contains(u':') || parseDateTime(text, &ticks) != DateParse::Done || ticks < 0 ||
        ticks > ticksPerDay) {
        throw SqlError(SqlMessage{
            .number = 148,
            .severity = 15,
            .line = m_tokens.peek().line,
            .text =
                QStringLiteral("Incorrect time syntax in time string '%1' used with WAITFOR.").arg(text)});
    }
    m_tokens.take();
    return {ticks * 1000 / ticksPerSecond};
}

}  // namespace engine

#include "engine/syntax/ddlparser.h"
#include "engine/syntax/parser.h"
#include "engine/values/codepage.h"
#include "engine/values/convert.h"
#include "engine/values/decimal.h"
#include "engine/values/typeinfo.h"

namespace engine {

using namespace ast;

namespace {

template <class Node>
ExprPtr make(Node node) {
    return std::make_unique<Expr>(Expr{std::move(node)});
}

Literal numberLiteral(const QString& text) {
    if (text.contains(u'e', Qt::CaseInsensitive)) {
        bool inRange = false;
        const double number = text.toDouble(&inRange);
        if (!inRange) {
            throw SqlError(168, 15,
                           QStringLiteral("The floating point value '%1' is out of the range of computer "
                                          "representation (8 bytes).")
                               .arg(text));
        }
        return {.value = number, .type = {.id = TypeId::Float}};
    }
    bool isInt = false;
    const int whole = text.toInt(&isInt);
    if (isInt) return {.value = qint64(whole), .type = {.id = TypeId::Int}};
    const auto number = Decimal::parse(text);
    if (!number || number->digits() > Decimal::maxPrecision) {
        throw SqlError(
            1007, 15,
            QStringLiteral("The number '%1' is out of the range for numeric representation (maximum "
                           "precision 38).")
                .arg(text));
    }
    const int precision = std::max({1, number->digits(), number->scale()});
    return {.value = number->text(),
            .type = {.id = TypeId::Numeric, .precision = precision, .scale = number->scale()}};
}

Literal hexLiteral(QString text) {
    text.remove(0, 2);
    if (text.size() % 2 != 0) text.prepend(u'0');
    const QByteArray bytes = QByteArray::fromHex(text.toLatin1());
    return {.value = bytes,
            .type = {.id = TypeId::VarBinary, .length = std::max(1, static_cast<int>(bytes.size()))}};
}

Literal moneyLiteral(const QString& text) {
    const SqlType type{.id = TypeId::Money};
    const SqlType from{.id = TypeId::VarChar, .length = 40};
    return {.value = convertValue(text, from, type, false), .type = type};
}

bool isPredicate(const ExprPtr& expr) {
    return std::visit(
        []<class Node>(const Node&) {
            return std::is_same_v<Node, Comparison> || std::is_same_v<Node, Logical> ||
                   std::is_same_v<Node, Not> || std::is_same_v<Node, Like> || std::is_same_v<Node, Between> ||
                   std::is_same_v<Node, In> || std::is_same_v<Node, IsNull> || std::is_same_v<Node, Exists>;
        },
        expr->node);
}

constexpr int mostNested = 200;
constexpr int mostOperators = 4000;

[[noreturn]] void failNested() {
    throw SqlError(
        191, 15,
        QStringLiteral("Some part of your SQL statement is nested too deeply. Rewrite the query or break "
                       "it up into smaller queries."));
}

}  // namespace

Parser::Depth::Depth(Parser& parser) : m_parser(parser) {
    if (++m_parser.m_depth > mostNested) failNested();
}

/// A chain of operators makes a tree as deep as it is long.
void Parser::countOperator() {
    if (++m_operators > mostOperators) failNested();
}

ExprPtr parseExpression(const QString& text) {
    TokenCursor tokens(text);
    ExprPtr result = Parser(tokens).scalar();
    if (!tokens.atEnd()) tokens.fail();
    return result;
}

ExprPtr parseCondition(const QString& text) {
    TokenCursor tokens(text);
    ExprPtr result = Parser(tokens).condition();
    if (!tokens.atEnd()) tokens.fail();
    return result;
}

ExprPtr Parser::condition() {
    return asPredicate(expression());
}

ExprPtr Parser::scalar() {
    return asValue(additive());
}

ExprPtr Parser::asPredicate(ExprPtr expr) const {
    if (!isPredicate(expr)) m_tokens.fail();
    return expr;
}

ExprPtr Parser::asValue(ExprPtr expr) const {
    if (isPredicate(expr)) m_tokens.fail();
    return expr;
}

ExprPtr Parser::expression() {
    ExprPtr left = conjunction();
    while (m_tokens.accept("or")) {
        countOperator();
        left = asPredicate(std::move(left));
        left = make(Logical{.isAnd = false, .left = std::move(left), .right = asPredicate(conjunction())});
    }
    return left;
}

ExprPtr Parser::conjunction() {
    ExprPtr left = negation();
    while (m_tokens.accept("and")) {
        countOperator();
        left = asPredicate(std::move(left));
        left = make(Logical{.isAnd = true, .left = std::move(left), .right = asPredicate(negation())});
    }
    return left;
}

ExprPtr Parser::negation() {
    const Depth depth(*this);
    if (m_tokens.accept("not")) return make(Not{asPredicate(negation())});
    return predicate();
}

ExprPtr Parser::predicate() {
    if (m_tokens.is("exists")) {
        m_tokens.take();
        m_tokens.expectSymbol("(");
        Exists exists{subquery()};
        m_tokens.expectSymbol(")");
        return make(std::move(exists));
    }
    ExprPtr left = additive();
    return isPredicate(left) ? std::move(left) : predicateTail(std::move(left));
}

ExprPtr Parser::predicateTail(ExprPtr left) {
    static constexpr std::pair<const char*, CompareOp> operators[] = {
        {"=", CompareOp::Equal},   {"<>", CompareOp::NotEqual},     {"!=", CompareOp::NotEqual},
        {"<", CompareOp::Less},    {"<=", CompareOp::LessEqual},    {"!>", CompareOp::LessEqual},
        {">", CompareOp::Greater}, {">=", CompareOp::GreaterEqual}, {"!<", CompareOp::GreaterEqual}};
    for (const auto& [symbol, op] : operators) {
        if (m_tokens.acceptSymbol(symbol)) {
            return make(Comparison{.op = op, .left = std::move(left), .right = scalar()});
        }
    }
    if (m_tokens.accept("is")) {
        const bool negated = m_tokens.accept("not");
        m_tokens.expect("null");
        return make(IsNull{.operand = std::move(left), .negated = negated});
    }
    const bool negated = (m_tokens.is("like", 1) || m_tokens.is("between", 1) || m_tokens.is("in", 1)) &&
                         m_tokens.accept("not");
    if (m_tokens.accept("like")) {
        Like like{.text = std::move(left), .pattern = scalar(), .escape = nullptr, .negated = negated};
        if (m_tokens.accept("escape")) like.escape = scalar();
        return make(std::move(like));
    }
    if (m_tokens.accept("between")) {
        Between between{.operand = std::move(left), .low = scalar(), .high = nullptr, .negated = negated};
        m_tokens.expect("and");
        between.high = scalar();
        return make(std::move(between));
    }
    if (m_tokens.accept("in")) {
        In in{.operand = std::move(left), .list = {}, .query = nullptr, .negated = negated};
        m_tokens.expectSymbol("(");
        if (startsQuery()) {
            in.query = subquery();
        } else {
            do
                in.list.push_back(scalar());
            while (m_tokens.acceptSymbol(","));
        }
        m_tokens.expectSymbol(")");
        return make(std::move(in));
    }
    return left;
}

ExprPtr Parser::additive() {
    static constexpr std::pair<const char*, BinaryOp> operators[] = {{"+", BinaryOp::Add},
                                                                     {"-", BinaryOp::Subtract},
                                                                     {"&", BinaryOp::BitAnd},
                                                                     {"|", BinaryOp::BitOr},
                                                                     {"^", BinaryOp::BitXor}};
    ExprPtr left = multiplicative();
    for (bool more = true; more;) {
        more = false;
        for (const auto& [symbol, op] : operators) {
            if (!m_tokens.acceptSymbol(symbol)) continue;
            countOperator();
            left = asValue(std::move(left));
            left = make(Binary{.op = op, .left = std::move(left), .right = asValue(multiplicative())});
            more = true;
        }
    }
    return left;
}

ExprPtr Parser::multiplicative() {
    ExprPtr left = unary();
    for (;;) {
        BinaryOp op;
        if (m_tokens.acceptSymbol("*")) {
            op = BinaryOp::Multiply;
        } else if (m_tokens.acceptSymbol("/")) {
            op = BinaryOp::Divide;
        } else if (m_tokens.acceptSymbol("%")) {
            op = BinaryOp::Modulo;
        } else {
            return left;
        }
        countOperator();
        left = asValue(std::move(left));
        left = make(Binary{.op = op, .left = std::move(left), .right = asValue(unary())});
    }
}

ExprPtr Parser::unary() {
    const Depth depth(*this);
    if (m_tokens.acceptSymbol("-")) return make(Unary{UnaryOp::Minus, asValue(unary())});
    if (m_tokens.acceptSymbol("+")) return make(Unary{UnaryOp::Plus, asValue(unary())});
    if (m_tokens.acceptSymbol("~")) return make(Unary{UnaryOp::BitNot, asValue(unary())});
    return primary();
}

ExprPtr Parser::primary() {
    const Token& token = m_tokens.peek();
    switch (token.kind) {
        case TokenKind::Variable:
            return make(Variable{m_tokens.take().text});
        case TokenKind::Symbol:
            return parenthesized();
        case TokenKind::Identifier:
            break;
        case TokenKind::End:
            m_tokens.fail();
        default:
            return literal();
    }
    if (m_tokens.accept("null")) return make(Literal{.value = {}, .type = {}, .isNull = true});
    if (m_tokens.accept("case")) return caseExpression();
    if (m_tokens.isSymbol("(", 1) && m_tokens.accept("convert")) return convertOrCast(false);
    if (m_tokens.isSymbol("(", 1) && m_tokens.accept("cast")) return convertOrCast(true);
    for (const char* word : {"user", "current_user", "session_user", "system_user", "current_timestamp"}) {
        if (m_tokens.accept(word)) {
            ast::Call niladic;
            niladic.name = QString::fromLatin1(word);
            return make(std::move(niladic));
        }
    }
    for (const char* word : {"left", "right", "coalesce", "nullif"}) {
        if (m_tokens.is(word) && m_tokens.isSymbol("(", 1)) return call(m_tokens.take().text);
    }
    return nameOrCall();
}

ExprPtr Parser::nameOrCall() {
    if (m_tokens.isName() && !m_tokens.peek().quoted && m_tokens.isSymbol("(", 1)) {
        return call(m_tokens.take().text);
    }
    return make(ColumnName{path()});
}

bool Parser::startsQuery() const {
    size_t offset = 0;
    while (m_tokens.isSymbol("(", offset))
        ++offset;
    return m_tokens.is("select", offset);
}

ExprPtr Parser::parenthesized() {
    m_tokens.expectSymbol("(");
    ExprPtr inner;
    if (m_tokens.is("select")) {
        inner = make(ScalarQuery{subquery()});
    } else {
        inner = expression();
    }
    m_tokens.expectSymbol(")");
    return inner;
}

ExprPtr Parser::literal() {
    const Token token = m_tokens.take();
    switch (token.kind) {
        case TokenKind::Number:
            return make(numberLiteral(token.text));
        case TokenKind::HexNumber:
            return make(hexLiteral(token.text));
        case TokenKind::MoneyNumber:
            return make(moneyLiteral(token.text));
        default:
            break;
    }
    const TypeId id = token.national ? TypeId::NVarChar : TypeId::VarChar;
    const QString text = token.national ? token.text : inCodePage(token.text);
    return make(
        Literal{.value = text, .type = {.id = id, .length = std::max(1, static_cast<int>(text.size()))}});
}

ExprPtr Parser::caseExpression() {
    Case result;
    if (!m_tokens.is("when")) result.subject = scalar();
    while (m_tokens.accept("when")) {
        ExprPtr test = result.subject ? scalar() : condition();
        m_tokens.expect("then");
        result.branches.emplace_back(std::move(test), scalar());
    }
    if (result.branches.empty()) m_tokens.fail();
    if (m_tokens.accept("else")) result.otherwise = scalar();
    m_tokens.expect("end");
    return make(std::move(result));
}

ExprPtr Parser::convertOrCast(bool cast) {
    // In a conversion a text or binary without a length has 30.
    constexpr int defaultLength = 30;
    Convert convert;
    m_tokens.expectSymbol("(");
    if (cast) {
        convert.operand = scalar();
        m_tokens.expect("as");
        convert.type = parseType(m_tokens, {}, defaultLength);
    } else {
        convert.type = parseType(m_tokens, {}, defaultLength);
        m_tokens.expectSymbol(",");
        convert.operand = scalar();
        if (m_tokens.acceptSymbol(",")) convert.style = scalar();
    }
    m_tokens.expectSymbol(")");
    return make(std::move(convert));
}

ExprPtr Parser::call(const QString& name) {
    Call result;
    result.name = name;
    m_tokens.expectSymbol("(");
    if (m_tokens.acceptSymbol("*")) {
        result.star = true;
    } else if (!m_tokens.isSymbol(")")) {
        result.distinct = m_tokens.accept("distinct");
        if (!result.distinct) m_tokens.accept("all");
        do
            result.arguments.push_back(scalar());
        while (m_tokens.acceptSymbol(","));
    }
    m_tokens.expectSymbol(")");
    return make(std::move(result));
}

}  // namespace engine

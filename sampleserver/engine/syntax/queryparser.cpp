#include "engine/syntax/parser.h"

#include <cmath>

namespace engine {

using namespace ast;

namespace {

constexpr int mostUnions = 200;

}  // namespace

Query Parser::query() {
    const Depth depth(*this);
    Query result;
    result.body = queryBody();
    if (m_tokens.accept("order")) {
        m_tokens.expect("by");
        result.orderBy = orderBy();
    }
    return result;
}

QueryPtr Parser::subquery() {
    auto result = std::make_unique<Query>(query());
    const bool first = result->body.core && result->body.core->top;
    if (!result->orderBy.empty() && !first) {
        throw SqlError(
            1033, 15,
            QStringLiteral("The ORDER BY clause is invalid in views, inline functions, derived tables, and "
                           "subqueries, unless TOP is also specified."));
    }
    return result;
}

QueryBody Parser::queryBody() {
    const Depth depth(*this);
    QueryBody left = queryPrimary();
    for (int unions = 1; m_tokens.accept("union"); ++unions) {
        if (unions > mostUnions) m_tokens.fail();
        QueryBody both;
        both.all = m_tokens.accept("all");
        both.left = std::make_unique<QueryBody>(std::move(left));
        both.right = std::make_unique<QueryBody>(queryPrimary());
        left = std::move(both);
    }
    return left;
}

QueryBody Parser::queryPrimary() {
    if (m_tokens.acceptSymbol("(")) {
        QueryBody inner = queryBody();
        m_tokens.expectSymbol(")");
        return inner;
    }
    QueryBody result;
    result.core = selectCore();
    return result;
}

void Parser::top(SelectCore& core) {
    if (!m_tokens.accept("top")) return;
    const bool enclosed = m_tokens.acceptSymbol("(");
    bool valid = false;
    Top limit{.count = m_tokens.peek().text.toDouble(&valid), .percent = false};
    if (m_tokens.peek().kind != TokenKind::Number || !valid) m_tokens.fail();
    m_tokens.take();
    if (enclosed) m_tokens.expectSymbol(")");
    limit.percent = m_tokens.accept("percent");
    if (!limit.percent && limit.count != std::floor(limit.count)) m_tokens.fail();
    // WITH TIES would need the order of rows at hand.
    if (m_tokens.is("with")) m_tokens.fail();
    core.top = limit;
}

std::unique_ptr<SelectCore> Parser::selectCore() {
    auto core = std::make_unique<SelectCore>();
    m_tokens.expect("select");
    core->distinct = m_tokens.accept("distinct");
    if (!core->distinct) m_tokens.accept("all");
    top(*core);
    do
        core->items.push_back(selectItem());
    while (m_tokens.acceptSymbol(","));
    if (m_tokens.accept("from")) {
        do
            core->from.push_back(joinedTable());
        while (m_tokens.acceptSymbol(","));
    }
    if (m_tokens.accept("where")) core->where = condition();
    if (m_tokens.accept("group")) {
        m_tokens.expect("by");
        if (m_tokens.is("all")) m_tokens.fail();
        do
            core->groupBy.push_back(scalar());
        while (m_tokens.acceptSymbol(","));
    }
    if (m_tokens.accept("having")) core->having = condition();
    return core;
}

SelectItem Parser::selectItem() {
    SelectItem item;
    if (m_tokens.acceptSymbol("*")) return item;
    size_t offset = 0;
    while (m_tokens.isName(offset) && m_tokens.isSymbol(".", offset + 1))
        offset += 2;
    if (offset > 0 && m_tokens.isSymbol("*", offset)) {
        for (; offset > 0; offset -= 2) {
            item.starPrefix.push_back(m_tokens.take().text);
            m_tokens.take();
        }
        m_tokens.take();
        return item;
    }
    const bool assigns = m_tokens.isSymbol("=", 1);
    if (assigns && m_tokens.isVariable()) {
        item.variable = m_tokens.take().text;
        m_tokens.take();
        item.expr = scalar();
        return item;
    }
    if (assigns && (m_tokens.isName() || m_tokens.peek().kind == TokenKind::String)) {
        item.name = m_tokens.take().text;
        m_tokens.take();
        item.expr = scalar();
        return item;
    }
    item.expr = scalar();
    const bool named = m_tokens.accept("as");
    if (m_tokens.isName() || m_tokens.peek().kind == TokenKind::String) {
        item.name = m_tokens.take().text;
    } else if (named) {
        m_tokens.fail();
    }
    return item;
}

std::optional<JoinKind> Parser::joinKind(bool* cross) {
    *cross = false;
    if (m_tokens.accept("join")) return JoinKind::Inner;
    if (m_tokens.is("cross") && m_tokens.is("join", 1)) {
        *cross = true;
        m_tokens.take();
        m_tokens.take();
        return JoinKind::Inner;
    }
    static constexpr std::pair<const char*, JoinKind> kinds[] = {{"inner", JoinKind::Inner},
                                                                 {"left", JoinKind::Left},
                                                                 {"right", JoinKind::Right},
                                                                 {"full", JoinKind::Full}};
    for (const auto& [word, kind] : kinds) {
        if (!m_tokens.accept(word)) continue;
        if (kind != JoinKind::Inner) m_tokens.accept("outer");
        for (const char* hint : {"loop", "hash", "merge"})
            m_tokens.accept(hint);
        m_tokens.expect("join");
        return kind;
    }
    return std::nullopt;
}

TablePtr Parser::joinedTable() {
    const Depth depth(*this);
    TablePtr left = primaryTable();
    bool cross = false;
    while (const auto kind = joinKind(&cross)) {
        countOperator();
        Join join{.kind = *kind, .left = std::move(left), .right = nullptr, .on = nullptr};
        // "a JOIN b JOIN c ON .. ON ..": the conditions close the joins from the inside out.
        join.right = cross ? primaryTable() : joinedTable();
        if (!cross) {
            m_tokens.expect("on");
            join.on = condition();
        }
        left = std::make_unique<ast::Table>(ast::Table{std::move(join)});
    }
    return left;
}

TablePtr Parser::primaryTable() {
    if (m_tokens.isSymbol("(") && !startsQuery()) {
        m_tokens.take();
        TablePtr inner = joinedTable();
        m_tokens.expectSymbol(")");
        return inner;
    }
    // "(" may open a derived table or a join whose first table is one.
    if (m_tokens.isSymbol("(") && !m_tokens.isSymbol("(", 1)) {
        m_tokens.take();
        DerivedTable derived;
        derived.query = subquery();
        m_tokens.expectSymbol(")");
        derived.alias = tableAlias();
        if (derived.alias.isEmpty()) m_tokens.fail();
        if (m_tokens.acceptSymbol("(")) {
            do
                derived.columnNames.push_back(m_tokens.name());
            while (m_tokens.acceptSymbol(","));
            m_tokens.expectSymbol(")");
        }
        return std::make_unique<ast::Table>(ast::Table{std::move(derived)});
    }
    if (m_tokens.acceptSymbol("(")) {
        TablePtr inner = joinedTable();
        m_tokens.expectSymbol(")");
        return inner;
    }
    NamedTable table;
    table.path = path();
    tableHints();
    table.alias = tableAlias();
    tableHints();
    return std::make_unique<ast::Table>(ast::Table{std::move(table)});
}

QString Parser::tableAlias() {
    const bool named = m_tokens.accept("as");
    if (m_tokens.isName()) return m_tokens.take().text;
    if (named) m_tokens.fail();
    return {};
}

/// Hints steer locks and plans, of which there are none to steer.
void Parser::tableHints() {
    const bool with = m_tokens.is("with") && m_tokens.isSymbol("(", 1);
    if (!with && !m_tokens.isSymbol("(")) return;
    if (with) m_tokens.take();
    m_tokens.expectSymbol("(");
    do {
        static constexpr const char* hints[] = {
            "nolock",         "holdlock", "readcommitted", "readpast", "readuncommitted",
            "repeatableread", "rowlock",  "serializable",  "paglock",  "tablock",
            "tablockx",       "updlock",  "fastfirstrow"};
        bool known = false;
        for (const char* hint : hints)
            known = known || m_tokens.accept(hint);
        if (!known) m_tokens.fail();
        m_tokens.acceptSymbol(",");
    } while (!m_tokens.isSymbol(")"));
    m_tokens.take();
}

std::vector<OrderItem> Parser::orderBy() {
    std::vector<OrderItem> items;
    do {
        OrderItem item;
        item.expr = scalar();
        item.descending = m_tokens.accept("desc");
        if (!item.descending) m_tokens.accept("asc");
        items.push_back(std::move(item));
    } while (m_tokens.acceptSymbol(","));
    return items;
}

Path Parser::path() {
    Path parts{m_tokens.name()};
    while (m_tokens.acceptSymbol(".")) {
        parts.push_back(m_tokens.isSymbol(".") ? QString() : m_tokens.name());
        if (parts.size() > 4) m_tokens.fail();
    }
    return parts;
}

}  // namespace engine

#include "engine/session/rowinserter.h"

#include "engine/session/evaluation.h"
#include "engine/syntax/parser.h"
#include "engine/values/convert.h"
#include "engine/values/sqlerror.h"

#include <QtEndian>

namespace engine {

namespace {

QByteArray existsStatement(const Table& table, const std::vector<int>& columns) {
    return "SELECT 1 FROM \"" + table.storage.toUtf8() + "\" WHERE " + matchColumns(columns);
}

bool isNull(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

}  // namespace

RowInserter::RowInserter(SessionState& session, Database& database, Table& table, bool identityInsert)
    : m_session(session),
      m_database(database),
      m_table(table),
      m_identityInsert(identityInsert),
      m_appender(database.keeper, table),
      m_defaults(table.columns.size()),
      m_row(table.columns.size()) {
    for (const Index& index : table.indexes) {
        if (!index.unique) continue;
        m_uniques.push_back(
            {.index = &index,
             .statement = StoreStatement(database.keeper, existsStatement(table, index.columns))});
    }
    for (const Check& check : table.checks) {
        if (!check.disabled)
            m_checks.emplace_back(
                &check, RowRule::condition(session.facts, database, table, check.text).breach(true));
    }
    for (size_t i = 0; i < table.columns.size(); ++i) {
        const QString& text = table.columns[i].computedText;
        if (!text.isEmpty())
            m_computations.push_back(
                RowRule::computation(session.facts, database, table, text).update(static_cast<int>(i), true));
    }
    for (const ForeignKey& key : table.foreignKeys) {
        if (key.disabled) continue;
        const Table* referenced = database.findTable(key.referencedOwner, key.referencedTable, table.owner);
        m_foreignKeys.push_back(
            {.key = &key,
             .referenced = referenced,
             .statement = StoreStatement(database.keeper, existsStatement(*referenced, key.referenced))});
    }
}

void RowInserter::insert(const std::vector<int>& columns, const std::vector<GivenValue>& values) {
    std::vector<const GivenValue*> given(m_table.columns.size(), nullptr);
    for (size_t i = 0; i < columns.size(); ++i)
        given[static_cast<size_t>(columns[i])] = &values[i];
    for (size_t i = 0; i < given.size(); ++i) {
        m_row[i] = valueFor(i, given[i]);
        const Column& column = m_table.columns[i];
        if (!isNull(m_row[i]) || column.nullable || !column.computedText.isEmpty()) continue;
        throw SqlError(
            515, 16,
            QStringLiteral("Cannot insert the value NULL into column '%1', table '%2'; column does not "
                           "allow nulls. INSERT fails.")
                .arg(column.name,
                     m_database.name + QLatin1Char('.') + m_table.owner + QLatin1Char('.') + m_table.name));
    }
    checkUnique();
    m_appender.append(m_row);
    for (StoreStatement& computation : m_computations) {
        computation.step();
        computation.reset();
    }
    checkChecks();
    checkForeignKeys();
}

Value RowInserter::valueFor(size_t column, const GivenValue* given) {
    Column& target = m_table.columns[column];
    if (target.identity) return identityValue(target, given);
    if (target.type.id == TypeId::Timestamp) return timestampValue(given);
    return given && *given ? assigned(**given, target.type) : defaultValue(column);
}

Value RowInserter::defaultValue(size_t column) {
    const Column& target = m_table.columns[column];
    if (target.defaultText.isEmpty()) return {};
    if (!m_defaults[column]) m_defaults[column] = parseExpression(target.defaultText);
    return assigned(evaluate(m_session.facts, m_session.store, *m_defaults[column]), target.type);
}

Value RowInserter::assigned(const TypedValue& value, const SqlType& type) const {
    return convertValue(value.value, value.type, type, true, m_session.facts.dateStyle);
}

Value RowInserter::identityValue(Column& column, const GivenValue* given) {
    static constexpr SqlType number{.id = TypeId::Decimal, .precision = 18, .scale = 0};
    if (m_identityInsert && given == nullptr) {
        throw SqlError(
            545, 16,
            QStringLiteral("Explicit value must be specified for identity column in table '%1' when "
                           "IDENTITY_INSERT is set to ON.")
                .arg(m_table.name));
    }
    if (given != nullptr && !m_identityInsert) {
        throw SqlError(544, 16,
                       QStringLiteral("Cannot insert explicit value for identity column in table '%1' when "
                                      "IDENTITY_INSERT is set to OFF.")
                           .arg(m_table.name));
    }
    qint64 value = column.identityNext;
    if (given != nullptr) {
        const Value explicitValue = given->has_value() ? assigned(**given, number) : Value();
        if (isNull(explicitValue)) return {};
        value = std::get<QString>(explicitValue).toLongLong();
    }
    const bool further =
        column.identityStep > 0 ? value >= column.identityNext : value <= column.identityNext;
    if (further) column.identityNext = value + column.identityStep;
    return convertValue(QString::number(value), number, column.type, true);
}

Value RowInserter::timestampValue(const GivenValue* given) {
    if (given && *given && !isNull((*given)->value)) {
        throw SqlError(
            273, 16,
            QStringLiteral("Cannot insert a non-null value into a timestamp column. Use INSERT with a "
                           "column list or with a default of NULL for the timestamp column."));
    }
    QByteArray bytes(8, '\0');
    qToBigEndian(++m_database.lastTimestamp, bytes.data());
    return bytes;
}

void RowInserter::checkUnique() {
    for (UniqueCheck& check : m_uniques) {
        int parameter = 0;
        for (const int column : check.index->columns) {
            const auto position = static_cast<size_t>(column);
            check.statement.bind(++parameter, m_row[position], m_table.columns[position].type);
        }
        const bool taken = check.statement.step();
        check.statement.reset();
        if (!taken) continue;
        const Index& index = *check.index;
        if (!index.primaryKey && !index.uniqueConstraint) {
            throw SqlError(
                2601, 14,
                QStringLiteral("Cannot insert duplicate key row in object '%1' with unique index '%2'.")
                    .arg(m_table.name, index.name));
        }
        throw SqlError(
            2627, 14,
            QStringLiteral("Violation of %1 constraint '%2'. Cannot insert duplicate key in object '%3'.")
                .arg(index.primaryKey ? QStringLiteral("PRIMARY KEY") : QStringLiteral("UNIQUE KEY"),
                     index.name, m_table.name));
    }
}

void RowInserter::checkChecks() {
    for (auto& [check, breach] : m_checks) {
        const bool broken = breach.step();
        breach.reset();
        if (!broken) continue;
        const bool atColumn = !check->column.isEmpty();
        QString text =
            QStringLiteral(
                "INSERT statement conflicted with %1 CHECK constraint '%2'. The conflict occurred in "
                "database '%3', table '%4'")
                .arg(atColumn ? QStringLiteral("COLUMN") : QStringLiteral("TABLE"), check->name,
                     m_database.name, m_table.name);
        if (atColumn) text += QStringLiteral(", column '%1'").arg(check->column);
        throw SqlError(547, 16, text + QLatin1Char('.'));
    }
}

void RowInserter::checkForeignKeys() {
    for (ForeignKeyCheck& check : m_foreignKeys) {
        bool complete = true;
        int parameter = 0;
        for (const int column : check.key->columns) {
            const auto position = static_cast<size_t>(column);
            complete = complete && !isNull(m_row[position]);
            check.statement.bind(++parameter, m_row[position], m_table.columns[position].type);
        }
        const bool found = !complete || check.statement.step();
        check.statement.reset();
        if (found) continue;
        const bool oneColumn = check.key->columns.size() == 1;
        QString text =
            QStringLiteral(
                "INSERT statement conflicted with %1 FOREIGN KEY constraint '%2'. The conflict occurred "
                "in database '%3', table '%4'")
                .arg(oneColumn ? QStringLiteral("COLUMN") : QStringLiteral("TABLE"), check.key->name,
                     m_database.name, check.referenced->name);
        if (oneColumn) {
            const auto position = static_cast<size_t>(check.key->referenced.front());
            text += QStringLiteral(", column '%1'").arg(check.referenced->columns[position].name);
        }
        throw SqlError(547, 16, text + QLatin1Char('.'));
    }
}

}  // namespace engine

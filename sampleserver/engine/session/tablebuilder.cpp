#include "engine/session/tablebuilder.h"

#include "engine/session/rowrule.h"
#include "engine/store/keycolumns.h"
#include "engine/store/rowstore.h"
#include "engine/store/storage.h"
#include "engine/values/sqlerror.h"

#include <algorithm>

namespace engine {

namespace {

constexpr size_t maximumColumns = 1024;

bool canBeIdentity(const SqlType& type) {
    switch (type.id) {
        case TypeId::TinyInt:
        case TypeId::SmallInt:
        case TypeId::Int:
            return true;
        case TypeId::Decimal:
        case TypeId::Numeric:
            return type.scale == 0;
        default:
            return false;
    }
}

bool inPrimaryKey(const TableDraft& statement, const QString& column) {
    return std::any_of(statement.keys.begin(), statement.keys.end(), [&column](const KeyDraft& key) {
        return key.primary && key.columns.contains(column, Qt::CaseInsensitive);
    });
}

/// Columns accept nulls unless they say otherwise, as for clients that set the ANSI defaults.
bool nullableByDefault(const ColumnDraft& column) {
    return !column.identity && !column.sysname && column.type.id != TypeId::Timestamp;
}

void checkIdentity(const Table& table, const ColumnDraft& draft) {
    if (!canBeIdentity(draft.type)) {
        throw SqlError(
            2749, 16,
            QStringLiteral("Identity column '%1' must be of data type int, smallint, tinyint, decimal, "
                           "or numeric with scale of 0 and constrained to be nonnullable.")
                .arg(draft.name));
    }
    if (draft.nullable.value_or(false)) {
        throw SqlError(
            8147, 16,
            QStringLiteral("Could not create IDENTITY attribute on nullable column '%1', table '%2'.")
                .arg(draft.name, table.name));
    }
    for (const Column& other : table.columns) {
        if (other.identity) {
            throw SqlError(
                2744, 16,
                QStringLiteral("Multiple identity columns specified for table '%1'. Only one identity "
                               "column per table is allowed.")
                    .arg(table.name));
        }
    }
}

void checkNewColumn(const Table& table, const ColumnDraft& draft) {
    if (table.columnIndex(draft.name) >= 0) {
        throw SqlError(
            2705, 16,
            QStringLiteral("Column names in each table must be unique. Column name '%1' in table '%2' "
                           "is specified more than once.")
                .arg(draft.name, table.name));
    }
    if (table.columns.size() >= maximumColumns) {
        throw SqlError(
            1702, 16,
            QStringLiteral("CREATE TABLE failed because column '%1' in table '%2' exceeds the maximum "
                           "of %3 columns.")
                .arg(draft.name, table.name, QString::number(maximumColumns)));
    }
    if (draft.identity) checkIdentity(table, draft);
    const auto isTimestamp = [](const Column& column) { return column.type.id == TypeId::Timestamp; };
    if (draft.type.id == TypeId::Timestamp &&
        std::any_of(table.columns.begin(), table.columns.end(), isTimestamp)) {
        throw SqlError(
            2738, 16,
            QStringLiteral("A table can only have one timestamp column. Because table '%1' already has "
                           "one, the column '%2' cannot be added.")
                .arg(table.name, draft.name));
    }
}

}  // namespace

void failNullableKey(const Table& table) {
    throw SqlError(8111, 16,
                   QStringLiteral("Cannot define PRIMARY KEY constraint on nullable column in table '%1'.")
                       .arg(table.name));
}

QString TableBuilder::ownerFor(const ObjectName& name) const {
    if (name.owner.isEmpty()) return QStringLiteral("dbo");
    const QString owner = m_database.findUser(name.owner);
    if (owner.isEmpty()) {
        throw SqlError(2760, 16,
                       QStringLiteral("Specified owner name '%1' either does not exist or you do not have "
                                      "permission to use it.")
                           .arg(name.owner));
    }
    return owner;
}

Table& TableBuilder::existingTable(const ObjectName& name, int errorNumber) {
    Table* table = m_database.findTable(name.owner, name.name, QStringLiteral("dbo"));
    if (table != nullptr) return *table;
    const QString text =
        errorNumber == 4902
            ? QStringLiteral("Cannot alter table '%1' because this table does not exist in database '%2'.")
            : QStringLiteral(
                  "Cannot create an index on '%1', because this table does not exist in database '%2'.");
    throw SqlError(errorNumber, 11, text.arg(name.name, m_database.name));
}

QString TableBuilder::constraintName(const Table& table, const QString& given, const char* prefix,
                                     const QString& column, int id) {
    // Names made up keep to thirty characters, which the server once could not exceed.
    constexpr qsizetype room = 14;
    QString name = given;
    if (name.isEmpty()) {
        const QString number = QStringLiteral("%1").arg(id, 8, 16, QLatin1Char('0')).toUpper();
        const QString tablePart = table.name.left(column.isEmpty() ? room + 2 : 9);
        name = QLatin1String(prefix) + QLatin1String("__") + tablePart + QLatin1String("__");
        if (!column.isEmpty()) name += column.left(room - tablePart.size()) + QLatin1String("__");
        name += number;
    }
    m_database.claimName(table.owner, name);
    return name;
}

void TableBuilder::createTable(const TableDraft& draft) {
    auto made = std::make_unique<Table>();
    made->owner = ownerFor(draft.name);
    made->name = draft.name.name;
    m_database.claimName(made->owner, made->name);
    made->id = m_database.newObjectId();
    made->storage = QLatin1Char('t') + QString::number(made->id);
    for (const ColumnDraft& column : draft.columns)
        addColumn(*made, column, draft);
    computeColumns(*made);
    addKeys(*made, draft.keys, true);
    for (const CheckDraft& check : draft.checks)
        addCheck(*made, check, false);
    createStorage(m_database.keeper, *made);
    Table& table = m_database.addTable(std::move(made));
    for (const ForeignKeyDraft& key : draft.foreignKeys)
        addForeignKey(table, key, false);
}

void TableBuilder::alterTable(const TableDraft& draft) {
    Table& table = existingTable(draft.name, 4902);
    if (draft.enable) return enableConstraints(table, draft);
    for (const ColumnDraft& column : draft.columns) {
        addColumn(table, column, draft);
        computeColumns(table);
        addColumnToRows(table, column);
    }
    for (const DefaultDraft& value : draft.defaults) {
        addDefault(table, keyColumn(table, value.column, 1752), value);
    }
    addKeys(table, draft.keys, false);
    for (const CheckDraft& check : draft.checks)
        addCheck(table, check, draft.checkExisting);
    for (const ForeignKeyDraft& key : draft.foreignKeys)
        addForeignKey(table, key, draft.checkExisting);
}

void TableBuilder::addColumn(Table& table, const ColumnDraft& draft, const TableDraft& statement) {
    checkNewColumn(table, draft);
    Column column;
    column.name = draft.name;
    column.type = draft.type;
    column.sysname = draft.sysname;
    column.computedText = draft.computedText;
    bool acceptsNulls = nullableByDefault(draft);
    if (!draft.userType.isEmpty()) {
        const UserType& made = userType(draft);
        column.userType = made.name;
        column.type = made.type;
        acceptsNulls = made.nullable;
    }
    const bool key = inPrimaryKey(statement, draft.name);
    if (key && draft.nullable.value_or(false)) failNullableKey(table);
    column.nullable = draft.nullable.value_or(!key && acceptsNulls);
    column.identity = draft.identity;
    column.identitySeed = draft.identitySeed;
    column.identityStep = draft.identityStep;
    column.identityNext = draft.identitySeed;
    table.columns.push_back(column);
    if (draft.defaultValue)
        addDefault(table, static_cast<int>(table.columns.size()) - 1, *draft.defaultValue);
}

void TableBuilder::addDefault(Table& table, int column, const DefaultDraft& draft) {
    Column& target = table.columns[static_cast<size_t>(column)];
    if (!target.defaultText.isEmpty() || target.identity || target.type.id == TypeId::Timestamp) {
        throw SqlError(
            1752, 16,
            QStringLiteral("Could not create DEFAULT for column '%1' as it is not a valid data type or "
                           "already has one.")
                .arg(target.name));
    }
    target.defaultId = m_database.newObjectId();
    target.defaultName = constraintName(table, draft.name, "DF", target.name, target.defaultId);
    target.defaultText = draft.text;
}

const UserType& TableBuilder::userType(const ColumnDraft& draft) const {
    for (const UserType& type : m_database.userTypes) {
        if (nameKey(type.name) == nameKey(draft.userType)) return type;
    }
    throw SqlError(2715, 16,
                   QStringLiteral("Column or parameter '%1': Cannot find data type %2.")
                       .arg(draft.name, draft.userType));
}

/// The types of computed columns follow from the columns that they are computed of.
void TableBuilder::computeColumns(Table& table) {
    for (Column& column : table.columns) {
        if (column.computedText.isEmpty()) continue;
        const RowRule rule = RowRule::computation(m_session.facts, m_database, table, column.computedText);
        column.type = rule.type();
        column.nullable = rule.nullable();
    }
}

void TableBuilder::addCheck(Table& table, const CheckDraft& draft, bool withRows) {
    const int id = m_database.newObjectId();
    const Check check{.name = constraintName(table, draft.name, "CK", draft.column, id),
                      .id = id,
                      .text = draft.text,
                      .column = draft.column};
    RowRule::condition(m_session.facts, m_database, table, check.text);
    if (withRows) checkRows(table, check);
    table.checks.push_back(check);
}

void TableBuilder::checkRows(const Table& table, const Check& check) {
    if (!RowRule::condition(m_session.facts, m_database, table, check.text).breach(false).step()) return;
    throw SqlError(547, 16,
                   QStringLiteral("ALTER TABLE statement conflicted with CHECK constraint '%1'. The conflict "
                                  "occurred in database '%2', table '%3'.")
                       .arg(check.name, m_database.name, table.name));
}

void TableBuilder::enableConstraints(Table& table, const TableDraft& draft) {
    QStringList left = draft.constraints;
    const auto isMeant = [&](const QString& name) {
        if (draft.constraints.isEmpty()) return true;
        const bool named = draft.constraints.contains(name, Qt::CaseInsensitive);
        left.removeIf([&](const QString& other) { return nameKey(other) == nameKey(name); });
        return named;
    };
    for (Check& check : table.checks) {
        if (!isMeant(check.name)) continue;
        if (*draft.enable && draft.checkExisting) checkRows(table, check);
        check.disabled = !*draft.enable;
    }
    for (ForeignKey& key : table.foreignKeys) {
        if (!isMeant(key.name)) continue;
        const Table* referenced = m_database.findTable(key.referencedOwner, key.referencedTable, table.owner);
        if (*draft.enable && draft.checkExisting) checkForeignKeyRows(table, key, *referenced);
        key.disabled = !*draft.enable;
    }
    if (left.isEmpty()) return;
    throw SqlError(4917, 16, QStringLiteral("Constraint '%1' does not exist.").arg(left.first()));
}

}  // namespace engine

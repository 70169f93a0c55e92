#include "engine/session/evaluation.h"
#include "engine/session/rowrule.h"
#include "engine/session/tablebuilder.h"
#include "engine/store/keycolumns.h"
#include "engine/store/rowstore.h"
#include "engine/store/storage.h"
#include "engine/syntax/parser.h"
#include "engine/values/convert.h"
#include "engine/values/sqlerror.h"

#include <algorithm>

namespace engine {

namespace {

[[noreturn]] void refuseSecondClustered(const Table& table, const Index& first) {
    throw SqlError(
        1902, 16,
        QStringLiteral("Cannot create more than one clustered index on table '%1'. Drop the existing "
                       "clustered index '%2' before creating another.")
            .arg(table.name, first.name));
}

void checkPrimaryKey(const Table& table, const Index& key, bool newTable) {
    for (const Index& other : table.indexes) {
        if (!other.primaryKey) continue;
        throw newTable
            ? SqlError(8110, 16,
                       QStringLiteral("Cannot add multiple PRIMARY KEY constraints to table '%1'.")
                           .arg(table.name))
            : SqlError(1779, 16,
                       QStringLiteral("Table '%1' already has a primary key defined on it.").arg(table.name));
    }
    for (const int column : key.columns) {
        if (table.columns[static_cast<size_t>(column)].nullable) failNullableKey(table);
    }
}

QByteArray tableIn(const Table& table) {
    return '"' + table.storage.toUtf8() + '"';
}

/// The columns of the table that a foreign key points to, in the key's order.
std::vector<int> referencedColumns(const Table& referenced, const ForeignKeyDraft& draft,
                                   const QString& name) {
    std::vector<int> columns;
    for (const QString& column : draft.referencedColumns) {
        const int position = referenced.columnIndex(column);
        if (position < 0) {
            throw SqlError(
                1770, 16,
                QStringLiteral("Foreign key '%1' references invalid column '%2' in referenced table '%3'.")
                    .arg(name, column, referenced.name));
        }
        columns.push_back(position);
    }
    if (!draft.referencedColumns.isEmpty()) return columns;
    for (const Index& index : referenced.indexes) {
        if (index.primaryKey) return index.columns;
    }
    throw SqlError(
        1773, 16,
        QStringLiteral("Foreign key '%1' has implicit reference to object '%2' which does not have a "
                       "primary key defined on it.")
            .arg(name, referenced.name));
}

void checkPairs(const Table& table, const ForeignKey& key, const Table& referenced) {
    if (key.columns.size() != key.referenced.size()) {
        throw SqlError(8139, 16,
                       QStringLiteral("Number of referencing columns in foreign key differs from number of "
                                      "referenced columns, table '%1'.")
                           .arg(table.name));
    }
    for (size_t i = 0; i < key.columns.size(); ++i) {
        const Column& from = table.columns[static_cast<size_t>(key.columns[i])];
        const Column& to = referenced.columns[static_cast<size_t>(key.referenced[i])];
        if (from.type == to.type) continue;
        const bool length = from.type.id == to.type.id && from.type.length != to.type.length;
        throw SqlError(
            length ? 1753 : 1778, 16,
            QStringLiteral(
                "Column '%1.%2' is not the same %3 as referencing column '%4.%5' in foreign key '%6'.")
                .arg(referenced.name, to.name,
                     length ? QStringLiteral("length") : QStringLiteral("data type"), table.name, from.name,
                     key.name));
    }
    if (candidateKey(referenced, key.referenced) == nullptr) {
        throw SqlError(
            1776, 16,
            QStringLiteral("There are no primary or candidate keys in the referenced table '%1' that "
                           "match the referencing column list in the foreign key '%2'.")
                .arg(referenced.name, key.name));
    }
}

}  // namespace

void TableBuilder::addColumnToRows(Table& table, const ColumnDraft& draft) {
    const int position = static_cast<int>(table.columns.size()) - 1;
    const Column& column = table.columns.back();
    const QByteArray stored = storageColumn(position).toUtf8();
    const bool rows = countRows(m_database.keeper, table) > 0;
    const bool computed = !column.computedText.isEmpty();
    const bool fill = draft.defaultValue && (!column.nullable || draft.withValues);
    if (rows && !column.nullable && !fill && !computed) {
        table.columns.pop_back();
        throw SqlError(
            4901, 16,
            QStringLiteral("ALTER TABLE only allows columns to be added that can contain nulls or have a "
                           "DEFAULT definition specified. Column '%1' cannot be added to table '%2' "
                           "because it does not allow nulls and does not specify a DEFAULT definition.")
                .arg(draft.name, table.name));
    }
    executeStore(m_database.keeper, "ALTER TABLE " + tableIn(table) + " ADD COLUMN " + stored + ' ' +
                                        storageDeclaration(column.type).toUtf8());
    if (computed)
        RowRule::computation(m_session.facts, m_database, table, column.computedText)
            .update(position, false)
            .step();
    if (!rows || !fill) return;
    const TypedValue value = evaluate(m_session.facts, m_session.store, *parseExpression(column.defaultText));
    StoreStatement update(m_database.keeper, "UPDATE " + tableIn(table) + " SET " + stored + " = ?1");
    update.bind(1, convertValue(value.value, value.type, column.type, true, m_session.facts.dateStyle),
                column.type);
    update.step();
}

void TableBuilder::addKeys(Table& table, const std::vector<KeyDraft>& keys, bool newTable) {
    const bool clusteredAsked = std::any_of(
        keys.begin(), keys.end(), [](const KeyDraft& key) { return key.clustered.value_or(false); });
    for (const KeyDraft& draft : keys) {
        const Index* first = clusteredIndex(table);
        const bool clustered = draft.clustered.value_or(draft.primary && !clusteredAsked && first == nullptr);
        if (clustered && first != nullptr) refuseSecondClustered(table, *first);
        Index index;
        index.columns = indexColumns(table, draft.columns);
        index.unique = true;
        index.clustered = clustered;
        index.primaryKey = draft.primary;
        index.uniqueConstraint = !draft.primary;
        if (draft.primary) checkPrimaryKey(table, index, newTable);
        index.indid = nextIndexId(table, clustered);
        index.id = m_database.newObjectId();
        index.name = constraintName(table, draft.name, draft.primary ? "PK" : "UQ", {}, index.id);
        if (!newTable) createIndexStorage(m_database.keeper, table, index);
        table.indexes.push_back(std::move(index));
    }
}

void TableBuilder::createIndex(const IndexDraft& draft) {
    Table& table = existingTable(draft.table, 1906);
    for (const Index& other : table.indexes) {
        if (nameKey(other.name) != nameKey(draft.name)) continue;
        throw SqlError(1913, 16,
                       QStringLiteral("There is already an index on table '%1' named '%2'.")
                           .arg(table.name, draft.name));
    }
    const Index* first = clusteredIndex(table);
    if (draft.clustered && first != nullptr) refuseSecondClustered(table, *first);
    Index index;
    index.name = draft.name;
    index.columns = indexColumns(table, draft.columns);
    index.unique = draft.unique;
    index.clustered = draft.clustered;
    index.statistics = draft.statistics;
    index.indid = nextIndexId(table, draft.clustered);
    createIndexStorage(m_database.keeper, table, index);
    table.indexes.push_back(std::move(index));
}

void TableBuilder::addForeignKey(Table& table, const ForeignKeyDraft& draft, bool checkRows) {
    ForeignKey key;
    key.id = m_database.newObjectId();
    key.name =
        constraintName(table, draft.name, "FK", draft.onColumn ? draft.columns.first() : QString(), key.id);
    if (!draft.referenced.database.isEmpty() &&
        nameKey(draft.referenced.database) != nameKey(m_database.name)) {
        throw SqlError(
            1763, 16,
            QStringLiteral("Cross-database foreign key references are not supported. Foreign key '%1'.")
                .arg(key.name));
    }
    const Table* referenced =
        m_database.findTable(draft.referenced.owner, draft.referenced.name, table.owner);
    if (referenced == nullptr) {
        throw SqlError(1767, 16,
                       QStringLiteral("Foreign key '%1' references invalid table '%2'.")
                           .arg(key.name, draft.referenced.name));
    }
    for (const QString& column : draft.columns) {
        const int position = table.columnIndex(column);
        if (position < 0) {
            throw SqlError(
                1769, 16,
                QStringLiteral("Foreign key '%1' references invalid column '%2' in referencing table '%3'.")
                    .arg(key.name, column, table.name));
        }
        key.columns.push_back(position);
    }
    key.referencedOwner = referenced->owner;
    key.referencedTable = referenced->name;
    key.referenced = referencedColumns(*referenced, draft, key.name);
    checkPairs(table, key, *referenced);
    if (checkRows) checkForeignKeyRows(table, key, *referenced);
    table.foreignKeys.push_back(std::move(key));
}

void TableBuilder::checkForeignKeyRows(const Table& table, const ForeignKey& key, const Table& referenced) {
    QByteArray notNull;
    QByteArray equal;
    for (size_t i = 0; i < key.columns.size(); ++i) {
        const QByteArray from = "f." + storageColumn(key.columns[i]).toUtf8();
        if (i > 0) notNull += " AND ", equal += " AND ";
        notNull += from + " IS NOT NULL";
        equal += "r." + storageColumn(key.referenced[i]).toUtf8() + " = " + from;
    }
    StoreStatement orphan(m_database.keeper, "SELECT 1 FROM " + tableIn(table) + " f WHERE " + notNull +
                                                 " AND NOT EXISTS (SELECT 1 FROM " + tableIn(referenced) +
                                                 " r WHERE " + equal + ") LIMIT 1");
    if (!orphan.step()) return;
    throw SqlError(
        547, 16,
        QStringLiteral("ALTER TABLE statement conflicted with FOREIGN KEY constraint '%1'. The conflict "
                       "occurred in database '%2', table '%3'.")
            .arg(key.name, m_database.name, referenced.name));
}

}  // namespace engine

#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/keyedtexts.h"
#include "platform/controls/listitems.h"

#include <QPointer>

namespace tw {

namespace {

/// Picture number of a primary-key column in the list's image list.
constexpr int KeyPicture = 5;
const QString ColumnName = QStringLiteral("COLUMN_NAME");
const QString TypeName = QStringLiteral("TYPE_NAME");
const QString Length = QStringLiteral("LENGTH");
const QString NullableFlag = QStringLiteral("NULLABLE");
enum SubItem { DataType = 1, Nullable, Foreign };

/// A type as the list shows it; `length` in bytes, as the server tells it.
QString typeText(const QString& typeName, const QString& length) {
    const QString base = DBConnection::GetTypeBaseName(typeName);
    const auto measured = [&](const QString& name) {
        return name + QStringLiteral("(") + length + QStringLiteral(")");
    };
    if (base == QStringLiteral("char") || base == QStringLiteral("varchar")) {
        return measured(DBConnection::Capitialize(base));
    }
    if (base == QStringLiteral("nchar")) return measured(QStringLiteral("nChar"));
    if (base == QStringLiteral("nvarchar")) return measured(QStringLiteral("nVarChar"));
    if (base == QStringLiteral("ntext")) return QStringLiteral("nText");
    if (base == QStringLiteral("int")) return QStringLiteral("Integer");
    return DBConnection::Capitialize(base);
}

}  // namespace

ReadAhead::Request DBConnection::definitionRequest(const QString& connectionString, const QString& table) {
    static const QStringList fields{ColumnName, TypeName, Length, NullableFlag};
    return {{connectionString, catalog::columnList(table)}, fields, [table] {
                return QStringList{catalog::primaryKeyColumns(table), catalog::foreignKeyColumns(table)};
            }};
}

void DBConnection::FillLvTblDef(controls::ListItems& list, const QString& database, const QString& table) {
    runRoutine(QStringLiteral("FillLvTblDef"), [&] {
        list.clearItems();
        if (catalog::isMarker(database, table)) return;
        CatalogReading columns =
            reading(definitionRequest(catalog::inDatabase(m_connectionString, database), table));
        if (!columns.await([this] { return goesOn(); })) return;
        columns.open();
        ado::Recordset& rows = columns.rows();
        if (rows.Eof()) {
            list.setMarker(list.addItem({}), 0, u"<No Column Defined>");
            return;
        }
        if (!goesOn()) return;
        // Either look-up may report its failure, and the list may go while the message box is open.
        const QPointer<controls::ListItems> stillThere(&list);
        controls::KeyedTexts primaryKeys;
        FindTablePrimaryKey(columns.connection(), table, primaryKeys);
        if (!goesOn()) return;
        controls::KeyedTexts foreignKeys;
        const bool foreignKeysKnown = FindTableForeignKey(columns.connection(), table, foreignKeys);
        if (!goesOn() || stillThere.isNull()) return;

        const ado::Field& name = rows.Fields(ColumnName);
        const ado::Field& type = rows.Fields(TypeName);
        const ado::Field& length = rows.Fields(Length);
        const ado::Field& nullable = rows.Fields(NullableFlag);
        const QString yes = QStringLiteral("Yes");
        for (; !rows.Eof(); rows.MoveNext()) {
            const QString column = name.text().toString();
            const int item = list.addItem(column, InCollection(primaryKeys, column) ? KeyPicture : 0);
            const QString typeName = type.isNull() ? QString() : type.text().toString();
            list.setSubItem(item, DataType, typeText(typeName, length.text().toString()));
            list.setSubItem(item, Nullable, nullable.toInteger() != 0 ? yes : QString());
            if (foreignKeysKnown && InCollection(foreignKeys, column)) list.setSubItem(item, Foreign, yes);
        }
    });
}

bool DBConnection::FindTablePrimaryKey(const ado::Connection& connection, const QString& table,
                                       controls::KeyedTexts& keys) {
    bool complete = false;
    runRoutine(QStringLiteral("FindTablePrimaryKey"), [&] {
        keys.clear();
        catalog::forEachText(connection, catalog::primaryKeyColumns(table), QStringLiteral("ColName"),
                             [&](QStringView name) { keys.add(name.toString(), name.toString()); });
        complete = true;
    });
    return complete;
}

bool DBConnection::FindTableForeignKey(const ado::Connection& connection, const QString& table,
                                       controls::KeyedTexts& keys) {
    bool complete = false;
    runRoutine(QStringLiteral("FindTableForeignKey"), [&] {
        keys.clear();
        ado::Recordset rows;
        rows.Open(catalog::foreignKeyColumns(table), connection, ado::CursorType::ForwardOnly,
                  ado::LockType::Unspecified);
        for (int row = 1; !rows.Eof(); rows.MoveNext(), ++row) {
            const QString column = rows.Fields(QStringLiteral("ColName")).text().toString();
            const QString referenced = rows.Fields(QStringLiteral("RefTableName")).text().toString() +
                                       QStringLiteral(".") +
                                       rows.Fields(QStringLiteral("RefColName")).text().toString();
            keys.add(referenced, InCollection(keys, column) ? column + QString::number(row) : column);
        }
        complete = true;
    });
    return complete;
}

}  // namespace tw

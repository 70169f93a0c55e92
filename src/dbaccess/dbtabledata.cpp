#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/error.h"
#include "platform/controls/listitems.h"

#include <exception>
#include <vector>

namespace tw {

namespace {

/// The rows of a table and how many there are in all.
struct TableRows {
    QString total;
    ado::Recordset rows;
};

void addHeaders(controls::ListItems& list, ado::Recordset& columns) {
    catalog::forEachText(columns, QStringLiteral("COLUMN_NAME"),
                         [&](QStringView name) { list.addHeader(name.toString()); });
    if (list.headerCount() == 0) list.addHeader(QStringLiteral("<No Column Defined>"));
}

/// The users of the database, each once: a user stands on a row for each of its roles.
QStringList possibleOwners(const ado::Connection& connection) {
    QStringList owners;
    catalog::forEachText(connection, QStringLiteral("sp_helpuser"), QStringLiteral("UserName"),
                         [&](QStringView name) { owners.append(name.toString()); });
    owners.removeDuplicates();
    return owners;
}

TableRows openRows(const ado::Connection& connection, const QString& name, qint32 mostRows) {
    TableRows result;
    {
        ado::Recordset count;
        count.Open(QStringLiteral("Select count(*) as x from ") + name, connection);
        result.total = count.Fields(QStringLiteral("X")).text().toString();
    }
    result.rows.setMaxRecords(mostRows);
    result.rows.Open(name, connection, ado::CursorType::ForwardOnly, ado::LockType::ReadOnly,
                     ado::CommandType::Table);
    return result;
}

/// Tries the bare name and then every possible owner; when none will do, the bare name's failure tells most.
TableRows openRowsOfAnyOwner(const ado::Connection& connection, const QString& table, qint32 mostRows) {
    const QStringList owners = possibleOwners(connection);
    std::exception_ptr failure;
    try {
        return openRows(connection, catalog::bracketed({}, table), mostRows);
    } catch (const ado::Error&) {
        failure = std::current_exception();
    }
    for (const QString& owner : owners) {
        try {
            return openRows(connection, catalog::bracketed(owner, table), mostRows);
        } catch (const ado::Error&) {
            continue;
        }
    }
    std::rethrow_exception(failure);
}

/// What stands for a value that has no text; empty for one that has.
QStringView markerOf(const ado::Field& field) {
    if (field.isNull()) return u"<NULL>";
    return field.Type() == ado::FieldType::Binary ? u"<UNPRINTABLE>" : u"";
}

void setCell(controls::ListItems& list, int item, int column, const ado::Field& field) {
    const QStringView marker = markerOf(field);
    if (marker.isEmpty())
        list.setSubItem(item, column, field.text());
    else
        list.setMarker(item, column, marker);
}

/// Number of rows listed.
int addRows(controls::ListItems& list, ado::Recordset& rows) {
    std::vector<const ado::Field*> fields;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        fields.push_back(&rows.Fields(i));
        if (ado::isNumber(fields.back()->Type())) list.setNumeric(i);
    }
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext(), ++count) {
        const bool hasText = markerOf(*fields.front()).isEmpty();
        const int item = list.addItem(hasText ? fields.front()->text() : QStringView());
        if (!hasText) setCell(list, item, 0, *fields.front());
        for (size_t i = 1; i < fields.size(); ++i) {
            setCell(list, item, static_cast<int>(i), *fields[i]);
        }
    }
    return count;
}

}  // namespace

QString DBConnection::FillLvTblData(controls::ListItems& list, const QString& database, const QString& table,
                                    qint32 mostRows) {
    QString caption;
    runRoutine(QStringLiteral("FillLvTblData"), [&] {
        list.clearHeaders();
        list.clearItems();
        if (catalog::isMarker(database, table)) return;
        CatalogReading columns = reading(database, catalog::columnList(table));
        columns.open();
        addHeaders(list, columns.rows());
        TableRows found = openRowsOfAnyOwner(columns.connection(), table, mostRows);
        const int listed = addRows(list, found.rows);
        if (listed == 0) list.setMarker(list.addItem({}), 0, u"<No Data>");
        caption = QStringLiteral("Table: ") + table + QStringLiteral(".  Total rows: ") + found.total +
                  QStringLiteral(".  Selected rows: ") + QString::number(listed);
    });
    return caption;
}

}  // namespace tw

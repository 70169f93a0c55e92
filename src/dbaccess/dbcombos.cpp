#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "dbaccess/failingstep.h"
#include "platform/ado/error.h"
#include "platform/controls/comboitems.h"
#include "platform/desktop/msgbox.h"

namespace tw {

namespace {

void tellLackOfPermission() {
    const QString padding(5, u' ');
    desktop::MsgBox(QStringLiteral("You don't have permission to access this database.  ") + padding +
                        QStringLiteral("\r\nPlease contact your Database Administrator.") + padding,
                    desktop::MsgBoxIcon::Exclamation);
}

}  // namespace

bool DBConnection::FillCbDB(controls::ComboItems& combo) {
    bool complete = false;
    runRoutine(QStringLiteral("FillCbDB"), [&] {
        combo.clear();
        CatalogReading databases = reading(catalog::databaseList());
        databases.open();
        catalog::forEachText(databases.rows(), QStringLiteral("Name"), [&](QStringView name) {
            if (!catalog::isSystemDatabase(name)) combo.addItem(name.toString());
        });
        complete = true;
    });
    return complete;
}

bool DBConnection::FillCbTable(controls::ComboItems& combo, const QString& database) {
    bool complete = false;
    runRoutine(QStringLiteral("FillCbTable"), [&] {
        combo.clear();
        CatalogReading tables = reading(database, catalog::tableList());
        if (skipFailing([&] { tables.open(); }) == ado::numbers::Unspecified) {
            tellLackOfPermission();
            m_connectionLost = true;
            return;
        }
        // Any other failure to open shows again, and is reported, when the rows are asked for.
        catalog::forEachText(tables.rows(), QStringLiteral("Name"), [&](QStringView name) {
            if (!catalog::isHiddenTable(name)) combo.addItem(name.toString());
        });
        complete = true;
    });
    return complete;
}

void DBConnection::FillCbColumn(controls::ComboItems& combo, const QString& database, const QString& table) {
    runRoutine(QStringLiteral("FillCbColumn"), [&] {
        combo.clear();
        CatalogReading columns = reading(database, catalog::columnList(table));
        columns.open();
        catalog::forEachText(columns.rows(), QStringLiteral("COLUMN_NAME"),
                             [&](QStringView name) { combo.addItem(name.toString()); });
    });
}

}  // namespace tw

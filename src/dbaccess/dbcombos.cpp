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
    try {
        combo.clear();
        ado::Connection connection;
        connection.setConnectionString(m_connectionString);
        connection.Open();
        catalog::forEachText(connection, catalog::databaseList(), QStringLiteral("Name"),
                             [&](QStringView name) {
                                 if (!catalog::isSystemDatabase(name)) combo.addItem(name.toString());
                             });
        return true;
    } catch (...) {
        catalog::reportFailureOf(QStringLiteral("FillCbDB"));
        return false;
    }
}

bool DBConnection::FillCbTable(controls::ComboItems& combo, const QString& database) {
    try {
        combo.clear();
        ado::Connection connection;
        connection.setConnectionString(catalog::inDatabase(m_connectionString, database));
        if (skipFailing([&] { connection.Open(); }) == ado::numbers::Unspecified) {
            tellLackOfPermission();
            return false;
        }
        // Any other failure to open shows again, and is reported, when the statement finds no open
        // connection.
        catalog::forEachText(connection, catalog::tableList(), QStringLiteral("Name"), [&](QStringView name) {
            if (!catalog::isHiddenTable(name)) combo.addItem(name.toString());
        });
        return true;
    } catch (...) {
        catalog::reportFailureOf(QStringLiteral("FillCbTable"));
        return false;
    }
}

void DBConnection::FillCbColumn(controls::ComboItems& combo, const QString& database, const QString& table) {
    try {
        combo.clear();
        ado::Connection connection;
        connection.setConnectionString(catalog::inDatabase(m_connectionString, database));
        connection.Open();
        catalog::forEachText(connection, catalog::columnList(table), QStringLiteral("COLUMN_NAME"),
                             [&](QStringView name) { combo.addItem(name.toString()); });
    } catch (...) {
        catalog::reportFailureOf(QStringLiteral("FillCbColumn"));
    }
}

}  // namespace tw

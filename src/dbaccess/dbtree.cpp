#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "dbaccess/failingstep.h"
#include "dbaccess/patience.h"
#include "platform/ado/error.h"
#include "platform/controls/nodes.h"

namespace tw {

namespace {

using controls::Node;
using controls::Nodes;

/// Picture numbers of the tree's image list.
enum Picture { Server = 1, Database = 2, Table = 3 };

Node& addRoot(Nodes& tree, const QString& text) {
    tree.clear();
    return tree.add(nullptr, QStringLiteral("R"), text, Server, Server);
}

bool opened(ado::Connection& connection) {
    try {
        connection.Open();
        return true;
    } catch (...) {
        catalog::reportFailureOf(QStringLiteral("FillTvDB"));
        return false;
    }
}

void addTables(Nodes& tree, Node& database, const ado::Connection& connection) {
    Nodes::Batch tables(tree, database);
    catalog::forEachText(connection, catalog::tableList(), QStringLiteral("Name"), [&](QStringView name) {
        if (catalog::isHiddenTable(name)) return;
        // Names that run together to a key that is taken ("a" + "bc", "ab" + "c") leave their node out.
        const QString text = name.toString();
        skipFailing([&] { tables.add(database.text + text, text, Table, Table); });
    });
}

/// A database whose own key is taken is left out with all that is in it.
void addDatabase(Nodes& tree, Node& root, const QString& name, const QString& connectionString,
                 Patience& patience) {
    Node& database = tree.add(&root, name, name, Database, Database);
    tree.ensureVisible(database);

    ado::Connection connection;
    connection.setConnectionString(catalog::inDatabase(connectionString, name));
    qint32 failure = ado::numbers::TimeOut;
    if (!patience.isOver()) failure = skipFailing([&] { connection.Open(); });
    if (failure == 0) failure = skipFailing([&] { addTables(tree, database, connection); });
    patience.note(failure);
    // Also behind the tables that came before the rest was refused or the line was lost.
    const QString marker = QStringLiteral("<No Permission>");
    if (failure != 0) tree.add(&database, name + marker, marker, Table, Table);
}

}  // namespace

bool DBConnection::FillTvDB(controls::Nodes& tree) {
    addRoot(tree, QStringLiteral("Server"));

    ado::Connection connection;
    connection.setConnectionString(m_connectionString);
    if (!opened(connection)) return false;
    if (const QString name = GetServerName(connection); !name.isEmpty()) m_server = name;

    Node& root = addRoot(tree, m_server);
    Patience patience;
    const qint32 failure = skipFailing([&] {
        catalog::forEachText(
            connection, catalog::databaseList(), QStringLiteral("Name"), [&](QStringView name) {
                if (catalog::isSystemDatabase(name)) return;
                skipFailing([&] { addDatabase(tree, root, name.toString(), m_connectionString, patience); });
            });
    });
    const QString marker = QStringLiteral("<No Connection>");
    if (failure != 0) skipFailing([&] { tree.add(&root, marker, marker, Database, Database); });
    return true;
}

}  // namespace tw

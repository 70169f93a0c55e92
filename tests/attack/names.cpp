#include "dbaccess/dbconnection.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/msgbox.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>
#include <QTcpServer>
#include <QTemporaryDir>

#include <sys/inotify.h>
#include <unistd.h>

#include <cstdio>

namespace {

using controls::ComboItems;
using controls::ListItems;

const QString Plain = QStringLiteral("Plain");
const QString Database = QStringLiteral("CREATE DATABASE [%1]\nGO\nUSE [%1]\nGO\n");
const QString Table = QStringLiteral("CREATE TABLE %1 ([%2] int NULL)\nINSERT %1 VALUES (1)\n");

QString doubled(QString name, QChar character) {
    return name.replace(character, QString(2, character));
}

/// Every name as that of a database, a table, a column, an index and an owner.
QString scriptOf(const QStringList& names) {
    QString script = Database.arg(Plain);
    QString others;
    for (const QString& name : names) {
        const QString bracketed = u'[' + doubled(name, u']') + u']';
        const QString login = QStringLiteral("login%1").arg(names.indexOf(name));
        script += Table.arg(bracketed, bracketed.mid(1, bracketed.size() - 2)) +
                  QStringLiteral("CREATE INDEX %1 ON %1 (%1)\n").arg(bracketed) +
                  QStringLiteral("EXEC sp_addlogin '%1', '%1'\nEXEC sp_grantdbaccess '%1', N'%2'\n")
                      .arg(login, doubled(name, u'\'')) +
                  Table.arg(bracketed + QStringLiteral(".Of") + login, QStringLiteral("A"));
        others += Database.arg(bracketed.mid(1, bracketed.size() - 2)) + Table.arg(QStringLiteral("T"), "A") +
                  "GO\n";
    }
    return script + QStringLiteral("GO\n") + others;
}

/// A statement without the names in brackets and quotes: what the server takes for its own language.
QString syntaxOf(QString batch) {
    static const QRegularExpression names(QStringLiteral("'([^']|'')*'|\\[([^\\]]|\\]\\])*\\]"));
    return batch.replace(names, QStringLiteral("name"));
}

class Walk {
  public:
    Walk(testsupport::Relay& relay, QStringList names) : m_relay(relay), m_names(std::move(names)) {
        desktop::setMsgBoxAnswerer([this](const desktop::MsgBoxRequest& request) {
            m_boxes += request.text;
            return request.defaultButton;
        });
        m_connection.setConnectionString(
            QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(relay.serverText()));
    }

    void learnStatements() {
        walkTable(Plain, QStringLiteral("a;b"), true);
        walkTable(Plain, QStringLiteral("Oflogin%1").arg(m_names.indexOf(QStringLiteral("a;b"))), true);
        walkDatabase(Plain);
        m_connection.FillCbDB(m_tables);
        for (const QString& batch : m_relay.batches())
            m_statements += syntaxOf(batch);
        // No name is tried as an owner before the own user of the database.
        m_statements += syntaxOf(QStringLiteral("Select count(*) as x from [a].[b]"));
    }
    void walkAll();
    int findings() const { return m_findings; }
    void expect(bool good, const char* what, const QString& name) {
        if (good) return;
        ++m_findings;
        printf("%s: %s\n%s", what, qUtf8Printable(name), qUtf8Printable(m_boxes.join(u'\n')));
    }

  private:
    ComboItems& walkDatabase(const QString& name);
    void walkTable(const QString& database, const QString& name, bool opens);

    testsupport::Relay& m_relay;
    QStringList m_names;
    tw::DBConnection m_connection;
    ComboItems m_tables;
    QStringList m_boxes;
    QSet<QString> m_statements;
    int m_findings = 0;
};

ComboItems& Walk::walkDatabase(const QString& name) {
    ListItems list;
    m_connection.FillCbTable(m_tables, name);
    m_connection.FillLvDBDetail(list, name);
    m_connection.ExecuteQuery(name, QStringLiteral("select 1"));
    return m_tables;
}

void Walk::walkTable(const QString& database, const QString& name, bool opens) {
    ListItems list;
    m_connection.FillLvTblDef(list, database, name);
    ComboItems columns;
    m_connection.FillCbColumn(columns, database, name);
    m_boxes.clear();
    const QString caption = m_connection.FillLvTblData(list, database, name, 10);
    expect(opens == caption.contains(QStringLiteral("Total rows: 1.")) && opens == m_boxes.isEmpty(),
           opens ? "table does not open" : "table's refusal is not told", name);
}

void Walk::walkAll() {
    controls::Nodes tree;
    ComboItems databases;
    expect(m_connection.FillTvDB(tree) && m_connection.FillCbDB(databases), "no connection", {});
    expect(databases.count() == m_names.size() + 1, "databases are missing",
           QString::number(databases.count()));
    expect(walkDatabase(Plain).count() == 2 * m_names.size(), "tables are missing",
           QString::number(m_tables.count()));
    for (const QString& name : m_names) {
        walkTable(Plain, name, !name.contains(u']') && !name.contains(u'\''));
        walkTable(Plain, QStringLiteral("Oflogin%1").arg(m_names.indexOf(name)), !name.contains(u']'));
        m_boxes.clear();
        walkDatabase(name);
        expect(m_boxes.isEmpty() && m_tables.count() == 1, "database does not open", name);
        walkTable(name, QStringLiteral("T"), true);
    }
    for (const QString& batch : m_relay.batches())
        expect(m_statements.contains(syntaxOf(batch)), "statement", batch);
}

}  // namespace

/// Walks all routines over a server whose names are statements, connection strings and markup, and watches
/// what these do.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QTemporaryDir watched;
    const int watch = inotify_init1(IN_NONBLOCK);
    QFile(watched.filePath(QStringLiteral("x.so"))).open(QIODevice::WriteOnly);
    inotify_add_watch(watch, qUtf8Printable(watched.path()), IN_OPEN | IN_CREATE | IN_MODIFY | IN_DELETE);
    QTcpServer elsewhere;
    elsewhere.listen(QHostAddress::LocalHost);

    QFile file(QStringLiteral(TW_ATTACK_NAMES));
    if (!file.open(QIODevice::ReadOnly)) return 2;
    QStringList names;
    for (const QJsonValue& name : QJsonDocument::fromJson(file.readAll()).array())
        names += name.toString()
                     .replace("@FOLDER@", watched.path())
                     .replace("@PORT@", QString::number(elsewhere.serverPort()));
    QFile script(folder.filePath(QStringLiteral("names.sql")));
    if (!script.open(QIODevice::WriteOnly)) return 2;
    script.write(scriptOf(names).toUtf8());
    script.close();
    testsupport::SampleServerProcess server;
    if (!server.start({"--no-sample-data", "--script", script.fileName()})) {
        fprintf(stderr, "%s\n", qUtf8Printable(server.errorText()));
        return 2;
    }
    testsupport::Relay relay(server.port());
    Walk walk(relay, names);
    walk.learnStatements();
    walk.walkAll();
    std::array<char, 4096> room;
    walk.expect(read(watch, room.data(), room.size()) <= 0, "a file was touched", {});
    walk.expect(!elsewhere.waitForNewConnection(0), "another port was dialled", {});
    printf("%lld hostile names: %d findings\n", static_cast<long long>(names.size()), walk.findings());
    return walk.findings() == 0 ? 0 : 1;
}

#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/datasources.h"
#include "platform/ado/recordset.h"
#include "support/table.h"

#include <QFile>
#include <QTemporaryDir>

using namespace ado;

static const QString freeTds = QStringLiteral("FreeTDS");
static const QString odbc18 = QStringLiteral("ODBC Driver 18 for SQL Server");
static const QString exact = QStringLiteral("SQL Server");

/// What reaches the drivers that people have, and what becomes of their answers; the recording driver stands
/// for each of them.
class DriversTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void registrations_data();
    void registrations();
    void strings_data();
    void strings();
    void answers_data();
    void answers();

  private:
    void write(const char* file, const QString& text) const;
    void registerDrivers(const QStringList& names) const;
    QStringList takeEvents() const;

    QTemporaryDir m_folder;
};

void DriversTest::write(const char* file, const QString& text) const {
    QFile target(m_folder.filePath(QString::fromLatin1(file)));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(text.toUtf8());
}

// One called after a file is in a file of that name.
void DriversTest::registerDrivers(const QStringList& names) const {
    QString text;
    for (const QString& name : names) {
        QString library = QStringLiteral(TW_RECORDING_DRIVER);
        if (name.startsWith(QStringLiteral("lib"))) {
            QFile::link(library, m_folder.filePath(name));
            library = m_folder.filePath(name);
        }
        text += QStringLiteral("[%1]\nDriver=%2\n").arg(name, library);
    }
    write("odbcinst.ini", text);
}

QStringList DriversTest::takeEvents() const {
    QFile file(qEnvironmentVariable("TW_RECORDING"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QStringList events = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    file.remove();
    return events;
}

void DriversTest::initTestCase() {
    // The driver manager reads this variable once.
    qputenv("ODBCSYSINI", QFile::encodeName(m_folder.path()));
    qputenv("TW_RECORDING", QFile::encodeName(m_folder.filePath(QStringLiteral("events"))));
    write("odbc.ini",
          "[Tds]\nDriver=FreeTDS\nServer=DB1\nPort=1500\nDatabase=pubs\n"
          "[TdsLogin]\nDriver=FreeTDS\nServer=(local),1500\nUID=me\nPWD=a;b\nTDS_Version=7.0\n"
          "[TdsFile]\nDriver=FreeTDS\nServername=DB1\n"
          "[Ms]\nDriver=ODBC Driver 18 for SQL Server\nServer=DB1,1500\n"
          "[MsLogin]\nDriver=ODBC Driver 18 for SQL Server\nServer=DB1\nPort=1433\nUID=me\nPWD=secret\n"
          "[Role]\nDriver=SQL Server\nServer=DB1\nPort=1500\nTDS_Version=7.0\n"
          "[B\u00FCcher]\nDriver=/opt/libtdsodbc.so.0\n[Other]\nDriver=PostgreSQL\n");
}

void DriversTest::registrations_data() {
    const testsupport::Table<QStringList, QString> row("drivers", "player");
    row("none", {}, "");
    row("another's", {"PostgreSQL"}, "");
    row("FreeTDS only", {"PostgreSQL", freeTds}, freeTds);
    row("Microsoft's beside it", {freeTds, odbc18}, odbc18);
    row("the newest", {"ODBC Driver 9 for SQL Server", odbc18, freeTds}, odbc18);
    row("FreeTDS by its file", {"PostgreSQL", "libtdsodbc.so.0"}, "libtdsodbc.so.0");
    row("Microsoft's by its file", {"PostgreSQL", "libmsodbcsql-18.3.so.2.1"}, "libmsodbcsql-18.3.so.2.1");
    row("the very name", {freeTds, odbc18, exact}, exact);
}

void DriversTest::registrations() {
    QFETCH(QStringList, drivers);
    QFETCH(QString, player);
    registerDrivers(drivers);
    QCOMPARE(driverPresent(), !player.isEmpty());

    const auto all = dataSources();
    QStringList listed;
    for (const DataSource& source : all.value())
        if (source.driver == exact) listed += source.name;
    listed.sort();
    QCOMPARE(listed, (QStringList{"B\u00FCcher", "Ms", "MsLogin", "Role", "Tds", "TdsFile", "TdsLogin"}));

    // The driver manager remembers for a while that a name, so written, meant nothing.
    const QString name = player.isEmpty() ? exact.toLower() : exact;
    Connection connection;
    const auto open = [&] { connection.Open(QStringLiteral("driver={%1};server=DB1").arg(name)); };
    QCOMPARE(numberOf(open), player.isEmpty() ? -2147467259 : 0);
    QVERIFY(takeEvents().join(u' ').contains(player.isEmpty() ? "" : "driver={" + player + "};"));
}

void DriversTest::strings_data() {
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("handed");
    QTest::addColumn<QString>("server");  // that the opened connection tells beside the text
    QString driver = freeTds;
    const auto row = [&](const char* text, const char* handed, const char* server = "") {
        QTest::addRow("%s, %s", qPrintable(driver), text) << driver << text << handed << server;
    };
    row("driver={SQL Server};server=DB1;uid=sa;pwd=x",
        "TDS_Version=7.4;Port=1433;driver={FreeTDS};server=DB1;uid=sa;PWD=x");
    row("driver={SQL Server};server=DB1,1500;uid=sa;pwd=a}b{c='d\"",
        "TDS_Version=7.4;Port=1500;driver={FreeTDS};server=DB1;uid=sa;PWD=a}b{c='d\"");
    row("driver={SQL Server};server=DB1\\dev;pwd={a;b}",
        "TDS_Version=7.4;driver={FreeTDS};server=DB1\\dev;PWD={a;b};");
    row("driver={SQL Server};server=DB1\\dev, 1500", "TDS_Version=7.4;Port=1500;driver={FreeTDS};server=DB1");
    row("driver={SQL Server};server=(local);pwd=(local)",
        "TDS_Version=7.4;Port=1433;driver={FreeTDS};server=127.0.0.1;PWD=(local)");
    row("driver={SQL Server};server=(LOCAL)\\dev", "TDS_Version=7.4;driver={FreeTDS};server=127.0.0.1\\dev");
    row(" driver = {sql server} ; Server = .,1 ; uid = sa",
        "TDS_Version=7.4;Port=1;driver={FreeTDS};Server=127.0.0.1;uid= sa");
    row("driver=FreeTDS;server=DB1;port=1500;tds_version=7.0",
        "driver=FreeTDS;server=DB1;port=1500;tds_version=7.0");
    row("DSN=Tds;;Database=x", "TDS_Version=7.4;Driver={FreeTDS};Server=DB1;Port=1500;;Database=x",
        "DB1,1500");
    row("DSN=Tds;;Database={a}};b}",
        "attribute 109 a};b\nTDS_Version=7.4;Driver={FreeTDS};Server=DB1;Port=1500;;;", "DB1,1500");
    row("DSN=TdsLogin;", "Port=1500;Driver={FreeTDS};Server=127.0.0.1;UID=me;PWD={a;b};TDS_Version=7.0;",
        "(local),1500");
    row("DSN=TdsLogin;uid=you", "Port=1500;Driver={FreeTDS};Server=127.0.0.1;TDS_Version=7.0;uid=you",
        "(local),1500");
    row("DSN=TdsFile;", "Driver={FreeTDS};Servername=DB1;", "DB1");
    row("DSN=Role;", "Driver={FreeTDS};Server=DB1;Port=1500;TDS_Version=7.0;", "DB1,1500");
    driver = odbc18;
    row("driver={SQL Server};server=DB1,1500;uid=sa;pwd=x",
        "driver={ODBC Driver 18 for SQL Server};server=DB1,1500;uid=sa;PWD=x");
    row("driver={SQL Server};server=DB1\\dev;uid=sa;pwd=a}b{c='d\"",
        "driver={ODBC Driver 18 for SQL Server};server=DB1\\dev;uid=sa;PWD=a}b{c='d\"");
    row("driver={SQL Server};server=(local),1500;uid=;pwd=",
        "Trusted_Connection=yes;driver={ODBC Driver 18 for SQL Server};server=localhost,1500;uid=;PWD=");
    row("DSN=Ms;", "Trusted_Connection=yes;DSN=Ms;", "DB1,1500");
    row("DSN=Ms;Trusted_Connection=no", "DSN=Ms;Trusted_Connection=no", "DB1,1500");
    row("DSN=MsLogin;", "UID=me;PWD=secret;DSN=MsLogin;", "DB1");
    row("DSN=Role;uid=sa", "Driver={ODBC Driver 18 for SQL Server};Server=DB1,1500;uid=sa", "DB1,1500");
    driver = exact;
    row("driver={SQL Server};server=(local),1500;uid=", "driver={SQL Server};server=127.0.0.1,1500;uid=");
    row("DSN=Role;", "DSN=Role;", "DB1,1500");
}

void DriversTest::strings() {
    QFETCH(QString, driver);
    QFETCH(QString, text);
    QFETCH(QString, server);
    registerDrivers({driver});
    Connection connection;
    connection.Open(text);
    QStringList events = takeEvents();
    QCOMPARE(events.takeFirst(), QStringLiteral("attribute 103 15"));  // the login's time-out
    QTEST(events.join(u'\n').remove(QStringLiteral("connect ")), "handed");
    QString opened = text.endsWith(u';') ? text : text + u';';
    if (!server.isEmpty()) opened += QStringLiteral("SERVER=%1;").arg(server);
    QCOMPARE(connection.ConnectionString(), opened + QStringLiteral("WSID=") + QSysInfo::machineHostName());
}

void DriversTest::answers_data() {
    // As people report what Microsoft's drivers say.
    const testsupport::Table<QString, qint32, QString> row("played", "number", "said");
    row("nothing", "", 0, "");
    row("words on connecting", "connect|01000|5701|[Microsoft][M][SQL Server]Changed database context.", 0,
        "");
    row("words on a limit", "execute SET ROWCOUNT|01000|0|[Microsoft][M][SQL Server]Words.", 0, "");
    row("no blocks", "attribute 27 |HYC00|0|[Microsoft][M]Not implemented", 0, "");
    row("blocks of one", "attribute 27 |01S02|0|[Microsoft][M]Option value changed", 0, "");
    row("no binding by rows", "attribute 5 |HYC00|0|[Microsoft][M]Not implemented", 0, "");
    row("no count of rows", "attribute 26 |HYC00|0|[Microsoft][M]Not implemented", 0, "");
    row("login refused", "connect|28000|18456|[Microsoft][M][SQL Server]Login failed.", -2147217843,
        "failed");
    row("database refused",
        "connect|37000|4060|[Microsoft][M][SQL Server]Cannot open.\n"
        "connect|28000|18456|[Microsoft][M][SQL Server]Login failed.",
        -2147467259, "open");
    row("nobody listens",
        "connect|08001|111|[Microsoft][M]TCP Provider: Error code 0x6F\n"
        "connect|HYT00|0|[Microsoft][M]Login timeout expired",
        -2147467259, "0x6F");
    row("a silent server", "connect|HYT00|0|[Microsoft][M]Login timeout expired", -2147217871, "expired");
    row("a certificate",
        "connect|08001|-1|[Microsoft][M]SSL Provider: certificate verify failed\n"
        "connect|08001|-1|[Microsoft][M]Client unable to establish connection",
        -2147467259, "certificate");
    row("no such table", "execute SELECT|42S02|208|[Microsoft][M][SQL Server]Invalid.", -2147217865,
        "Invalid");
    row("no permission", "execute SELECT|42000|229|[Microsoft][M][SQL Server]Denied.", -2147217911, "Denied");
    row("a slow statement", "execute SELECT|HYT00|0|[Microsoft][M]Query timeout", -2147217871, "timeout");
    row("a cut line", "execute SELECT|08S01|104|[Microsoft][M]Communication link", -2147467259, "link");
}

void DriversTest::answers() {
    QFETCH(QString, played);
    QFETCH(QString, said);
    registerDrivers({odbc18});
    qputenv("TW_PLAY", played.toUtf8());
    QStringList rows;
    const auto failure = failureOf([&] {
        Connection connection;
        connection.Open(QStringLiteral("driver={SQL Server};server=DB1;uid=sa"));
        Recordset names;
        names.setMaxRecords(5);
        names.Open(QStringLiteral("SELECT Name"), connection);
        for (; !names.Eof(); names.MoveNext())
            rows += names.Fields(0).text().toString();
    });
    qunsetenv("TW_PLAY");
    const QStringList events = takeEvents();
    QTEST(failure ? failure->number() : 0, "number");
    if (failure) {
        QVERIFY2(failure->description().contains(said), qPrintable(failure->description()));
        return;
    }
    QCOMPARE(rows, (QStringList{"row 1", "row 2", "row 3"}));
    QVERIFY(events.contains(QStringLiteral("execute SET ROWCOUNT 5")));
    QVERIFY(events.contains(QStringLiteral("attribute 0 30")));  // the statement's time-out
}

QTEST_GUILESS_MAIN(DriversTest)
#include "test_drivers.moc"

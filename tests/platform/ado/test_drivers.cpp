#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/datasources.h"
#include "platform/ado/recordset.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ado;

static const QString freeTds = QStringLiteral("FreeTDS");
static const QString odbc18 = QStringLiteral("ODBC Driver 18 for SQL Server");

/// What reaches the drivers that people have, and what becomes of what they answer; the recording driver
/// stands for each of them.
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
    void write(const char* file, const QByteArray& text) const;
    void registerDrivers(const QStringList& names) const;
    QStringList takeEvents() const;

    QTemporaryDir m_folder;
};

void DriversTest::write(const char* file, const QByteArray& text) const {
    QFile target(m_folder.filePath(QString::fromLatin1(file)));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(text);
}

// A driver called after a file is in a file of that name.
void DriversTest::registerDrivers(const QStringList& names) const {
    QString text;
    for (const QString& name : names) {
        const QString link = m_folder.filePath(name);
        if (name.startsWith(QStringLiteral("lib"))) QFile::link(QStringLiteral(TW_RECORDING_DRIVER), link);
        text += QStringLiteral("[%1]\nDriver=%2\n")
                    .arg(name, QFile::exists(link) ? link : QStringLiteral(TW_RECORDING_DRIVER));
    }
    write("odbcinst.ini", text.toUtf8());
}

QStringList DriversTest::takeEvents() const {
    QFile file(qEnvironmentVariable("TW_RECORDING"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QStringList events = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
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
          "[MsLogin]\nDriver=ODBC Driver 18 for SQL Server\nServer=DB1\nUID=me\nPWD=secret\n"
          "[Role]\nDriver=SQL Server\nServer=DB1\nPort=1500\nTDS_Version=7.0\n"
          "[B\xC3\xBC"
          "cher]\nDriver=/opt/libtdsodbc.so.0\n[Other]\nDriver=PostgreSQL\n");
}

void DriversTest::registrations_data() {
    QTest::addColumn<QStringList>("drivers");
    QTest::addColumn<QString>("player");
    const auto row = [](const QStringList& drivers, const QString& player) {
        QTest::addRow("%s", qPrintable(drivers.join(u'+'))) << drivers << player;
    };
    const QString exact = QStringLiteral("SQL Server");
    const QString odbc9 = QStringLiteral("ODBC Driver 9 for SQL Server");
    const QString other = QStringLiteral("PostgreSQL");
    row({}, {});
    row({other}, {});
    row({other, freeTds}, freeTds);
    row({freeTds, odbc18}, odbc18);
    row({odbc9, odbc18, freeTds}, odbc18);
    row({other, QStringLiteral("libtdsodbc.so.0")}, QStringLiteral("libtdsodbc.so.0"));
    row({other, QStringLiteral("libmsodbcsql-18.3.so.2.1")}, QStringLiteral("libmsodbcsql-18.3.so.2.1"));
    row({freeTds, odbc18, exact}, exact);
}

void DriversTest::registrations() {
    QFETCH(QStringList, drivers);
    QFETCH(QString, player);
    registerDrivers(drivers);
    QCOMPARE(driverPresent(), !player.isEmpty());

    QStringList sources;
    const auto all = dataSources();
    for (const DataSource& source : all.value())
        if (source.driver == QStringLiteral("SQL Server")) sources += source.name;
    sources.sort();
    QCOMPARE(sources, (QStringList{"B\u00FCcher", "Ms", "MsLogin", "Role", "Tds", "TdsFile", "TdsLogin"}));

    // The driver manager remembers for a while that a name, so written, meant nothing.
    const QString name = player.isEmpty() ? QStringLiteral("sql server") : QStringLiteral("SQL Server");
    Connection connection;
    const auto failure =
        failureOf([&] { connection.Open(QStringLiteral("driver={%1};server=DB1").arg(name)); });
    QCOMPARE(failure.has_value(), player.isEmpty());
    if (failure) QCOMPARE(failure->number(), -2147467259);
    const QStringList events = takeEvents();
    QVERIFY(player.isEmpty() || events.last().contains(QStringLiteral("driver={%1};").arg(player)));
}

void DriversTest::strings_data() {
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("handed");
    QTest::addColumn<QString>("server");  // that the opened connection tells beside the text
    QString driver;
    const auto row = [&](const char* text, const char* handed, const char* server = "") {
        QTest::addRow("%s, %s", qPrintable(driver), text)
            << driver << QString::fromUtf8(text) << QString::fromUtf8(handed) << QString::fromUtf8(server);
    };
    driver = freeTds;
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
    driver = QStringLiteral("SQL Server");
    row("driver={SQL Server};server=(local),1500;uid=", "driver={SQL Server};server=127.0.0.1,1500;uid=");
    row("DSN=Role;", "DSN=Role;", "DB1,1500");
}

void DriversTest::strings() {
    QFETCH(QString, driver);
    QFETCH(QString, text);
    QFETCH(QString, handed);
    QFETCH(QString, server);
    registerDrivers({driver});
    Connection connection;
    connection.Open(text);
    QCOMPARE(takeEvents(), (QStringList{"attribute 103 15", QStringLiteral("connect ") + handed}));
    QString opened = text.endsWith(u';') ? text : text + u';';
    if (!server.isEmpty()) opened += QStringLiteral("SERVER=%1;").arg(server);
    QCOMPARE(connection.ConnectionString(), opened + QStringLiteral("WSID=") + QSysInfo::machineHostName());
}

void DriversTest::answers_data() {
    QTest::addColumn<QString>("played");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<QString>("description");
    const auto row = [](const char* name, const char* played, qint32 number = 0,
                        const char* description = "") {
        QTest::newRow(name) << QString::fromLatin1(played) << number << QString::fromLatin1(description);
    };
    row("nothing said", "");
    row("words on connecting", "connect|01000|5701|[Microsoft][M][SQL Server]Changed database context.");
    row("words on a limit", "execute SET ROWCOUNT|01000|0|[Microsoft][M][SQL Server]Words.");
    row("no blocks", "attribute 27 |HYC00|0|[Microsoft][M]Optional feature not implemented");
    row("blocks of one", "attribute 27 |01S02|0|[Microsoft][M]Option value changed");
    row("no binding by rows", "attribute 5 |HYC00|0|[Microsoft][M]Optional feature not implemented");
    row("no count of rows", "attribute 26 |HYC00|0|[Microsoft][M]Optional feature not implemented");
    row("login refused", "connect|28000|18456|[Microsoft][M][SQL Server]Login failed for user 'a'.",
        -2147217843, "[Microsoft][M][SQL Server]Login failed for user 'a'.");
    row("certificate",
        "connect|08001|-1|[Microsoft][M]SSL Provider: certificate verify failed\n"
        "connect|08001|-1|[Microsoft][M]Client unable to establish connection",
        -2147467259, "[Microsoft][M]SSL Provider: certificate verify failed");
    row("permission", "execute SELECT|42000|229|[Microsoft][M][SQL Server]Denied.", -2147217911,
        "[Microsoft][M][SQL Server]Denied.");
    row("time-out", "execute SELECT|HYT00|0|[Microsoft][M]Query timeout expired", -2147217871,
        "[Microsoft][M]Query timeout expired");
}

void DriversTest::answers() {
    QFETCH(QString, played);
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
    QTEST(failure ? failure->number() : 0, "number");
    const QStringList events = takeEvents();
    if (failure) {
        QTEST(failure->description(), "description");
        return;
    }
    QCOMPARE(rows, (QStringList{"row 1", "row 2", "row 3"}));
    QVERIFY(events.contains(QStringLiteral("execute SET ROWCOUNT 5")));
    QVERIFY(events.contains(QStringLiteral("attribute 0 30")));  // the command's time-out
}

QTEST_GUILESS_MAIN(DriversTest)
#include "test_drivers.moc"

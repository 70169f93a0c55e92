#include "platform/ado/connection.h"
#include "platform/ado/datasources.h"
#include "platform/ado/recordset.h"
#include "scriptedserver.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ado;

class DataSourcesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void listsSources();
    void knowsTheDriver();
    void opensASource();

  private:
    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedServer> m_server;
};

void DataSourcesTest::initTestCase() {
    m_server = std::make_unique<ScriptedServer>();
    const QString path = m_folder.filePath(QStringLiteral("odbc.ini"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Sales]\nDriver=SQL Server\nServer=127.0.0.1\nPort=" + QByteArray::number(m_server->port()) +
               "\nUID=reader\nPWD=secret\n[B\xC3\xBC"
               "cher]\nDriver=SQL Server\nServer=127.0.0.1,1\n");
    file.close();
    qputenv("ODBCINI", QFile::encodeName(path));
}

void DataSourcesTest::listsSources() {
    const auto sources = dataSources();
    QVERIFY(sources);
    QStringList texts;
    for (const DataSource& source : *sources)
        texts.push_back(source.name + u'|' + source.driver);
    QCOMPARE(texts,
             (QStringList{QStringLiteral("Sales|SQL Server"), QStringLiteral("B\u00FCcher|SQL Server")}));
}

void DataSourcesTest::knowsTheDriver() {
    QVERIFY(driverPresent());
}

void DataSourcesTest::opensASource() {
    Connection connection;
    connection.Open(QStringLiteral("DSN=Sales;;Database=pubs"));
    QVERIFY(connection.ConnectionString().startsWith(
        QStringLiteral("DSN=Sales;;Database=pubs;SERVER=127.0.0.1;WSID=")));
    Recordset who;
    who.Open(QStringLiteral("who"), connection);
    const QStringList said = who.Fields(0).text().toString().split(u'|');
    QCOMPARE(said.at(0), QStringLiteral("reader"));
    QCOMPARE(said.at(1), QStringLiteral("secret"));
    QCOMPARE(said.last(), QStringLiteral("pubs"));
}

QTEST_GUILESS_MAIN(DataSourcesTest)
#include "test_datasources.moc"

#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "support/sampleserverprocess.h"

#include <QTest>

using namespace ado;

/// The data-access layer against a server that knows logins, databases and a catalog.
class SampleServerTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void refusedLogins_data();
    void refusedLogins();
    void refusedStatements_data();
    void refusedStatements();
    void values_data();
    void values();
    void rowLimitsHoldForOneStatement();
    void proceduresRunAlone();
    void fetchesWantedFields_data();
    void fetchesWantedFields();
    void statementsTimeOut();
    void theServerDies();

  private:
    QString stringFor(const QString& user, const QString& database) const;

    testsupport::SampleServerProcess m_server;
    Connection m_connection;
};

void SampleServerTest::initTestCase() {
    QVERIFY2(m_server.start(), qPrintable(m_server.errorText()));
    m_connection.Open(stringFor(QStringLiteral("clerk"), QStringLiteral("TypeSamples")));
}

QString SampleServerTest::stringFor(const QString& user, const QString& database) const {
    return QStringLiteral("driver={SQL Server};server=%1;uid=%2;pwd=%2;Database=%3")
        .arg(m_server.serverText(), user, database);
}

void SampleServerTest::refusedLogins_data() {
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("database");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<qint32>("nativeError");
    QTest::addColumn<QString>("said");
    const auto row = [](const char* name, const char* user, const char* database, qint32 number,
                        qint32 nativeError, const char* said) {
        QTest::newRow(name) << QString::fromLatin1(user) << QString::fromLatin1(database) << number
                            << nativeError << QString::fromLatin1(said);
    };
    row("unknown login", "nobody", "Workshop", -2147217843, 18456, "nobody");
    row("closed database", "clerk", "Payroll", -2147467259, 4060, "Payroll");
    row("unknown database", "clerk", "NoSuchDatabase", -2147467259, 4060, "NoSuchDatabase");
}

void SampleServerTest::refusedLogins() {
    QFETCH(QString, user);
    QFETCH(QString, database);
    QFETCH(QString, said);
    Connection connection;
    const auto failure = failureOf([&] { connection.Open(stringFor(user, database)); });
    QVERIFY(failure);
    QTEST(failure->number(), "number");
    QTEST(failure->nativeError(), "nativeError");
    QVERIFY2(failure->description().contains(said), qPrintable(failure->description()));
}

void SampleServerTest::refusedStatements_data() {
    QTest::addColumn<QString>("statement");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<qint32>("nativeError");
    const auto row = [](const char* statement, qint32 number, qint32 nativeError) {
        QTest::newRow(statement) << QString::fromLatin1(statement) << number << nativeError;
    };
    row("SELECT FROM", -2147217900, 156);
    row("SELECT * FROM NoSuchTable", -2147217865, 208);
    row("SELECT NoSuchColumn FROM AllTypes", -2147217900, 207);
    row("USE NoSuchDatabase", -2147217900, 911);
    row("USE Payroll", -2147217900, 916);
    row("sp_columns 'a'b'", -2147217900, 105);
}

void SampleServerTest::refusedStatements() {
    QFETCH(QString, statement);
    Recordset rows;
    const auto failure = failureOf([&] { rows.Open(statement, m_connection); });
    QVERIFY(failure);
    QTEST(failure->number(), "number");
    QTEST(failure->nativeError(), "nativeError");
}

void SampleServerTest::values_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("text");
    const auto row = [](int id, const char* column, const QString& text) {
        QTest::addRow("%d %s", id, column) << id << QString::fromLatin1(column) << text;
    };
    row(2, "ASmallInt", QStringLiteral("-32768"));
    row(2, "ADecimal", QStringLiteral("-99999999999999.9999"));
    row(2, "AWideDecimal", QStringLiteral("-9999999999999999999999999999.9999999999"));
    row(2, "AMoney", QStringLiteral("-922337203685477.5808"));
    row(2, "AFloat", QStringLiteral("-1.79E+308"));
    row(2, "ADateTime", QStringLiteral("1753-01-01 00:00:00"));
    row(2, "AChar", QStringLiteral("a         "));
    row(3, "ANumeric", QStringLiteral("9999999999999999999999999999"));
    row(3, "AReal", QStringLiteral("3.4E+38"));
    row(3, "ADateTime", QStringLiteral("9999-12-31 23:59:59.997"));
    row(3, "ASmallDate", QStringLiteral("2079-06-06 23:59:00"));
    row(3, "AVarChar", QString(8000, u'z'));
    row(3, "ANVarChar", QString(4000, u'\u03A9'));
    row(3, "AGuid", QStringLiteral("{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}"));
    row(4, "AText", QString());
    row(4, "ANText", QString());
    row(5, "AFloat", QStringLiteral("2.23E-308"));
    row(5, "ANVarChar", QStringLiteral("ends in  "));
    row(6, "AVarChar", QStringLiteral("na\u00EFve \u2013 \u201C\u20AC\u201D"));
    row(6, "ANText",
        QStringLiteral("\U0002070E\U00020731 rare characters, "
                       "\u0627\u0644\u0639\u0631\u0628\u064A\u0629, "
                       "\u05E2\u05D1\u05E8\u05D9\u05EA, \u0E44\u0E17\u0E22"));
    row(7, "AText", QStringLiteral("0123456789abcdef").repeated(8192));
    row(7, "ANText", QStringLiteral("L\u00E4nge \u00FCber alles \U0001F6B2 ").repeated(5000));
}

void SampleServerTest::values() {
    QFETCH(int, id);
    QFETCH(QString, column);
    // Alone it comes in a block where its kind allows, among all others in pieces.
    for (const QString& columns : {column, QStringLiteral("*")}) {
        Recordset rows;
        rows.Open(QStringLiteral("SELECT %1 FROM AllTypes WHERE Id = %2").arg(columns).arg(id), m_connection);
        QTEST(rows.Fields(column).text().toString(), "text");
    }
}

void SampleServerTest::rowLimitsHoldForOneStatement() {
    const auto count = [this](qint64 limit) {
        Recordset rows;
        rows.setMaxRecords(limit);
        rows.Open(QStringLiteral("[AllTypes]"), m_connection, CursorType::ForwardOnly, LockType::ReadOnly,
                  CommandType::Table);
        int seen = 0;
        for (; !rows.Eof(); rows.MoveNext())
            ++seen;
        return seen;
    };
    QCOMPARE(count(3), 3);
    QCOMPARE(count(0), 12);
    QCOMPARE(count(100), 12);
}

void SampleServerTest::proceduresRunAlone() {
    Recordset limited;
    limited.setMaxRecords(2);
    limited.Open(QStringLiteral("sp_columns 'AllTypes'"), m_connection);
    QCOMPARE(limited.Fields(QStringLiteral("COLUMN_NAME")).text(), QStringLiteral("Id"));
    QCOMPARE(limited.Fields(QStringLiteral("nullable")).toInteger(), 0);
}

void SampleServerTest::fetchesWantedFields_data() {
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QStringList>("fields");
    // The third is read in pieces, which have to be asked for from left to right.
    QTest::newRow("all") << QStringList() << QStringList{"One=1", "Two=2", "Three=3"};
    QTest::newRow("in bounds") << QStringList{"two"} << QStringList{"Two=2"};
    QTest::newRow("without bound, in another order")
        << QStringList{"THREE", "One"} << QStringList{"One=1", "Three=3"};
    QTest::newRow("one that is not there") << QStringList{"Two", "Four"} << QStringList{"Two=2"};
    QTest::newRow("none that is there") << QStringList{"Four"} << QStringList{"One=1", "Two=2", "Three=3"};
}

void SampleServerTest::fetchesWantedFields() {
    QFETCH(QStringList, wanted);
    Recordset rows;
    rows.setFields(wanted);
    rows.Open(QStringLiteral("SELECT 1 AS One, N'2' AS Two, CONVERT(ntext, N'3') AS Three"), m_connection);
    QStringList fields;
    for (int i = 0; i < rows.FieldCount(); ++i)
        fields += rows.Fields(i).Name() + u'=' + rows.Fields(i).text().toString();
    QTEST(fields, "fields");
    rows.MoveNext();
    QVERIFY(rows.Eof());
}

void SampleServerTest::statementsTimeOut() {
    m_connection.setCommandTimeout(1);
    Recordset rows;
    QCOMPARE(numberOf([&] { rows.Open(QStringLiteral("WAITFOR DELAY '00:01:00'"), m_connection); }),
             -2147217871);
    rows.Open(QStringLiteral("SELECT 1 AS one"), m_connection);
    QCOMPARE(rows.Fields(0).toInteger(), 1);
    m_connection.setCommandTimeout(30);
}

void SampleServerTest::theServerDies() {
    Recordset rows;
    rows.Open(QStringLiteral("SELECT a.ANText FROM AllTypes a, AllTypes b, AllTypes c ORDER BY a.Id"),
              m_connection);
    m_server.kill();
    const auto failure = failureOf([&] {
        while (!rows.Eof())
            rows.MoveNext();
    });
    QVERIFY(failure);
    QCOMPARE(failure->number(), -2147467259);
    Recordset later;
    QCOMPARE(numberOf([&] { later.Open(QStringLiteral("SELECT 1"), m_connection); }), -2147467259);
}

QTEST_GUILESS_MAIN(SampleServerTest)
#include "test_sampleserver.moc"

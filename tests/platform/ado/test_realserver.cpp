#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

#include <QTest>

using namespace ado;

/// Reads from any SQL Server whose connection string stands in TABLEWRIGHT_TEST_CONNECTION; changes nothing.
class RealServerTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void saysWhereItIs();
    void statements_data();
    void statements();
    void rowLimits();
    void refusals_data();
    void refusals();

  private:
    Connection m_connection;
};

void RealServerTest::initTestCase() {
    const QString text = qEnvironmentVariable("TABLEWRIGHT_TEST_CONNECTION");
    if (text.isEmpty()) QSKIP("TABLEWRIGHT_TEST_CONNECTION holds no connection string");
    const auto failure = failureOf([&] { m_connection.Open(text); });
    QVERIFY2(!failure, failure ? failure->what() : "");
}

void RealServerTest::saysWhereItIs() {
    QVERIFY(m_connection.ConnectionString().contains(QStringLiteral("SERVER="), Qt::CaseInsensitive));
    QVERIFY(m_connection.ConnectionString().contains(QStringLiteral("WSID="), Qt::CaseInsensitive));
}

void RealServerTest::statements_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* expression, const QString& text) {
        QTest::newRow(expression) << QString::fromUtf8(expression) << text;
    };
    row("CONVERT(bit, 1)", QStringLiteral("True"));
    row("-2147483648", QStringLiteral("-2147483648"));
    row("CONVERT(decimal(28, 10), '-123456789012345678.0987654321')",
        QStringLiteral("-123456789012345678.0987654321"));
    row("CONVERT(money, -922337203685477.5808)", QStringLiteral("-922337203685477.5808"));
    row("CONVERT(float, 0.1)", QStringLiteral("0.1"));
    row("CONVERT(real, 0.1)", QStringLiteral("0.1"));
    row("CONVERT(datetime, '20000101 01:01:01.003')", QStringLiteral("2000-01-01 01:01:01.003"));
    row("CONVERT(char(3), 'a')", QStringLiteral("a  "));
    row("''", QString());
    row("N'\u0416\u6F22\U0001F600'", QStringLiteral("\u0416\u6F22\U0001F600"));
    row("CONVERT(uniqueidentifier, '03020100-0504-0706-0809-0a0b0c0d0eff')",
        QStringLiteral("{03020100-0504-0706-0809-0A0B0C0D0EFF}"));
}

void RealServerTest::statements() {
    QFETCH(QString, expression);
    Recordset rows;
    rows.Open(QStringLiteral("SELECT ") + expression + QStringLiteral(" AS [a b]"), m_connection);
    QTEST(rows.Fields(QStringLiteral("A B")).text().toString(), "text");
    rows.MoveNext();
    QVERIFY(rows.Eof());
}

void RealServerTest::rowLimits() {
    const auto count = [this](qint64 limit) {
        Recordset rows;
        rows.setMaxRecords(limit);
        rows.Open(QStringLiteral("master..sysobjects"), m_connection, CursorType::ForwardOnly,
                  LockType::ReadOnly, CommandType::Table);
        int seen = 0;
        for (; !rows.Eof(); rows.MoveNext())
            ++seen;
        return seen;
    };
    QCOMPARE(count(5), 5);
    QVERIFY(count(0) > 5);
}

void RealServerTest::refusals_data() {
    QTest::addColumn<QString>("statement");
    QTest::addColumn<qint32>("number");
    QTest::newRow("syntax") << QStringLiteral("SELEC 1") << -2147217900;
    QTest::newRow("object") << QStringLiteral("SELECT * FROM no_such_table_anywhere") << -2147217865;
    QTest::newRow("column") << QStringLiteral("SELECT no_such_column FROM sysobjects") << -2147217900;
}

void RealServerTest::refusals() {
    QFETCH(QString, statement);
    Recordset rows;
    QTEST(numberOf([&] { rows.Open(statement, m_connection); }), "number");
}

QTEST_GUILESS_MAIN(RealServerTest)
#include "test_realserver.moc"

#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTest>

using namespace ado;

/// The data-access layer against a server that knows logins, databases and a catalog.
class SampleServerTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void refusedLogins_data();
    void refusedLogins();
    void blocksAndPiecesAgree();
    void fetchesWantedFields_data();
    void fetchesWantedFields();

  private:
    QString stringFor(const QString& user, const QString& database) const;

    testsupport::RunningSampleServer m_server;
    Connection m_connection;
};

void SampleServerTest::initTestCase() {
    m_connection.Open(stringFor(QStringLiteral("clerk"), QStringLiteral("TypeSamples")));
}

QString SampleServerTest::stringFor(const QString& user, const QString& database) const {
    return m_server.connectionString(user, user) + QStringLiteral(";Database=") + database;
}

void SampleServerTest::refusedLogins_data() {
    const testsupport::Table<QString, QString, qint32, qint32, QString> row("user", "database", "number",
                                                                            "nativeError", "said");
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

/// Alone a column comes in a block where its kind allows, among all others in pieces.
void SampleServerTest::blocksAndPiecesAgree() {
    const auto read = [this](const QString& columns, const QString& wanted) {
        Recordset rows;
        rows.Open(QStringLiteral("SELECT %1 FROM AllTypes ORDER BY Id").arg(columns), m_connection);
        QStringList texts;
        for (; !rows.Eof(); rows.MoveNext()) {
            const Field& field = rows.Fields(wanted);
            texts +=
                field.isNull() || field.Type() == FieldType::Binary ? QString() : field.text().toString();
        }
        return texts;
    };
    Recordset all;
    all.Open(QStringLiteral("SELECT * FROM AllTypes"), m_connection);
    QVERIFY(all.FieldCount() > 20);
    for (int i = 0; i < all.FieldCount(); ++i) {
        const QString name = all.Fields(i).Name();
        QCOMPARE(read(name, name), read(QStringLiteral("*"), name));
    }
}

void SampleServerTest::fetchesWantedFields_data() {
    const testsupport::Table<QStringList, QStringList> row("wanted", "fields");
    // The third is read in pieces, which have to be asked for from left to right.
    row("all", {}, {"One=1", "Two=2", "Three=3"});
    row("in bounds", {"two"}, {"Two=2"});
    row("without bound, in another order", {"THREE", "One"}, {"One=1", "Three=3"});
    row("one that is not there", {"Two", "Four"}, {"Two=2"});
    row("none that is there", {"Four"}, {"One=1", "Two=2", "Three=3"});
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

QTEST_GUILESS_MAIN(SampleServerTest)
#include "test_sampleserver.moc"

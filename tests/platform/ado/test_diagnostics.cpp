#include "platform/ado/diagnostics.h"

#include <QTest>

using namespace ado;

using Records = std::vector<DiagnosticRecord>;
Q_DECLARE_METATYPE(Records)

class DiagnosticsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void numbers_data();
    void numbers();
};

static DiagnosticRecord record(const char* state, qint32 nativeError) {
    return {QString::fromLatin1(state), nativeError, QStringLiteral("[SQL Server]%1").arg(nativeError)};
}

// As FreeTDS 1.3.17 gave them.
void DiagnosticsTest::numbers_data() {
    QTest::addColumn<bool>("opening");
    QTest::addColumn<Records>("records");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<qint32>("decidedBy");
    const auto opening = [](const char* name, Records records, qint32 number, qint32 decidedBy) {
        QTest::newRow(name) << true << records << number << decidedBy;
    };
    const auto running = [](const char* name, Records records, qint32 number, qint32 decidedBy) {
        QTest::newRow(name) << false << records << number << decidedBy;
    };
    const DiagnosticRecord last = record("08001", 0);
    opening("login refused", {record("42000", 18456), last}, -2147217843, 18456);
    opening("database refused", {record("42000", 18456), record("42000", 4060), last}, -2147467259, 4060);
    opening("default database refused", {record("42000", 18456), record("42000", 4064), last}, -2147467259,
            4064);
    opening("database unknown", {record("08004", 911), last}, -2147467259, 911);
    opening("no user of the database", {record("42000", 18456), record("08004", 916), last}, -2147467259,
            916);
    opening("nobody listens", {record("08S01", 20009), record("08S01", 20009), last}, -2147467259, 20009);
    opening("unknown host", {record("08S01", 20009), last, record("01000", 20013)}, -2147467259, 20013);
    opening("server falls silent", {record("HYT00", 0), last}, -2147217871, 0);
    opening("server hangs up", {last, record("01000", 20017), record("01000", 20002)}, -2147467259, 20017);
    opening("no driver", {record("01000", 0)}, -2147467259, 0);
    opening("no ticket", {last, record("01000", 20002)}, -2147467259, 0);
    opening("another refusal", {record("01000", 5701), record("42000", 17142), last}, -2147467259, 17142);
    opening("nothing said", {}, -2147467259, 0);
    running("syntax", {record("42000", 102)}, -2147217900, 102);
    running("no such column", {record("42S22", 207)}, -2147217900, 207);
    running("no such object", {record("42S02", 208)}, -2147217865, 208);
    running("no such object, ODBC 2", {record("S0002", 208)}, -2147217865, 208);
    running("no permission on an object", {record("42000", 229)}, -2147217911, 229);
    running("no permission on a column", {record("42000", 230)}, -2147217911, 230);
    running("database refused by USE", {record("08004", 916)}, -2147217900, 916);
    running("time-out", {record("HYT00", 0), record("HY008", 0)}, -2147217871, 0);
    running("time-out of the library", {record("01000", 20003)}, -2147217871, 20003);
    running("link lost", {record("01000", 20017)}, -2147467259, 20017);
    running("link lost before", {record("08S01", 0)}, -2147467259, 0);
    running("warning before the error", {record("01000", 0), record("22012", 8134)}, -2147217900, 8134);
    running("nothing said", {}, -2147217900, 0);
}

void DiagnosticsTest::numbers() {
    QFETCH(bool, opening);
    QFETCH(Records, records);
    QFETCH(qint32, decidedBy);
    const Error error = errorFrom(records, opening ? Phase::Opening : Phase::Statement);
    QTEST(error.number(), "number");
    QCOMPARE(error.nativeError(), decidedBy);
    if (!records.empty()) QVERIFY(error.description().endsWith(QStringLiteral("]%1").arg(decidedBy)));
}

QTEST_GUILESS_MAIN(DiagnosticsTest)
#include "test_diagnostics.moc"

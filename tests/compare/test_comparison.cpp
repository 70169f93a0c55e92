#include "pairwise.h"
#include "platform/controls/listitems.h"
#include "randomschemas.h"
#include "support/rowtexts.h"
#include "support/table.h"

#include <QTest>

using controls::ListItems;
using testsupport::headersOf;
using testsupport::rowsOf;
using tw::ComparedKinds;

namespace {

const QString AllTables = QStringLiteral("(All Tables)");

/// Logs what it is told.
class LoggingProgress : public tw::ComparisonProgress {
  public:
    LoggingProgress(Log& log, const ListItems& results1, const ListItems& results2)
        : m_log(log), m_results1(results1), m_results2(results2) {}

    bool isCancelled = false;

    void begin() override { m_log += QStringLiteral("begin"); }
    void SetNumberNeed(qint32 items) override { m_log += QStringLiteral("need %1").arg(items); }
    void InitFormLables(const QString& one, const QString& two) override {
        m_log += QStringLiteral("captions %1, %2").arg(one, two);
    }
    void UpdateForm(tw::ComparedState state, const QString& item) override {
        m_log += updateText(static_cast<int>(state), item, m_results1.count(), m_results2.count());
    }
    void cancel() override {
        m_log += QStringLiteral("cancel");
        isCancelled = true;
    }

  private:
    Log& m_log;
    const ListItems& m_results1;
    const ListItems& m_results2;
};

/// One comparison of two made-up systems.
struct Trial {
    FakeSchema schema1;
    FakeSchema schema2;
    QString table1 = AllTables;
    QString table2 = AllTables;
    ComparedKinds kinds;

    int cancelAt = -1;   ///< the yield in which the button is pressed
    int loseAfter = -1;  ///< readings of system 1 that still succeed
    int yields = 0;
    qsizetype rows1AtCancel = -1;
    qsizetype rows2AtCancel = -1;

    Outcome run() {
        Outcome outcome;
        ListItems results1;
        ListItems results2;
        FakeSystem system1(schema1, table1, 1, outcome.log);
        FakeSystem system2(schema2, table2, 2, outcome.log);
        if (loseAfter >= 0) system1.loseAfter(loseAfter);
        LoggingProgress progress(outcome.log, results1, results2);
        const auto yield = [&] {
            if (yields++ != cancelAt) return;
            progress.isCancelled = true;
            rows1AtCancel = results1.count();
            rows2AtCancel = results2.count();
        };
        tw::Comparison comparison({system1, results1, QStringLiteral("one")},
                                  {system2, results2, QStringLiteral("two")}, kinds, progress, yield,
                                  [&] { return progress.isCancelled; });
        comparison.run();
        outcome.rows1 = rowsOf(results1);
        outcome.rows2 = rowsOf(results2);
        outcome.headers = headersOf(results1) + headersOf(results2);
        return outcome;
    }
};

Trial randomTrial(quint32 seed, bool allTables) {
    QRandomGenerator random(seed);
    Trial trial;
    trial.schema1 = randomSchema(random);
    // A copy at times, so that much matches.
    trial.schema2 = random.bounded(4) == 0 ? trial.schema1 : randomSchema(random);
    trial.kinds = {random.bounded(2) == 0, random.bounded(2) == 0, random.bounded(2) == 0};
    if (allTables) {
        trial.table1 = random.bounded(2) == 0 ? AllTables : AllTables.toUpper();
        return trial;
    }
    const auto someTable = [&](const FakeSchema& schema) {
        return schema.tables.empty() ? QString() : schema.tables.back().name;
    };
    trial.table1 = someTable(trial.schema1);
    trial.table2 = someTable(trial.schema2);
    return trial;
}

/// Where two lists part, in words; empty when they are equal.
QString difference(const QStringList& actual, const QStringList& expected) {
    for (qsizetype i = 0; i < qMax(actual.size(), expected.size()); ++i) {
        if (actual.value(i) == expected.value(i)) continue;
        return QStringLiteral("line %1: '%2' instead of '%3'")
            .arg(i)
            .arg(actual.value(i, QStringLiteral("nothing")), expected.value(i, QStringLiteral("nothing")));
    }
    return actual.size() == expected.size() ? QString() : QStringLiteral("an empty line at the end");
}

bool isHeading(const QString& row) {
    return row.at(0) < u'5';
}

/// The headings that a routine adds before it first yields.
QStringList firstHeadings(const QStringList& rows, bool allTables) {
    QStringList headings;
    for (const QString& row : rows) {
        const bool table = row.startsWith(QStringLiteral("4 Table: "));
        const bool none = row.startsWith(QStringLiteral("4 Table: None defined"));
        if (isHeading(row) && (!table || none || !allTables)) headings += row;
    }
    return headings;
}

}  // namespace

/// The engine on made-up schemas, against a plain pairwise comparison.
class TestComparison : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void equalsPairwise_data();
    void equalsPairwise();
    void yieldsForRowsAndPairs();
    void cancels_data();
    void cancels();
    void losesConnection_data();
    void losesConnection();
};

void TestComparison::equalsPairwise_data() {
    const testsupport::Table<bool> row("allTables");
    row("all tables", true);
    row("one table with one table", false);
}

void TestComparison::equalsPairwise() {
    QFETCH(bool, allTables);
    for (quint32 seed = 0; seed < 1000; ++seed) {
        Trial trial = randomTrial(seed, allTables);
        const Outcome expected =
            comparePairwise(trial.schema1, trial.schema2, trial.table1, trial.table2, trial.kinds);
        const Outcome actual = trial.run();
        if (actual == expected) continue;
        QFAIL(qUtf8Printable(QStringLiteral("seed %1; list 1: %2; list 2: %3; log: %4")
                                 .arg(seed)
                                 .arg(difference(actual.rows1, expected.rows1),
                                      difference(actual.rows2, expected.rows2),
                                      difference(actual.log, expected.log))));
    }
}

/// Three equal columns against two: six pairs and a row on each side, besides the pair of tables.
void TestComparison::yieldsForRowsAndPairs() {
    const FakeSchema::Column column{"Id", "Integer", "", ""};
    Trial trial;
    trial.schema1.tables = {{"T", {column, column, column}}};
    trial.schema2.tables = {{"T", {column, column}}};
    const Outcome outcome = trial.run();
    QCOMPARE(outcome.rows1.size(), 1 + 6);
    QCOMPARE(outcome.rows2.size(), 1 + 6);
    QVERIFY2(trial.yields >= (3 + 6) + (2 + 6) + 2, qPrintable(QString::number(trial.yields)));
}

void TestComparison::cancels_data() {
    equalsPairwise_data();
}

/// In every single yield: what stands stays, and of what would follow only the headings are added that the
/// routines still to come begin with.
void TestComparison::cancels() {
    QFETCH(bool, allTables);
    for (quint32 seed = 0; seed < 40; ++seed) {
        Trial whole = randomTrial(seed, allTables);
        const Outcome full = whole.run();
        for (int cancelAt = 0; cancelAt < whole.yields; ++cancelAt) {
            Trial trial = randomTrial(seed, allTables);
            trial.cancelAt = cancelAt;
            const Outcome partial = trial.run();
            const QString where = QStringLiteral("seed %1, yield %2").arg(seed).arg(cancelAt);

            QStringList updates = partial.log.filter(QStringLiteral("update "));
            const QStringList allUpdates = full.log.filter(QStringLiteral("update "));
            QVERIFY2(updates == allUpdates.mid(0, updates.size()), qUtf8Printable(where));
            QVERIFY2(updates.filter(QStringLiteral("Finished")).isEmpty(), qUtf8Printable(where));
            // No routine still to come gets past its first test.
            QVERIFY2(trial.yields <= cancelAt + 1 + 4, qUtf8Printable(where));
            const auto check = [&](const QStringList& rows, qsizetype atCancel, const QStringList& all) {
                if (rows.mid(0, atCancel) != all.mid(0, atCancel)) return false;
                // Every row that is added later is a heading, and stands in the whole list in this order.
                qsizetype next = atCancel;
                for (const QString& row : rows.mid(atCancel)) {
                    next = all.indexOf(row, next) + 1;
                    if (!isHeading(row) || next == 0) return false;
                }
                return true;
            };
            QVERIFY2(check(partial.rows1, trial.rows1AtCancel, full.rows1), qUtf8Printable(where));
            QVERIFY2(check(partial.rows2, trial.rows2AtCancel, full.rows2), qUtf8Printable(where));
            QVERIFY2(firstHeadings(partial.rows1, allTables) == firstHeadings(full.rows1, allTables),
                     qUtf8Printable(where));
            QVERIFY2(firstHeadings(partial.rows2, allTables) == firstHeadings(full.rows2, allTables),
                     qUtf8Printable(where));
        }
    }
}

void TestComparison::losesConnection_data() {
    const testsupport::Table<bool, int, QStringList, QStringList> row("allTables", "readings", "log", "rows");

    const QString constraints = QStringLiteral("1 Constraints|Constraint Table|Constraint Check");
    const QString table = QStringLiteral("4 Table: T|Data type|Nullable|Foreign key");
    const QStringList setUp{"begin", "need 1", "captions one, two"};
    row("at once, with one table", false, 0,
        QStringList{"read 1 details of db1"} + setUp + QStringList{"cancel"}, {constraints, table});
    row("before the tables are known", true, 1,
        QStringList{"read 1 details of db1", "read 2 details of db2", "read 1 tables of db1"} + setUp +
            QStringList{"cancel"},
        {constraints, "4 Table: None defined|Data type|Nullable|Foreign key"});
    row("at the second of three tables", true, 3,
        {"read 1 details of db1", "read 2 details of db2", "read 1 tables of db1", "read 2 tables of db2",
         "begin", "need 20", "captions one, two", "read 1 table T", "read 2 table T",
         "update 1 'Tablew: T' at 3, 2", "update 2 'Table: T' at 3, 3", "read 1 table U", "cancel"},
        {constraints, table, "5 Id|Integer", "4 Table: U|Data type|Nullable|Foreign key"});
}

/// Nothing is read any more, and no box is shown a second time.
void TestComparison::losesConnection() {
    QFETCH(bool, allTables);
    QFETCH(int, readings);
    const FakeSchema::FakeTable first{"T", {{"Id", "Integer", "", ""}}};
    Trial trial;
    trial.schema1.tables = {first, {"U", {}}, {"V", {}}};
    trial.schema2.tables = {first};
    trial.kinds.constraints = true;
    if (!allTables) trial.table1 = trial.table2 = QStringLiteral("T");
    trial.loseAfter = readings;
    const Outcome outcome = trial.run();
    QTEST(outcome.log, "log");
    QTEST(outcome.rows1, "rows");
}

QTEST_GUILESS_MAIN(TestComparison)
#include "test_comparison.moc"

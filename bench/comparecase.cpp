#include "comparecase.h"

#include "bareloop.h"
#include "compare/comparison.h"
#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "figures.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/doevents.h"
#include "support/sampleserverprocess.h"

#include <QTextStream>

#include <ctime>

namespace bench {

namespace {

const tw::ComparedKinds AllKinds{true, true, true};

class NoProgress : public tw::ComparisonProgress {
  public:
    int unmatched = 0;

    void begin() override {}
    void SetNumberNeed(qint32) override {}
    void InitFormLables(const QString&, const QString&) override {}
    void UpdateForm(tw::ComparedState state, const QString&) override {
        if (state == tw::ComparedState::Unmatched) ++unmatched;
    }
    void cancel() override {}
};

/// Rows of both result lists; `unmatched` becomes the number of those without a counterpart.
int compare(tw::SchemaReader& system1, tw::SchemaReader& system2, int* unmatched) {
    controls::ListItems results1;
    controls::ListItems results2;
    NoProgress progress;
    tw::Comparison({system1, results1, {}}, {system2, results2, {}}, AllKinds, progress, desktop::DoEvents,
                   [] { return false; })
        .run();
    *unmatched = progress.unmatched;
    return results1.count() + results2.count();
}

/// The statements of a comparison on one database of two, in its order.
void readSchemasBare(const QString& connectionString, const QStringList& databases) {
    const BareEnvironment environment;
    std::vector<std::unique_ptr<BareConnection>> systems;
    QStringList tables;
    for (const QString& database : databases) {
        systems.push_back(std::make_unique<BareConnection>(
            environment, tw::catalog::inDatabase(connectionString, database)));
        systems.back()->readColumns(tw::catalog::checkConstraints(), {1, 2, 3});
        systems.back()->readColumns(tw::catalog::indexColumns(), {1, 2, 3});
        systems.back()->readColumns(tw::catalog::foreignKeys(), {1, 2, 3, 4, 5});
        qint64 rows = 0;
        tables = systems.back()->firstColumn(tw::catalog::tableList(), true, &rows);
    }
    for (const QString& table : tables) {
        for (const std::unique_ptr<BareConnection>& system : systems) {
            // COLUMN_NAME, TYPE_NAME, LENGTH, NULLABLE
            system->readColumns(tw::catalog::columnList(table), {4, 6, 8, 11});
            system->readColumns(tw::catalog::primaryKeyColumns(table), {1});
            system->readColumns(tw::catalog::foreignKeyColumns(table), {1, 2, 3});
        }
    }
}

/// A system whose lists are ready: reading it costs copying them, which is counted apart.
class ReadySystem : public tw::SchemaReader {
  public:
    ReadySystem(int rows, int number) : m_rows(rows), m_number(number) {}

    double secondsReading = 0;

    QString getDatabase() const override { return {}; }
    QString getTable() const override { return QStringLiteral("T"); }
    void setTable(const QString&) override {}
    bool FillCbTable(controls::ComboItems&, const QString&) override { return true; }
    void FillLvTblDef(controls::ListItems& list, const QString&, const QString&) override { fill(list, 4); }
    QString FillLvDBDetail(controls::ListItems& list, const QString&) override {
        fill(list, 11);
        return {};
    }
    void reportLossOnce() override {}
    bool tellLostConnection() override { return false; }

  private:
    /// One row in ten differs between the systems.
    void fill(controls::ListItems& list, int columns) {
        secondsReading += secondsOf([&] {
            for (int row = 0; row < m_rows; ++row) {
                const QString name = QStringLiteral("Name%1_%2").arg(row).arg(row % 10 == 0 ? m_number : 0);
                const int item = list.addItem(name);
                for (int column = 1; column < columns; ++column)
                    list.setSubItem(item, column, name);
            }
        });
    }

    int m_rows;
    int m_number;
};

QString figure(double number, int digits) {
    return QString::number(number, 'f', digits);
}

}  // namespace

bool runCompareCase(int tables, int columns, int runs) {
    const QString size = QStringLiteral("%1,%2").arg(tables).arg(columns);
    testsupport::SampleServerProcess server;
    if (!server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--large"), size,
                       QStringLiteral("--large"), size},
                      120000)) {
        QTextStream(stderr) << "The sample server did not start: " << server.errorText() << '\n';
        return false;
    }
    const QString connectionString =
        QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(server.serverText());
    const QStringList databases{QStringLiteral("Large"), QStringLiteral("Large2")};

    bool complete = true;
    const auto ours = [&] {
        const auto pool = std::make_shared<tw::ConnectionPool>();
        tw::DBConnection system1(pool);
        tw::DBConnection system2(pool);
        for (tw::DBConnection* system : {&system1, &system2}) {
            system->setConnectionString(connectionString);
            system->setDatabase(databases[system == &system1 ? 0 : 1]);
            system->setTable(QStringLiteral("(All Tables)"));
        }
        int unmatched = 0;
        const int rows = compare(system1, system2, &unmatched);
        complete = rows >= 2 * tables * (1 + columns) && complete;
    };
    const PeakOfMemory peak;
    ours();
    const double peakBytes = peak.bytes();
    const PairedRuns pairs = measurePairs(runs, ours, [&] { readSchemasBare(connectionString, databases); });
    printRatio(QStringLiteral("comparison of %1 tables of %2 columns").arg(tables).arg(columns), pairs);
    QTextStream(stdout) << "  for a table: " << figure(spreadOf(pairs.ours).median * 1000 / tables, 3)
                        << " ms (fastest run " << figure(spreadOf(pairs.ours).minimum * 1000 / tables, 3)
                        << ")"
                        << "; peak of memory " << figure(peakBytes / 1024 / 1024, 1) << " MiB\n";
    if (!complete) QTextStream(stderr) << "The results are not complete.\n";
    return complete;
}

void runEngineCase(int rows) {
    ReadySystem system1(rows, 1);
    ReadySystem system2(rows, 2);
    int unmatched = 0;
    int results = 0;
    const PeakOfMemory peak;
    const std::clock_t start = std::clock();
    const double seconds = secondsOf([&] { results = compare(system1, system2, &unmatched); });
    const double processor = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    const double reading = system1.secondsReading + system2.secondsReading;
    QTextStream(stdout) << "engine alone, " << rows << " rows a side of each kind and columns of one table: "
                        << figure(seconds - reading, 2)
                        << " s (processor, with the filling: " << figure(processor, 2) << " s), besides "
                        << figure(reading, 2) << " s for filling the lists; " << results << " result rows, "
                        << unmatched << " unmatched; peak of memory " << figure(peak.bytes() / 1024 / 1024, 1)
                        << " MiB\n";
}

}  // namespace bench

#include "enginecase.h"

#include "comparison.h"
#include "dbaccess/schemareader.h"
#include "figures.h"

namespace bench {

namespace {

/// A system whose lists are ready: reading it costs copying them, which is counted apart.
class ReadySystem : public tw::SchemaReader {
  public:
    ReadySystem(qint64 rows, int number) : m_rows(rows), m_number(number) {}

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
    void setFollower(tw::RoutineFollower) override {}
    bool tellLostConnection() override { return false; }
    void expect(const QString&, const tw::ExpectedReading&) override {}
    void expectNothing() override {}

  private:
    /// One row in ten differs between the systems.
    void fill(controls::ListItems& list, int columns) {
        secondsReading += secondsOf([&] {
            for (qint64 row = 0; row < m_rows; ++row) {
                const QString name = QStringLiteral("Name%1_%2").arg(row).arg(row % 10 == 0 ? m_number : 0);
                const int item = list.addItem(name);
                for (int column = 1; column < columns; ++column)
                    list.setSubItem(item, column, name);
            }
        });
    }

    qint64 m_rows;
    int m_number;
};

/// Milliseconds of a comparison without the reading; `complete` becomes false when it did not find what
/// differs: a tenth of each kind, on both sides.
double compareReady(qint64 rows, bool allKinds, std::unique_ptr<Compared>& compared, bool& complete) {
    ReadySystem system1(rows, 1);
    ReadySystem system2(rows, 2);
    const double seconds = secondsOf([&] { compared = compareSystems(system1, system2, allKinds); });
    complete = complete && compared->unmatched == 2 * (allKinds ? 4 : 1) * ((rows + 9) / 10);
    return (seconds - system1.secondsReading - system2.secondsReading) * 1000;
}

}  // namespace

Result runEngineCase(const Request& request) {
    const qint64 rows = request.measures[0];
    Result result;
    result.scale = QStringLiteral("%1 rows a side of each kind").arg(rows);
    result.complete = true;
    std::unique_ptr<Compared> compared;
    const double columns = compareReady(rows, false, compared, result.complete);
    compared.reset();
    const PeakOfMemory peak;
    const double allKinds = compareReady(rows, true, compared, result.complete);
    result.memory = Memory{peak.bytes(), 0, static_cast<double>(compared->units()) * sizeof(char16_t)};
    const QString milliseconds = QStringLiteral("ms");
    result.figures = {{QStringLiteral("comparing columns, lists ready"), columns, milliseconds},
                      {QStringLiteral("comparing all four kinds, lists ready"), allKinds, milliseconds}};
    return result;
}

}  // namespace bench

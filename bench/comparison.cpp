#include "comparison.h"

#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "listtexts.h"
#include "platform/desktop/doevents.h"

namespace bench {

namespace {

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

}  // namespace

qint64 Compared::units() const {
    return unitsOf(results1, results1.headerCount()) + unitsOf(results2, results2.headerCount());
}

std::unique_ptr<Compared> compareSystems(tw::SchemaReader& system1, tw::SchemaReader& system2,
                                         bool allKinds) {
    auto compared = std::make_unique<Compared>();
    NoProgress progress;
    tw::Comparison({system1, compared->results1, {}}, {system2, compared->results2, {}},
                   {allKinds, allKinds, allKinds}, progress, desktop::DoEvents, [] { return false; })
        .run();
    compared->unmatched = progress.unmatched;
    return compared;
}

QStringList comparedDatabases() {
    return {QStringLiteral("Large"), QStringLiteral("Large2")};
}

QStringList comparedDatabasesOptions(qint64 tables, qint64 columns) {
    const QStringList one{QStringLiteral("--large"), QStringLiteral("%1,%2").arg(tables).arg(columns)};
    return one + one;
}

std::unique_ptr<Compared> compareDatabases(const QString& connectionString) {
    const auto pool = std::make_shared<tw::ConnectionPool>();
    tw::DBConnection system1(pool);
    tw::DBConnection system2(pool);
    for (tw::DBConnection* system : {&system1, &system2}) {
        system->setConnectionString(connectionString);
        system->setDatabase(comparedDatabases()[system == &system1 ? 0 : 1]);
        system->setTable(QStringLiteral("(All Tables)"));
    }
    return compareSystems(system1, system2);
}

}  // namespace bench

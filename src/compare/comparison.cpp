#include "compare/comparison.h"

#include "compare/sidecomparison.h"
#include "dbaccess/failingstep.h"
#include "dbaccess/schemareader.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"

#include <QHash>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>

namespace tw {

namespace {

/// Item data of a table that the other system has too.
constexpr qint32 Marked = 1;

/// A kind of objects that a database's details list, and how its results are headed and told of.
struct DetailKind {
    QStringList heading;  ///< its text and the captions of the sub-items below
    Comparison::Icon icon;
    QString progressText;
    ComparedItems (*itemsOf)(const controls::ListItems& details);
};

const DetailKind Indexes{
    {QStringLiteral("Indexes"), QStringLiteral("Index Table"), QStringLiteral("Index Column")},
    Comparison::Index,
    QStringLiteral("Indexes"),
    indexesOf};
const DetailKind Constraints{
    {QStringLiteral("Constraints"), QStringLiteral("Constraint Table"), QStringLiteral("Constraint Check")},
    Comparison::Constraint,
    QStringLiteral("Constraints"),
    constraintsOf};
const DetailKind ForeignKeys{
    {QStringLiteral("Foreign Keys"), QStringLiteral("Foreign Table"), QStringLiteral("Foreign Column"),
     QStringLiteral("Reference Table"), QStringLiteral("Reference Column")},
    Comparison::ForeignKey,
    QStringLiteral("Foreign keys"),
    foreignKeysOf};

QStringList tableHeading(const QString& text) {
    return {text, QStringLiteral("Data type"), QStringLiteral("Nullable"), QStringLiteral("Foreign key")};
}

/// Half of a number, a half itself to the even neighbour.
qint32 roundedHalf(qint32 number) {
    const qint32 below = number / 2;
    return number % 2 == 0 || below % 2 == 0 ? below : below + 1;
}

}  // namespace

class Comparison::Run {
  public:
    Run(const ComparedSystem& system1, const ComparedSystem& system2, ComparedKinds kinds,
        ComparisonProgress& progress, std::function<void()> yield, std::function<bool()> cancelled)
        : m_side1{system1, cbTable1, ListView1, 1},
          m_side2{system2, cbTable2, ListView2, 2},
          m_kinds(kinds),
          m_progress(progress),
          m_yield(std::move(yield)),
          m_cancelled(std::move(cancelled)) {}

    void run();
    Completeness completeness() const {
        if (m_connectionLost) return Completeness::LineLost;
        if (!m_finished) return Completeness::Cancelled;
        return m_unread.isEmpty() ? Completeness::Complete : Completeness::PartsUnread;
    }
    const QStringList& unread() const { return m_unread; }

  private:
    /// A system and the lists that its catalog is read into.
    struct Side {
        ComparedSystem system;
        controls::ComboItems& tables;
        controls::ListItems& rows;

        int number;

        SchemaReader& reader() const { return system.connection; }
        QString table() const { return system.connection.getTable(); }
        QString database() const { return system.connection.getDatabase(); }
    };

    bool isCancelled() const { return m_connectionLost || m_cancelled(); }
    /// Yields; false when the comparison is cancelled then.
    bool goOn() {
        m_yield();
        return !isCancelled();
    }
    /// A failure that comes with every table would keep the user from anything but closing message boxes.
    bool isNews(const QString& procedure, const platform::RuntimeError& failure) {
        ++m_failures;
        const auto words = std::tuple(procedure, failure.number(), failure.description());
        return m_told.insert(words).second;
    }
    bool comparesAllTables() const { return m_side1.table().toUpper() == QStringLiteral("(ALL TABLES)"); }
    template <class Step>
    void read(Side& side, const QString& what, Step&& step);
    void readDetails(Side& side);
    void readTables(Side& side);
    void expectDefinitions();
    void setUpProgress();
    void compareKind(const DetailKind& kind);
    bool compareBothSides(const ComparedItems& items1, const ComparedItems& items2, const SideReport& report1,
                          const SideReport& report2);
    void compareAllTables();
    bool compareTablesOfBoth();
    bool compareUnmarked(Side& side, Side& other);
    bool compareOneTable();
    void beginTable(Side& side);

    controls::ComboItems cbTable1;
    controls::ComboItems cbTable2;
    controls::ListItems ListView1;  ///< a database's details, then the columns of one table after the other
    controls::ListItems ListView2;
    Side m_side1;
    Side m_side2;
    ComparedKinds m_kinds;
    ComparisonProgress& m_progress;
    std::function<void()> m_yield;
    std::function<bool()> m_cancelled;
    std::set<std::tuple<QString, qint32, QString>> m_told;  ///< failures
    int m_failures = 0;
    QStringList m_unread;
    bool m_progressSetUp = false;
    bool m_connectionLost = false;
    bool m_finished = false;
};

void Comparison::Run::run() {
    const auto end = qScopeGuard([this] {
        for (const Side* side : {&m_side1, &m_side2}) {
            side->reader().setFollower({});
            side->reader().expectNothing();
        }
    });
    for (const Side* side : {&m_side1, &m_side2}) {
        side->reader().setFollower({[this] { return goOn(); },
                                    [this](const QString& procedure, const platform::RuntimeError& failure) {
                                        return isNews(procedure, failure);
                                    }});
        side->system.results.addHeader(QStringLiteral("Names"));
        for (int i = 0; i < 4; ++i)
            side->system.results.addHeader(QStringLiteral("Attribute"));
    }
    const bool allTables = comparesAllTables();
    for (const Side* side : {&m_side1, &m_side2})
        side->reader().expect(side->database(), {m_kinds.any(), allTables});
    for (Side* side : {&m_side1, &m_side2})
        if (m_kinds.any()) readDetails(*side);
    for (Side* side : {&m_side1, &m_side2})
        if (allTables) readTables(*side);
    if (!isCancelled()) expectDefinitions();
    setUpProgress();
    // Each goes up to its first test even when the one before was cancelled: the headings are always there.
    if (m_kinds.indexes) compareKind(Indexes);
    if (m_kinds.constraints) compareKind(Constraints);
    if (m_kinds.foreignKeys) compareKind(ForeignKeys);
    if (allTables) {
        compareAllTables();
    } else {
        compareOneTable();
    }
    if (isCancelled()) return;
    m_finished = true;
    m_progress.UpdateForm(ComparedState::Finished, QStringLiteral("Finished"));
}

/// Once the comparison is cancelled, or a connection lost, nothing is read any more: nobody wants to wait for
/// it, and be told of failures.
template <class Step>
void Comparison::Run::read(Side& side, const QString& what, Step&& step) {
    // Nobody waits for events before there is progress to be seen, but message boxes serve them.
    if (m_progressSetUp ? !goOn() : isCancelled()) return;
    const int failures = m_failures;
    const bool failed = skipFailing(step) != 0;
    const bool lost = side.reader().tellLostConnection();
    if (failed || lost || m_failures > failures)
        m_unread += QStringLiteral("System %1: %2").arg(QString::number(side.number), what);
    if (!lost) return;
    m_connectionLost = true;
    if (m_progressSetUp) m_progress.cancel();
}

void Comparison::Run::readDetails(Side& side) {
    read(side, QStringLiteral("indexes, check constraints and foreign keys"),
         [&] { side.reader().FillLvDBDetail(side.rows, side.database()); });
}

void Comparison::Run::readTables(Side& side) {
    read(side, QStringLiteral("tables"), [&] { side.reader().FillCbTable(side.tables, side.database()); });
}

/// In the order in which they are compared: tables of both, tables of the first only, of the second only.
void Comparison::Run::expectDefinitions() {
    if (!comparesAllTables()) {
        for (const Side* side : {&m_side1, &m_side2})
            if (!side->table().isEmpty())
                side->reader().expect(side->database(), {false, false, {side->table()}});
        return;
    }
    const auto texts = [](const Side& side) {
        QStringList names;
        for (int i = 0; i < side.tables.count(); ++i)
            names += side.tables.text(i);
        return names;
    };
    const QStringList names1 = texts(m_side1);
    const QStringList names2 = texts(m_side2);
    const QSet<QString> in1(names1.begin(), names1.end());
    const QSet<QString> in2(names2.begin(), names2.end());
    QStringList both;
    QStringList only1;
    QStringList only2;
    for (const QString& name : names1)
        (in2.contains(name) ? both : only1) += name;
    std::ranges::copy_if(names2, std::back_inserter(only2),
                         [&](const QString& name) { return !in1.contains(name); });
    m_side1.reader().expect(m_side1.database(), {false, false, both + only1});
    m_side2.reader().expect(m_side2.database(), {false, false, both + only2});
}

void Comparison::Run::setUpProgress() {
    const qint32 tables = cbTable1.count() + cbTable2.count();
    m_progress.begin();
    m_progress.SetNumberNeed(3 * roundedHalf(ListView1.count()) + (tables == 0 ? 1 : 5 * tables));
    m_progress.InitFormLables(m_side1.system.caption, m_side2.system.caption);
    m_progressSetUp = true;
    if (m_connectionLost) m_progress.cancel();
}

void Comparison::Run::compareKind(const DetailKind& kind) {
    for (const Side* side : {&m_side1, &m_side2})
        addResult(side->system.results, kind.heading, kind.icon);
    const QString& text = kind.progressText;
    compareBothSides(kind.itemsOf(ListView1), kind.itemsOf(ListView2),
                     {ComparedState::Matched, text, text, false},
                     {ComparedState::MatchedCounted, {}, text, false});
}

bool Comparison::Run::compareBothSides(const ComparedItems& items1, const ComparedItems& items2,
                                       const SideReport& report1, const SideReport& report2) {
    const auto goesOn = [this] { return goOn(); };
    return compareSide(items1, items2, m_side1.system.results, report1, m_progress, goesOn) &&
           compareSide(items2, items1, m_side2.system.results, report2, m_progress, goesOn);
}

void Comparison::Run::compareAllTables() {
    for (const Side* side : {&m_side1, &m_side2}) {
        if (side->tables.count() == 0)
            addResult(side->system.results, tableHeading(QStringLiteral("Table: None defined")), Table);
    }
    compareTablesOfBoth() && compareUnmarked(m_side1, m_side2) && compareUnmarked(m_side2, m_side1);
}

/// Of several equal names in the second list the first is the one that is compared, each time.
bool Comparison::Run::compareTablesOfBoth() {
    QHash<QString, int> positions;
    for (int j = cbTable2.count() - 1; j >= 0; --j)
        positions.insert(cbTable2.text(j), j);
    for (int i = 0; i < cbTable1.count(); ++i) {
        if (!goOn()) return false;
        const QString name = cbTable1.text(i);
        const auto found = positions.constFind(name);
        if (found == positions.cend()) continue;
        if (!goOn()) return false;
        cbTable1.setItemData(i, Marked);
        cbTable2.setItemData(*found, Marked);
        m_side1.reader().setTable(name);
        m_side2.reader().setTable(name);
        if (!compareOneTable()) return false;
    }
    return true;
}

bool Comparison::Run::compareUnmarked(Side& side, Side& other) {
    for (int i = 0; i < side.tables.count(); ++i) {
        if (!goOn()) return false;
        if (side.tables.itemData(i) == Marked) continue;
        side.reader().setTable(side.tables.text(i));
        other.reader().setTable({});
        if (!compareOneTable()) return false;
    }
    return true;
}

bool Comparison::Run::compareOneTable() {
    for (Side* side : {&m_side1, &m_side2}) {
        side->rows.clearItems();
    }
    for (Side* side : {&m_side1, &m_side2}) {
        if (!side->table().isEmpty()) beginTable(*side);
    }
    const QString counted = QStringLiteral("Tablew: ") + m_side1.table();
    const QString text1 = QStringLiteral("Table: ") + m_side1.table();
    const QString text2 = QStringLiteral("Table: ") + m_side2.table();
    return compareBothSides(columnsOf(ListView1), columnsOf(ListView2),
                            {ComparedState::Matched, counted, text1, true},
                            {ComparedState::MatchedCounted, text2, text2, true});
}

void Comparison::Run::beginTable(Side& side) {
    const QString heading = QStringLiteral("Table: ") + side.table();
    read(side, heading, [&] {
        side.reader().FillLvTblDef(side.rows, side.database(), side.table());
        // A table has columns, and a column a type: this login is told of none, or the table is gone.
        const bool told = side.rows.count() > 0 && !side.rows.subItem(0, 1).isEmpty();
        if (!told && !isCancelled()) ++m_failures;
    });
    addResult(side.system.results, tableHeading(heading), Table);
}

Comparison::Comparison(const ComparedSystem& system1, const ComparedSystem& system2, ComparedKinds kinds,
                       ComparisonProgress& progress, std::function<void()> yield,
                       std::function<bool()> cancelled)
    : m_run(
          std::make_unique<Run>(system1, system2, kinds, progress, std::move(yield), std::move(cancelled))) {}

Comparison::~Comparison() = default;

Completeness Comparison::run() {
    m_run->run();
    return m_run->completeness();
}

const QStringList& Comparison::unread() const {
    return m_run->unread();
}

}  // namespace tw

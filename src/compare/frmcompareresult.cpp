#include "compare/frmcompareresult.h"

#include "compare/comparepanes.h"
#include "compare/comparisonrun.h"
#include "compare/markwords.h"
#include "compare/resultcommands.h"
#include "compare/resultsaving.h"
#include "dbaccess/dbconnection.h"
#include "icons/icons.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/named.h"
#include "platform/desktop/twips.h"
#include "shell/core/appstate.h"

#include <QCloseEvent>
#include <QPointer>

namespace tw {

namespace {

constexpr int SmallestSize = 3000;

QString titleOf(const DBConnection& connection) {
    const QString separator = QStringLiteral(" - ");
    return connection.getServer() + separator + connection.getDatabase() + separator + connection.getTable();
}

}  // namespace

frmCompareResult::frmCompareResult(AppState& state, std::function<void()> yield)
    : m_run(std::make_shared<ComparisonRun>(state, std::move(yield))),
      lvSystem1(makeList(QStringLiteral("lvSystem1"), m_run->results1)),
      lvSystem2(makeList(QStringLiteral("lvSystem2"), m_run->results2)),
      m_panes(new ComparePanes(*this, {lvSystem1, lvSystem2}, state.options.Layout)),
      m_commands(new ResultCommands(this, {lvSystem1, lvSystem2})) {
    setObjectName(QStringLiteral("frmCompareResult"));
    setWindowTitle(QStringLiteral("Databases Comparison Result"));
    setMinimumSize(desktop::toPixels(SmallestSize), desktop::toPixels(SmallestSize));
    setFocusProxy(lvSystem1);
    connect(m_commands, &ResultCommands::saveWanted, this,
            [this](bool differencesOnly) { saveResult(m_run, differencesOnly); });
}

frmCompareResult::~frmCompareResult() {
    m_run->abandon();
    // The models may go before the views, which are children.
    lvSystem1->setItems(nullptr);
    lvSystem2->setItems(nullptr);
}

desktop::ListView* frmCompareResult::makeList(const QString& name, controls::ListItems& items) {
    auto* list = desktop::named(name, new desktop::ListView(this));
    QList<QIcon> pictures;
    // In the order of Comparison::Icon.
    for (const char* picture : {"constraint", "index", "foreign", "table", "matched", "unmatched"}) {
        pictures += icon(QLatin1String(picture));
    }
    list->setPictures(std::move(pictures));
    list->setBoldPictures(
        {Comparison::Constraint, Comparison::Index, Comparison::ForeignKey, Comparison::Table});
    items.setMarkWords(markWords());
    list->setItems(&items);
    return list;
}

DBConnection& frmCompareResult::DBConn1() {
    return *m_run->connection1;
}

DBConnection& frmCompareResult::DBConn2() {
    return *m_run->connection2;
}

void frmCompareResult::setCompareIndex(qint16 value) {
    m_run->kinds.indexes = value != 0;
}

void frmCompareResult::setCompareConstraint(qint16 value) {
    m_run->kinds.constraints = value != 0;
}

void frmCompareResult::setCompareForeignKey(qint16 value) {
    m_run->kinds.foreignKeys = value != 0;
}

std::shared_ptr<DBConnection> frmCompareResult::queryConnection() {
    return m_run->connection1;
}

QRect frmCompareResult::placeIn(const QRect& frame, bool maximised, const QRect& activeChild) {
    constexpr int FromCorner = 20;
    constexpr int FromChild = 50;
    const auto position = [&](int frameStart, int childStart) {
        return desktop::toPixels(maximised || frameStart < 0 ? FromCorner
                                                             : desktop::toTwips(childStart) + FromChild);
    };
    const double width = desktop::toTwips(frame.width());
    const double height = desktop::toTwips(frame.height());
    return {position(frame.left(), activeChild.left()), position(frame.top(), activeChild.top()),
            desktop::toPixels(width - width / 4), desktop::toPixels(height - height / 2)};
}

void frmCompareResult::Form_Load() {
    Form_Resize();
    const QString caption1 = titleOf(DBConn1());
    const QString caption2 = titleOf(DBConn2());
    m_panes->setTitles(caption1, caption2);

    const std::shared_ptr<ComparisonRun> run = m_run;
    const QPointer<frmCompareResult> self(this);
    const WindowStatus::Running running(status());
    run->run(*this, caption1, caption2);
    if (self.isNull()) return;
    status().setText(run->statusText());
    m_commands->end();
}

void frmCompareResult::Form_Resize() {
    m_panes->Form_Resize();
}

void frmCompareResult::closeEvent(QCloseEvent* event) {
    m_run->abandon();
    event->accept();
}

void frmCompareResult::resizeEvent(QResizeEvent*) {
    Form_Resize();
}

void frmCompareResult::paintEvent(QPaintEvent*) {
    m_run->keepProgressInView();
}

}  // namespace tw

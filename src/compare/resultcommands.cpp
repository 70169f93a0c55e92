#include "compare/resultcommands.h"

#include "platform/controls/listitems.h"
#include "platform/desktop/finder.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/tooltip.h"

#include <QAction>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <climits>
#include <optional>
#include <utility>

namespace tw {

namespace {

constexpr int CatchUpMilliseconds = 250;

std::optional<int> neighbour(const std::vector<int>& rows, int from, bool backward) {
    const auto behind = std::upper_bound(rows.begin(), rows.end(), from);
    if (!backward) return behind == rows.end() ? std::nullopt : std::optional(*behind);
    const auto here = std::lower_bound(rows.begin(), rows.end(), from);
    return here == rows.begin() ? std::nullopt : std::optional(*(here - 1));
}

}  // namespace

ResultCommands::ResultCommands(QWidget* window, std::array<desktop::ListView*, 2> lists)
    : QObject(window),
      m_lists(lists),
      m_indexes{ResultIndex(items(0)), ResultIndex(items(1))},
      m_catchUp(new QTimer(this)) {
    new desktop::Finder(window, {lists[0], lists[1]});  // owned by the window
    addMenu();
    m_catchUp->setSingleShot(true);
    m_catchUp->setInterval(CatchUpMilliseconds);
    connect(m_catchUp, &QTimer::timeout, this, &ResultCommands::update);
    for (const size_t side : {0, 1})
        follow(side);
}

void ResultCommands::addMenu() {
    mnuDifferencesOnly = addCommand(QStringLiteral("mnuDifferencesOnly"),
                                    QStringLiteral("Show &Differences Only"), Qt::CTRL | Qt::Key_D);
    mnuDifferencesOnly->setCheckable(true);
    connect(mnuDifferencesOnly, &QAction::toggled, this, &ResultCommands::showDifferencesOnly);
    connect(addCommand(QStringLiteral("mnuNextDifference"), QStringLiteral("&Next Difference"), Qt::Key_F8),
            &QAction::triggered, this, [this] { goToDifference(false); });
    connect(addCommand(QStringLiteral("mnuPreviousDifference"), QStringLiteral("&Previous Difference"),
                       Qt::SHIFT | Qt::Key_F8),
            &QAction::triggered, this, [this] { goToDifference(true); });
    mnuLinkScrolling = addCommand(QStringLiteral("mnuLinkScrolling"), QStringLiteral("&Link Scrolling"),
                                  Qt::CTRL | Qt::Key_L);
    mnuLinkScrolling->setCheckable(true);
    mnuLinkScrolling->setChecked(true);
    connect(mnuLinkScrolling, &QAction::toggled, this, [this] { linkSoon(activeSide(), true); });
    mnuSaveAs = addCommand(QStringLiteral("mnuSaveAs"), QStringLiteral("Sav&e As..."), QKeySequence::Save);
    mnuSaveAs->setEnabled(false);
    connect(mnuSaveAs, &QAction::triggered, this,
            [this] { Q_EMIT saveWanted(mnuDifferencesOnly->isChecked()); });
    auto* bar = new QAction(this);
    bar->setSeparator(true);
    m_actions.append(bar);
    for (desktop::ListView* list : m_lists) {
        list->insertActions(list->actions().first(), m_actions);
        list->setContextMenuPolicy(Qt::ActionsContextMenu);
    }
}

QAction* ResultCommands::addCommand(const QString& name, const QString& text, const QKeySequence& key) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    m_actions.append(action);
    return action;
}

void ResultCommands::follow(size_t side) {
    desktop::ListView* list = m_lists[side];
    connect(&items(side), &controls::ListItems::itemsHeldBack, m_catchUp, [this] {
        if (!m_catchUp->isActive()) m_catchUp->start();
    });
    connect(list->verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this, side] { linkSoon(side, false); });
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, side] { linkSoon(side, true); });
}

controls::ListItems& ResultCommands::items(size_t side) const {
    return *m_lists[side]->items();
}

size_t ResultCommands::activeSide() const {
    return m_lists[1]->hasFocus() ? 1 : 0;
}

/// -1 when there is none.
int ResultCommands::currentItem(size_t side) const {
    const QModelIndex current = m_lists[side]->currentIndex();
    return current.isValid() ? items(side).itemOf(current.row()) : -1;
}

void ResultCommands::goTo(size_t side, int item) {
    items(side).notifyViews();
    const QModelIndex row = items(side).index(items(side).rowOf(item), 0);
    m_lists[side]->setFocus();
    m_lists[side]->setCurrentIndex(row);
}

void ResultCommands::update() {
    bool news = false;
    for (ResultIndex& index : m_indexes)
        news = index.update() || news;
    if (news && mnuDifferencesOnly->isChecked()) showRows();
}

void ResultCommands::end() {
    update();
    mnuSaveAs->setEnabled(true);
}

void ResultCommands::showRows() {
    std::array<std::vector<int>, 2> rows = differencesOnly(m_indexes);
    for (const size_t side : {0, 1})
        items(side).showOnly(std::move(rows[side]));
}

/// The current rows stay so, or those behind them that show.
void ResultCommands::showDifferencesOnly(bool on) {
    const QScopedValueRollback linking(m_linking, true);
    const std::array<int, 2> current{currentItem(0), currentItem(1)};
    update();
    for (const size_t side : {0, 1})
        if (!on) items(side).showAll();
    if (on) showRows();
    for (const size_t side : {0, 1}) {
        const int row = std::min(items(side).rowOf(current[side]), items(side).rowCount() - 1);
        if (current[side] < 0 || row < 0) continue;
        const QModelIndex index = items(side).index(row, 0);
        m_lists[side]->setCurrentIndex(index);
        m_lists[side]->scrollTo(index, QAbstractItemView::PositionAtCenter);
    }
}

/// Behind the last one of the first list come those of the second.
void ResultCommands::goToDifference(bool backward) {
    update();
    const size_t active = activeSide();
    const size_t last = backward ? 0 : 1;
    const auto inActive = neighbour(m_indexes[active].differences(), currentItem(active), backward);
    if (inActive) return goTo(active, *inActive);
    const auto inOther = neighbour(m_indexes[last].differences(), backward ? INT_MAX : -1, backward);
    if (active != last && inOther) return goTo(last, *inOther);
    const desktop::ListView& list = *m_lists[active];
    desktop::showToolTip(list.viewport()->mapToGlobal(list.visualRect(list.currentIndex()).bottomLeft()),
                         QStringLiteral("No further difference"), m_lists[active]);
}

void ResultCommands::linkSoon(size_t side, bool byCurrentRow) {
    if (m_linking || !mnuLinkScrolling->isChecked()) return;
    // The list that is worked with leads, and the current row more than where the list is scrolled to.
    if (m_link.wanted && m_link.byCurrentRow && !byCurrentRow) return;
    if (!m_link.wanted) QMetaObject::invokeMethod(this, &ResultCommands::link, Qt::QueuedConnection);
    m_link = {true, side, byCurrentRow};
}

void ResultCommands::link() {
    const auto [wanted, side, byCurrentRow] = std::exchange(m_link, {});
    update();
    desktop::ListView& leader = *m_lists[side];
    desktop::ListView& follower = *m_lists[1 - side];
    const int top = leader.verticalScrollBar()->value();
    const int row = byCurrentRow ? leader.currentIndex().row() : top;
    if (row < 0 || row >= items(side).rowCount()) return;
    const int partner = partnerRow(m_indexes, side, items(side).itemOf(row));
    if (partner < 0) return;
    items(1 - side).notifyViews();
    const int partnerRow = std::min(items(1 - side).rowOf(partner), items(1 - side).rowCount() - 1);
    if (partnerRow < 0) return;
    const QScopedValueRollback linking(m_linking, true);
    if (byCurrentRow) {
        const bool selected = leader.selectionModel()->isSelected(leader.currentIndex());
        follower.selectionModel()->setCurrentIndex(
            items(1 - side).index(partnerRow, 0),
            QItemSelectionModel::Rows |
                (selected ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate));
    }
    follower.verticalScrollBar()->setValue(partnerRow - (row - top));
}

}  // namespace tw

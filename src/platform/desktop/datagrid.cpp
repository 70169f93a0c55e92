#include "platform/desktop/datagrid.h"

#include "platform/controls/gridrows.h"
#include "platform/desktop/celldelegate.h"
#include "platform/desktop/hourglass.h"

#include <QAction>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <vector>

namespace desktop {

namespace {

void sortOnce(std::vector<int>& numbers) {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

void append(std::vector<int>& numbers, int first, int last) {
    for (int number = first; number <= last; ++number) {
        numbers.push_back(number);
    }
}

}  // namespace

DataGrid::DataGrid(QWidget* parent) : CellTable(parent) {
    setItemDelegate(new CellDelegate(this, CellDelegate::FocusMark::AroundCell));
    setContextMenuPolicy(Qt::ActionsContextMenu);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    addSorting();
}

void DataGrid::addSorting() {
    QHeaderView* header = horizontalHeader();
    header->setSortIndicatorShown(true);  // so that there is room for it
    header->setSortIndicator(-1, m_sortOrder);
    connect(header, &QHeaderView::sectionClicked, this, &DataGrid::headerClicked);
    auto* bar = new QAction(this);
    bar->setSeparator(true);
    addAction(bar);
    const auto add = [this](const QString& text, auto&& command) {
        auto* action = new QAction(text, this);
        addAction(action);
        connect(action, &QAction::triggered, this, command);
    };
    add(QStringLiteral("Sort A&scending"), [this] { sortBy(currentIndex().column(), Qt::AscendingOrder); });
    add(QStringLiteral("Sort &Descending"), [this] { sortBy(currentIndex().column(), Qt::DescendingOrder); });
    add(QStringLiteral("&Original Order"), [this] { sortBy(-1, Qt::AscendingOrder); });
}

/// With Shift or Ctrl a click selects and nothing else.
void DataGrid::headerClicked(int column) {
    const bool same = column == m_sortColumn;
    if (QGuiApplication::keyboardModifiers() != Qt::NoModifier) {
        horizontalHeader()->setSortIndicator(m_sortColumn, m_sortOrder);  // the header has turned it
    } else if (!same) {
        sortBy(column, Qt::AscendingOrder);
        selectColumn(column);
    } else {
        sortBy(m_sortOrder == Qt::AscendingOrder ? column : -1, Qt::DescendingOrder);
        selectColumn(column);
    }
}

void DataGrid::sortBy(int column, Qt::SortOrder order) {
    if (!model()) return;
    const Hourglass pointer;
    // A selection would be followed cell by cell.
    const QPersistentModelIndex current = currentIndex();
    selectionModel()->clearSelection();
    m_sortColumn = column;
    m_sortOrder = order;
    model()->sort(column, order);
    horizontalHeader()->setSortIndicator(column, order);
    if (current.isValid()) setCurrentIndex(current);
}

void DataGrid::setRows(controls::GridRows* rows) {
    if (model()) disconnect(model(), nullptr, this, nullptr);
    setModel(rows);
    if (!rows) return;
    connect(rows, &QAbstractItemModel::modelReset, this, &DataGrid::beginAnew);
    beginAnew();
}

/// Another result has nothing to do with the place in the one before.
void DataGrid::beginAnew() {
    m_sortColumn = -1;
    horizontalHeader()->setSortIndicator(-1, m_sortOrder);
    fitColumns();
    scrollToTop();
    horizontalScrollBar()->setValue(0);
}

QString DataGrid::selectedText() const {
    const auto* source = static_cast<const controls::GridRows*>(model());
    if (!source) return {};
    const QItemSelection selection = selectionModel()->selection();
    if (selection.isEmpty()) return {};
    std::vector<int> rows;
    std::vector<int> columns;
    for (const QItemSelectionRange& range : selection) {
        append(rows, range.top(), range.bottom());
        append(columns, range.left(), range.right());
    }
    sortOnce(rows);
    sortOnce(columns);

    QString text;
    const auto appendLine = [&](auto cellOf) {
        for (const int column : columns) {
            if (column != columns.front()) text.append(u'\t');
            appendCell(text, cellOf(column));
            if (text.size() > copyLimit()) return false;
        }
        text.append(u'\n');
        return true;
    };
    appendLine(
        [&](int column) { return source->headerData(column, Qt::Horizontal, Qt::EditRole).toString(); });
    for (const int row : rows) {
        controls::GridRows::Line line(*source, row);
        const bool fits = appendLine([&](int column) {
            const bool selected = std::any_of(selection.begin(), selection.end(), [&](const auto& range) {
                return range.contains(row, column, {});
            });
            return selected ? line.text(column) : QString();
        });
        if (!fits) return {};
    }
    return text;
}

}  // namespace desktop

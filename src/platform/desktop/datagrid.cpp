#include "platform/desktop/datagrid.h"

#include "platform/controls/gridrows.h"
#include "platform/desktop/celldelegate.h"
#include "platform/desktop/colours.h"

#include <QAction>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <vector>

namespace desktop {

namespace {

/// Sets markers off from texts that read the same.
class GridDelegate final : public CellDelegate {
  public:
    explicit GridDelegate(QObject* parent) : CellDelegate(parent, FocusMark::AroundCell) {}

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        CellDelegate::initStyleOption(option, index);
        if (!index.data(controls::GridRows::MarkerRole).toBool()) return;
        option->font.setItalic(true);
        option->fontMetrics = QFontMetrics(option->font);
        option->palette.setColor(QPalette::Text, colours::faintText(option->palette));
    }
};

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
    setItemDelegate(new GridDelegate(this));
    setAlternatingRowColors(true);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    addCommands();
}

void DataGrid::addCommands() {
    setContextMenuPolicy(Qt::ActionsContextMenu);
    const auto add = [this](const QString& text, QKeySequence::StandardKey key) {
        auto* action = new QAction(text, this);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        addAction(action);
        return action;
    };
    connect(add(QStringLiteral("&Copy"), QKeySequence::Copy), &QAction::triggered, this,
            &DataGrid::copySelection);
    connect(add(QStringLiteral("Select &All"), QKeySequence::SelectAll), &QAction::triggered, this,
            &DataGrid::selectAll);
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

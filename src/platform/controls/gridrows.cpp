#include "platform/controls/gridrows.h"

#include "platform/controls/roworder.h"
#include "platform/showntext.h"

namespace controls {

namespace {

int alignment(const GridColumn& column) {
    const bool right = column.kind == GridColumnKind::Number;
    return int(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft));
}

}  // namespace

GridRows::GridRows(QObject* parent) : QAbstractTableModel(parent) {}

void GridRows::reset(std::vector<GridColumn> columns, RowStore rows) {
    beginResetModel();
    m_columns = std::move(columns);
    m_rows = std::move(rows);
    m_order.clear();
    endResetModel();
}

int GridRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows.count();
}

int GridRows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant GridRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const GridColumn& its = column(index.column());
    if (role == Qt::TextAlignmentRole) return alignment(its);
    if (role == MarkerRole) return its.kind == GridColumnKind::Binary || isNull(index.row(), index.column());
    if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
    RowStore::Walk cell(m_rows, stored(index.row()));
    cell.moveTo(index.column());
    return shown(cell, index.column(),
                 role == Qt::DisplayRole ? RowStore::ShownCharacters : RowStore::AllCharacters);
}

void GridRows::sort(int column, Qt::SortOrder order) {
    std::vector<int> sorted;
    if (column >= 0 && column < columnCount())
        sorted = sortedRows(m_rows, column, this->column(column).kind, order);
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> places(before.isEmpty() ? 0 : static_cast<size_t>(m_rows.count()));
    for (size_t row = 0; row < places.size(); ++row)
        places[sorted.empty() ? row : static_cast<size_t>(sorted[row])] = static_cast<int>(row);
    QModelIndexList after;
    for (const QModelIndex& index : before)
        after += this->index(places[static_cast<size_t>(stored(index.row()))], index.column());
    m_order = std::move(sorted);
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

QString GridRows::shown(const RowStore::Walk& cell, int column, qsizetype most) const {
    if (cell.isNull()) return QStringLiteral("NULL");
    if (this->column(column).kind == GridColumnKind::Binary) return QStringLiteral("<Binary>");
    return cell.text(most);
}

QString GridRows::Line::text(int column) {
    m_walk.moveTo(column);
    return m_rows.shown(m_walk, column, RowStore::AllCharacters);
}

QVariant GridRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return QAbstractTableModel::headerData(section, orientation, role);
    if (section < 0 || section >= columnCount()) return {};
    if (role == Qt::DisplayRole) return platform::shownLine(column(section).name);
    if (role == Qt::EditRole) return column(section).name;
    return role == Qt::TextAlignmentRole ? QVariant(alignment(column(section))) : QVariant();
}

}  // namespace controls

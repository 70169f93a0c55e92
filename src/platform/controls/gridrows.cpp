#include "platform/controls/gridrows.h"

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
    if (role != Qt::DisplayRole && role != MarkerRole) return {};
    const bool null = isNull(index.row(), index.column());
    const bool binary = its.kind == GridColumnKind::Binary;
    if (role == MarkerRole) return null || binary;
    if (null) return QStringLiteral("NULL");
    return binary ? QStringLiteral("<Binary>") : m_rows.text(index.row(), index.column());
}

QVariant GridRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return QAbstractTableModel::headerData(section, orientation, role);
    if (section < 0 || section >= columnCount()) return {};
    if (role == Qt::DisplayRole) return column(section).name;
    return role == Qt::TextAlignmentRole ? QVariant(alignment(column(section))) : QVariant();
}

}  // namespace controls

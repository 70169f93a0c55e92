#pragma once

#include "platform/controls/rowstore.h"

#include <QAbstractTableModel>

#include <vector>

namespace controls {

enum class GridColumnKind {
    Text,
    Number,  ///< stands to the right
    Binary   ///< its values are told by a marker, not by a text
};

/// A column of a result, under the name that the server gave it; unnamed and repeated ones are all right.
struct GridColumn {
    QString name;
    GridColumnKind kind = GridColumnKind::Text;
};

/// The rows behind a data grid, replaced as a whole. Nulls and empty texts are told apart. Sized for a
/// million rows, as ListItems.
class GridRows : public QAbstractTableModel {
    Q_OBJECT

  public:
    explicit GridRows(QObject* parent = nullptr);

    /// Shows other columns and rows; a row has a text or a null for each column.
    void reset(std::vector<GridColumn> columns, RowStore rows);

    bool isNull(int row, int column) const { return m_rows.isNull(stored(row), column); }

    /// By a column's values, nulls first in ascending order: numbers by size, texts without regard to case.
    /// Equal ones stay as the server sent them, and so do all rows with column -1.
    void sort(int column, Qt::SortOrder order) override;

    /// The whole texts of a row, asked for from left to right. Good until the next reset.
    class Line {
      public:
        Line(const GridRows& rows, int row) : m_rows(rows), m_walk(rows.m_rows, rows.stored(row)) {}
        QString text(int column);

      private:
        const GridRows& m_rows;
        RowStore::Walk m_walk;
    };

    /// Qt::DisplayRole gives what can be shown of a cell's text, Qt::EditRole the whole; the texts "NULL" and
    /// "<Binary>" are markers.
    QVariant data(const QModelIndex& index, int role) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    const GridColumn& column(int index) const { return m_columns[static_cast<size_t>(index)]; }

    QString shown(const RowStore::Walk& cell, int column, qsizetype most) const;

    /// Where a row lies in the store.
    int stored(int row) const { return m_order.empty() ? row : m_order[static_cast<size_t>(row)]; }

    std::vector<GridColumn> m_columns;
    RowStore m_rows;
    std::vector<int> m_order;  ///< empty while rows stand as they were sent
};

}  // namespace controls

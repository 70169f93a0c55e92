#pragma once

#include "platform/desktop/celltable.h"

namespace controls {
class GridRows;
}

namespace desktop {

/// A read-only grid over controls::GridRows: rows are numbered, cells, rows and columns can be selected,
/// Ctrl+C copies the selection under its columns' names, and what is no value is set off from texts. A click
/// on a column's name sorts by it, another one the other way round, a third gives the first order back; the
/// context menu does it for the current column. A million rows show at once.
class DataGrid : public CellTable {
    Q_OBJECT

  public:
    explicit DataGrid(QWidget* parent = nullptr);

    /// Shows the rows, and nothing once they are gone. Every reset shows the first cell and fits the columns.
    void setRows(controls::GridRows* rows);
    /// The names of the columns and the cells of every row with something selected, with nothing in the
    /// place of cells that are not.
    QString selectedText() const override;

  private:
    void beginAnew();
    void addSorting();
    void headerClicked(int column);
    /// Column -1 gives back the order in which the rows came.
    void sortBy(int column, Qt::SortOrder order);

    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

}  // namespace desktop

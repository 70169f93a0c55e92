#pragma once

#include "platform/desktop/celltable.h"
#include "platform/desktop/pictures.h"

#include <vector>

namespace controls {
class ListItems;
}

namespace desktop {

/// A list view in report style over controls::ListItems: whole rows are selected, columns can be resized, and
/// Ctrl+C copies the selected rows. Columns are fitted to the first rows, until the user resizes one. A
/// million rows show at once. Items without any header above them show their own texts.
class ListView : public CellTable {
    Q_OBJECT

  public:
    explicit ListView(QWidget* parent = nullptr);

    /// Shows the items, which must outlive the view or be set to null before.
    void setItems(controls::ListItems* items);
    controls::ListItems* items() const;
    /// The pictures that items' icon numbers mean.
    void setPictures(QList<QIcon> icons);
    /// Items with one of these icon numbers are headings: their texts are bold.
    void setBoldPictures(QList<int> numbers);

    /// The selected rows, their cells as the columns stand, and behind them their marks in words if items
    /// have any.
    QString selectedText() const override;

  Q_SIGNALS:
    /// The right mouse button was released over the view, or the menu key pressed; a point of the screen.
    void contextMenuWanted(const QPoint& screenPosition);

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyboardSearch(const QString& search) override;

  private:
    void follow(controls::ListItems& items);
    void fitAnew();
    void rowsArrived(const QModelIndex& parent, int first);
    void fit();
    std::vector<int> selectedRows() const;
    void paintItemsWithoutHeaders(QPainter& painter) const;
    void paintFocus(QPainter& painter) const;

    bool m_fitting = false;
    bool m_widthsOfUser = false;
    std::vector<QMetaObject::Connection> m_connections;
};

}  // namespace desktop

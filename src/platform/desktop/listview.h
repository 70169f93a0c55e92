#pragma once

#include "platform/desktop/pictures.h"

#include <QTableView>

#include <vector>

namespace controls {
class ListItems;
}

namespace desktop {

/// A list view in report style over controls::ListItems: whole rows are selected, columns can be resized, and
/// Ctrl+C copies the selected rows as text with tabs between the columns. A million rows show at once. Items
/// without any header above them show their own texts.
class ListView : public QTableView {
    Q_OBJECT

  public:
    explicit ListView(QWidget* parent = nullptr);

    /// Shows the items, which must outlive the view or be set to null before.
    void setItems(controls::ListItems* items);
    /// The pictures that items' icon numbers mean.
    void setPictures(QList<QIcon> icons);

    /// Makes each column as wide as its header and its first rows want, within limits. Done by itself when
    /// the first rows under new headers arrive.
    void fitColumns();
    /// The selected rows as they are copied: tabs between columns, each line ended; tabs and line ends
    /// inside a text become blanks. Empty as well when they hold more than the limit.
    QString selectedText() const;
    /// Most characters to copy, 256 million at first. Of a larger selection nothing is copied, which a
    /// message tells.
    void setCopyLimit(qsizetype characters) { m_copyLimit = characters; }

  Q_SIGNALS:
    /// The right mouse button was released over the view, or the menu key pressed; a point of the screen.
    void contextMenuWanted(const QPoint& screenPosition);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyboardSearch(const QString& search) override;

  private:
    void follow(controls::ListItems& items);
    void fitRowHeight();
    void rowsArrived();
    int wantedWidth(int column) const;
    std::vector<int> selectedRows() const;
    void copySelection();
    void paintItemsWithoutHeaders(QPainter& painter) const;
    void paintFocus(QPainter& painter) const;

    bool m_columnsNew = true;
    qsizetype m_copyLimit = 256'000'000;
    std::vector<QMetaObject::Connection> m_connections;
};

}  // namespace desktop

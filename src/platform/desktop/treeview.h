#pragma once

#include "platform/desktop/pictures.h"

#include <QTreeView>

#include <array>

namespace controls {
class Nodes;
}

namespace desktop {

/// A tree view over controls::Nodes, with lines and plus and minus signs, a picture for each node and another
/// one for the selected node. A name that is cut shows as a whole in a tool tip. One node is always the
/// current one: at first the root.
class TreeView : public QTreeView {
    Q_OBJECT

  public:
    explicit TreeView(QWidget* parent = nullptr);

    /// Shows the nodes, which must outlive the view or be set to null before.
    void setNodes(controls::Nodes* nodes);
    /// The pictures that nodes' picture numbers mean.
    void setPictures(QList<QIcon> icons);

    /// Whether the node under the mouse is marked by a line under its text.
    bool hotTracking() const { return m_hotTracking; }
    void setHotTracking(bool on);

  Q_SIGNALS:
    /// The right mouse button was released over the view, or the menu key pressed; a point of the screen.
    void contextMenuWanted(const QPoint& screenPosition);

  protected:
    bool event(QEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void openTo(const QModelIndex& index);
    void beginAtRoot();

    bool m_hotTracking = false;
    std::array<QMetaObject::Connection, 2> m_connections;
};

}  // namespace desktop

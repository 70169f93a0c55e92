#pragma once

#include "platform/desktop/pictures.h"

#include <QPersistentModelIndex>
#include <QTreeView>

namespace controls {
class Nodes;
}

namespace desktop {

/// A tree view over controls::Nodes, with lines and plus and minus signs, a picture for each node and another
/// one for the selected node.
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
    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void openTo(const QModelIndex& index);

    bool m_hotTracking = false;
    QPersistentModelIndex m_scrollTarget;
    QMetaObject::Connection m_visibleWanted;
};

}  // namespace desktop

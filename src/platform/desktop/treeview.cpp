#include "platform/desktop/treeview.h"

#include "platform/controls/nodes.h"
#include "platform/desktop/colours.h"
#include "platform/desktop/focusframe.h"
#include "platform/desktop/nodedelegate.h"

#include <QContextMenuEvent>
#include <QPainter>

namespace desktop {
namespace {

constexpr int PictureSize = 16;
constexpr int Indentation = 20;
constexpr int SignSize = 9;

void drawDots(QPainter* painter, QPoint from, QPoint to) {
    // The dots of neighbouring rows meet when they all lie on even places.
    const bool down = from.x() == to.x();
    for (QPoint at = from; at.x() <= to.x() && at.y() <= to.y(); at += down ? QPoint(0, 1) : QPoint(1, 0)) {
        if (((at.x() + at.y()) & 1) == 0) painter->drawPoint(at);
    }
}

void drawSign(QPainter* painter, const QPoint& centre, bool expanded, const QPalette& palette,
              const QColor& frame) {
    const QRect box(centre.x() - SignSize / 2, centre.y() - SignSize / 2, SignSize, SignSize);
    painter->fillRect(box, palette.color(QPalette::Base));
    painter->setPen(frame);
    painter->drawRect(box.adjusted(0, 0, -1, -1));
    painter->setPen(palette.color(QPalette::Text));
    painter->drawLine(box.left() + 2, centre.y(), box.right() - 2, centre.y());
    if (!expanded) painter->drawLine(centre.x(), box.top() + 2, centre.x(), box.bottom() - 2);
}

}  // namespace

TreeView::TreeView(QWidget* parent) : QTreeView(parent) {
    setItemDelegate(new NodeDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setIndentation(Indentation);
    setIconSize(QSize(PictureSize, PictureSize));
    focusframe::setUp(*this);
    setMouseTracking(true);
}

void TreeView::setNodes(controls::Nodes* nodes) {
    for (const QMetaObject::Connection& connection : m_connections)
        disconnect(connection);
    setModel(nodes);
    if (!nodes) return;
    m_connections = {connect(nodes, &controls::Nodes::visibleWanted, this, &TreeView::openTo),
                     connect(nodes, &controls::Nodes::rowsInserted, this, &TreeView::beginAtRoot)};
    beginAtRoot();
}

void TreeView::setPictures(QList<QIcon> icons) {
    static_cast<NodeDelegate*>(itemDelegate())->setPictures(Pictures(std::move(icons)));
    viewport()->update();
}

void TreeView::setHotTracking(bool on) {
    m_hotTracking = on;
    static_cast<NodeDelegate*>(itemDelegate())->setHotTracking(on);
    viewport()->update();
}

void TreeView::openTo(const QModelIndex& index) {
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        expand(above);
    }
}

void TreeView::beginAtRoot() {
    if (!currentIndex().isValid()) setCurrentIndex(model()->index(0, 0));
}

bool TreeView::event(QEvent* event) {
    const bool handled = QTreeView::event(event);
    focusframe::follow(*this, *event);
    return handled;
}

void TreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    // The row left of the node is painted by the view, the node by its delegate.
    QStyleOptionViewItem row = option;
    colours::paleWithoutFocus(row.palette);
    QTreeView::drawRow(painter, row, index);
}

void TreeView::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    const QColor faint =
        colours::mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.45);
    const int middle = rect.center().y();
    int x = rect.right() - Indentation / 2;
    painter->save();
    painter->setPen(faint);
    const bool isFirst = !index.parent().isValid() && index.row() == 0;
    const bool hasNext = index.siblingAtRow(index.row() + 1).isValid();
    drawDots(painter, {x, isFirst ? middle : rect.top()}, {x, hasNext ? rect.bottom() : middle});
    drawDots(painter, {x, middle}, {rect.right(), middle});
    if (model()->hasChildren(index)) {
        drawSign(painter, {x, middle}, isExpanded(index), palette(), faint);
        painter->setPen(faint);
    }
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        x -= Indentation;
        const bool goesOn = above.siblingAtRow(above.row() + 1).isValid();
        if (goesOn) drawDots(painter, {x, rect.top()}, {x, rect.bottom()});
    }
    painter->restore();
}

void TreeView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) Q_EMIT contextMenuWanted(event->globalPosition().toPoint());
}

void TreeView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse asks when its button is released.
    if (event->reason() == QContextMenuEvent::Keyboard) Q_EMIT contextMenuWanted(event->globalPos());
    event->accept();
}

}  // namespace desktop

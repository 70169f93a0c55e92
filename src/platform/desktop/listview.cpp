#include "platform/desktop/listview.h"

#include "platform/controls/listitems.h"
#include "platform/desktop/celldelegate.h"
#include "platform/showntext.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace desktop {
namespace {

constexpr int TextMargin = 4;

}  // namespace

ListView::ListView(QWidget* parent) : CellTable(parent) {
    setItemDelegate(new CellDelegate(this));
    setSelectionBehavior(SelectRows);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    verticalHeader()->hide();
    horizontalHeader()->setSectionsClickable(false);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (!m_fitting) m_widthsOfUser = true;
    });
}

void ListView::setItems(controls::ListItems* items) {
    for (const QMetaObject::Connection& connection : std::exchange(m_connections, {}))
        disconnect(connection);
    setModel(items);
    if (!items) return;
    items->notifyViews();
    follow(*items);
    fitAnew();
}

controls::ListItems* ListView::items() const {
    return static_cast<controls::ListItems*>(model());
}

/// What is listed anew begins at its own widths and its first cell.
void ListView::follow(controls::ListItems& items) {
    const auto rowsGone = [this] {
        if (model()->rowCount() == 0) verticalScrollBar()->setValue(0);
    };
    m_connections = {
        connect(&items, &QAbstractItemModel::columnsInserted, this, &ListView::fitAnew),
        connect(&items, &QAbstractItemModel::columnsRemoved, this,
                [this] { horizontalScrollBar()->setValue(0); }),
        connect(&items, &QAbstractItemModel::rowsInserted, this, &ListView::rowsArrived),
        connect(&items, &QAbstractItemModel::rowsRemoved, this, rowsGone),
    };
}

void ListView::setPictures(QList<QIcon> icons) {
    static_cast<CellDelegate*>(itemDelegate())->setPictures(Pictures(std::move(icons)));
    viewport()->update();
}

void ListView::setBoldPictures(QList<int> numbers) {
    static_cast<CellDelegate*>(itemDelegate())->setBoldPictures(std::move(numbers));
    viewport()->update();
}

void ListView::fitAnew() {
    fit();
    m_widthsOfUser = false;
}

/// The rows that widths are taken from may come in one by one, and others under the same headers.
void ListView::rowsArrived(const QModelIndex&, int first) {
    if (first < RowsLookedAt && !m_widthsOfUser) fit();
}

void ListView::fit() {
    const QScopedValueRollback fitting(m_fitting, true);
    fitColumns();
}

std::vector<int> ListView::selectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

QString ListView::selectedText() const {
    const controls::ListItems* items = this->items();
    if (!items) return {};
    QString text;
    for (const int row : selectedRows()) {
        const int item = items->itemOf(row);
        for (int place = 0; place < items->headerCount(); ++place) {
            if (place > 0) text.append(u'\t');
            appendCell(text, items->subItem(item, horizontalHeader()->logicalIndex(place)));
        }
        if (items->hasMarkWords()) text.append(u'\t').append(items->markWord(item));
        text.append(u'\n');
        if (text.size() > copyLimit()) return {};
    }
    return text;
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
    CellTable::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) Q_EMIT contextMenuWanted(event->globalPosition().toPoint());
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse asks when its button is released.
    if (event->reason() == QContextMenuEvent::Keyboard) Q_EMIT contextMenuWanted(event->globalPos());
    event->accept();
}

void ListView::paintEvent(QPaintEvent* event) {
    CellTable::paintEvent(event);
    if (!model()) return;
    QPainter painter(viewport());
    // A table without columns has no cells to paint.
    if (model()->columnCount() == 0) paintItemsWithoutHeaders(painter);
    if (hasFocus()) paintFocus(painter);
}

void ListView::paintItemsWithoutHeaders(QPainter& painter) const {
    const controls::ListItems* items = this->items();
    painter.setPen(palette().color(QPalette::Text));
    for (int row = 0; row < items->rowCount() && rowViewportPosition(row) < viewport()->height(); ++row) {
        const QRect line(TextMargin, rowViewportPosition(row), viewport()->width(), rowHeight(row));
        painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine,
                         platform::shownLine(items->text(items->itemOf(row))));
    }
}

/// Around the current row; while there is none the frame around the list shows the focus alone.
void ListView::paintFocus(QPainter& painter) const {
    const int row = currentIndex().row();
    if (row < 0) return;
    const int columns = horizontalHeader()->length();
    const QRect line(columns > 0 ? -horizontalOffset() : 0, rowViewportPosition(row),
                     columns > 0 ? columns : viewport()->width(), rowHeight(row));
    const bool selected = selectionModel()->isSelected(currentIndex());
    paintFocusMark(painter, line, palette(), selected);
    // The column whose width the keys change.
    if (currentIndex().column() > 0)
        paintFocusMark(painter, visualRect(currentIndex()).adjusted(2, 2, -2, -2), palette(), selected);
}

/// The mark is around whole rows, the table paints single cells anew.
void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    CellTable::currentChanged(current, previous);
    viewport()->update();
}

QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (!model()) return {};
    QScrollBar* across = horizontalScrollBar();
    switch (action) {
        // A list has no cell to go to on the left or the right, but for the Ctrl key; its ends are the first
        // and the last row.
        case MoveLeft:
        case MoveRight:
            if (modifiers.testFlag(Qt::ControlModifier)) return CellTable::moveCursor(action, modifiers);
            across->triggerAction(action == MoveLeft ? QScrollBar::SliderSingleStepSub
                                                     : QScrollBar::SliderSingleStepAdd);
            return currentIndex();
        case MoveHome:
            return model()->index(0, 0);
        case MoveEnd:
            return model()->index(model()->rowCount() - 1, 0);
        default:
            return CellTable::moveCursor(action, modifiers);
    }
}

void ListView::keyboardSearch(const QString& search) {
    // What is typed finds the items' own texts, whichever cell was clicked.
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.column() != 0) {
        selectionModel()->setCurrentIndex(current.siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    }
    CellTable::keyboardSearch(search);
}

}  // namespace desktop

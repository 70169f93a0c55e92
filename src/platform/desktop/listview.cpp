#include "platform/desktop/listview.h"

#include "platform/controls/listitems.h"
#include "platform/desktop/celldelegate.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace desktop {
namespace {

constexpr int PictureSize = 16;
constexpr int TextMargin = 4;

}  // namespace

ListView::ListView(QWidget* parent) : QTableView(parent) {
    setItemDelegate(new CellDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setIconSize(QSize(PictureSize, PictureSize));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setMinimumSectionSize(24);
    fitRowHeight();
}

void ListView::setItems(controls::ListItems* items) {
    disconnect(m_columnsInserted);
    disconnect(m_rowsInserted);
    setModel(items);
    m_columnsNew = true;
    if (!items) return;
    items->notifyViews();
    m_columnsInserted =
        connect(items, &QAbstractItemModel::columnsInserted, this, [this] { m_columnsNew = true; });
    m_rowsInserted = connect(items, &QAbstractItemModel::rowsInserted, this, &ListView::rowsArrived);
    fitColumns();
    m_columnsNew = items->rowCount() == 0;
}

void ListView::setPictures(QList<QIcon> icons) {
    static_cast<CellDelegate*>(itemDelegate())->setPictures(Pictures(std::move(icons)));
    viewport()->update();
}

void ListView::fitColumns() {
    if (!model()) return;
    for (int column = 0; column < model()->columnCount(); ++column) {
        setColumnWidth(column, wantedWidth(column));
    }
}

int ListView::wantedWidth(int column) const {
    static constexpr int RowsLookedAt = 100;
    static constexpr int Least = 72;
    static constexpr int Most = 360;
    const int header = horizontalHeader()->sectionSizeHint(column);
    int widest = std::max(Least, header);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int row = 0; row < std::min(RowsLookedAt, model()->rowCount()); ++row) {
        const int wanted = itemDelegate()->sizeHint(option, model()->index(row, column)).width();
        widest = std::max(widest, wanted + fontMetrics().averageCharWidth());
    }
    return std::min(widest, std::max(Most, header));
}

void ListView::rowsArrived() {
    if (!m_columnsNew) return;
    m_columnsNew = false;
    fitColumns();
}

QString ListView::selectedText() const {
    if (!model()) return {};
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());

    QString text;
    for (const int row : rows) {
        for (int place = 0; place < model()->columnCount(); ++place) {
            if (place > 0) text.append(u'\t');
            const int column = horizontalHeader()->logicalIndex(place);
            QString cell = model()->index(row, column).data().toString();
            cell.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
            std::replace_if(
                cell.begin(), cell.end(), [](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; },
                u' ');
            text.append(cell);
        }
        text.append(u'\n');
    }
    return text;
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        const QString text = selectedText();
        if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) Q_EMIT contextMenuWanted(event->globalPosition().toPoint());
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse asks when its button is released.
    if (event->reason() == QContextMenuEvent::Keyboard) Q_EMIT contextMenuWanted(event->globalPos());
    event->accept();
}

void ListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    const auto* items = static_cast<const controls::ListItems*>(model());
    if (!items || items->headerCount() > 0) return;
    // A table without columns has no cells to paint.
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    for (int row = 0; row < items->rowCount() && rowViewportPosition(row) < viewport()->height(); ++row) {
        const QRect line(TextMargin, rowViewportPosition(row), viewport()->width(), rowHeight(row));
        painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine, oneLine(items->text(row)));
    }
}

void ListView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitRowHeight();
}

void ListView::fitRowHeight() {
    const int height = std::max(fontMetrics().height(), PictureSize) + 4;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (!model()) return {};
    QScrollBar* across = horizontalScrollBar();
    switch (action) {
        // A list has no cell to go to on the left or the right; its ends are the first and the last row.
        case MoveLeft:
            across->triggerAction(QScrollBar::SliderSingleStepSub);
            return currentIndex();
        case MoveRight:
            across->triggerAction(QScrollBar::SliderSingleStepAdd);
            return currentIndex();
        case MoveHome:
            return model()->index(0, 0);
        case MoveEnd:
            return model()->index(model()->rowCount() - 1, 0);
        default:
            return QTableView::moveCursor(action, modifiers);
    }
}

void ListView::keyboardSearch(const QString& search) {
    // What is typed finds the items' own texts, whichever cell was clicked.
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.column() != 0) {
        selectionModel()->setCurrentIndex(current.siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    }
    QTableView::keyboardSearch(search);
}

}  // namespace desktop

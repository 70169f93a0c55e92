#include "platform/desktop/celltable.h"

#include "platform/desktop/focusframe.h"
#include "platform/desktop/hourglass.h"
#include "platform/desktop/msgbox.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace desktop {

namespace {

constexpr int PictureSize = 16;

bool breaksGrid(QChar c) {
    return c == u'\t' || c == u'\n' || c == u'\r';
}

}  // namespace

CellTable::CellTable(QWidget* parent) : QTableView(parent) {
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setIconSize(QSize(PictureSize, PictureSize));
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    horizontalHeader()->setMinimumSectionSize(24);
    focusframe::setUp(*this);
    fitRowHeight();
    addCommands();
}

QAction* CellTable::addCommand(const QString& text, QKeySequence::StandardKey key) {
    auto* action = new QAction(text, this);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    addAction(action);
    return action;
}

void CellTable::addCommands() {
    connect(addCommand(QStringLiteral("&Copy"), QKeySequence::Copy), &QAction::triggered, this,
            &CellTable::copySelection);
    connect(addCommand(QStringLiteral("Select &All"), QKeySequence::SelectAll), &QAction::triggered, this,
            &CellTable::selectAll);
}

QAction* CellTable::addSaveCommand() {
    return addCommand(QStringLiteral("Sav&e As..."), QKeySequence::Save);
}

bool CellTable::event(QEvent* event) {
    const bool handled = QTableView::event(event);
    focusframe::follow(*this, *event);
    return handled;
}

void CellTable::fitColumns() {
    if (!model()) return;
    for (int column = 0; column < model()->columnCount(); ++column) {
        setColumnWidth(column, wantedWidth(column));
    }
}

int CellTable::wantedWidth(int column) const {
    static constexpr int Least = 72;
    static constexpr int Most = 360;
    static constexpr int LongestName = 128;
    const int gap = fontMetrics().averageCharWidth();
    const int header = std::min(horizontalHeader()->sectionSizeHint(column) + gap, LongestName * gap);
    int widest = std::max(Least, header);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int row = 0; row < std::min(RowsLookedAt, model()->rowCount()); ++row) {
        const int wanted = itemDelegate()->sizeHint(option, model()->index(row, column)).width();
        widest = std::max(widest, wanted + gap);
    }
    return std::min(widest, std::max(Most, header));
}

/// A cell's text may not look like more than one cell. Two characters that end a line are one end.
void CellTable::appendCell(QString& line, const QString& cell) {
    if (std::none_of(cell.begin(), cell.end(), breaksGrid)) {
        line.append(cell);
        return;
    }
    for (qsizetype i = 0; i < cell.size(); ++i) {
        const QChar c = cell[i];
        const bool lineFeedFollows = c == u'\r' && i + 1 < cell.size() && cell[i + 1] == u'\n';
        if (lineFeedFollows) ++i;
        line.append(breaksGrid(c) ? QChar(u' ') : c);
    }
}

void CellTable::copySelection() {
    if (!selectionModel() || !selectionModel()->hasSelection()) return;
    const Hourglass pointer;
    const QString text = selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
    else
        MsgBox(QStringLiteral("The selected rows are too long to be copied at once."),
               MsgBoxIcon::Exclamation);
}

void CellTable::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copySelection();
        event->accept();
        return;
    }
    if (event->modifiers() == Qt::AltModifier &&
        (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        const int column = currentIndex().column();
        const int step = fontMetrics().averageCharWidth() * (event->key() == Qt::Key_Left ? -2 : 2);
        if (column >= 0) setColumnWidth(column, std::max(columnWidth(column) + step, 24));
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void CellTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitRowHeight();
}

void CellTable::fitRowHeight() {
    const int height = std::max(fontMetrics().height(), PictureSize) + 4;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

}  // namespace desktop

#include "platform/desktop/finder.h"

#include "platform/desktop/findbar.h"
#include "platform/desktop/hourglass.h"

#include <QAbstractItemView>
#include <QAction>
#include <QEvent>
#include <QStringMatcher>

namespace desktop {

namespace {

/// The row behind one, the first one behind none; none at the end.
QModelIndex rowBehind(const QAbstractItemModel& model, QModelIndex row) {
    if (model.rowCount(row) > 0) return model.index(0, 0, row);
    for (; row.isValid(); row = row.parent()) {
        const QModelIndex parent = row.parent();
        if (row.row() + 1 < model.rowCount(parent)) return model.index(row.row() + 1, 0, parent);
    }
    return {};
}

QModelIndex rowBefore(const QAbstractItemModel& model, const QModelIndex& row) {
    if (row.isValid() && row.row() == 0) return row.parent();
    const QModelIndex parent = row.parent();
    QModelIndex at = row.isValid() ? model.index(row.row() - 1, 0, parent) : QModelIndex();
    for (int below = model.rowCount(at); below > 0; below = model.rowCount(at))
        at = model.index(below - 1, 0, at);
    return at;
}

QModelIndex cellWith(const QStringMatcher& wanted, const QAbstractItemModel& model, const QModelIndex& row) {
    const int columns = model.columnCount(row.parent());
    for (int column = 0; column < columns; ++column) {
        const QModelIndex cell = row.siblingAtColumn(column);
        if (wanted.indexIn(model.data(cell, Qt::EditRole).toString()) >= 0) return cell;
    }
    return {};
}

}  // namespace

FoundText findText(const QAbstractItemModel& model, const QModelIndex& from, const QString& text,
                   bool backward) {
    if (text.isEmpty() || model.rowCount() == 0) return {};
    const QStringMatcher wanted(text, Qt::CaseInsensitive);
    const QModelIndex start = from.siblingAtColumn(0);
    bool wrapped = false;
    QModelIndex at = start;
    do {
        at = backward ? rowBefore(model, at) : rowBehind(model, at);
        if (!at.isValid()) {
            if (wrapped || !start.isValid()) return {};
            wrapped = true;
            continue;
        }
        const QModelIndex cell = cellWith(wanted, model, at);
        if (cell.isValid()) return {cell, wrapped};
    } while (at != start);
    return {};
}

Finder::Finder(QWidget* window, const std::vector<QAbstractItemView*>& views)
    : QObject(window), m_view(views.front()) {
    auto* bar = new QAction(this);
    bar->setSeparator(true);
    const QList<QAction*> actions{
        bar, makeAction(QStringLiteral("&Find..."), QKeySequence(Qt::CTRL | Qt::Key_F), &Finder::open),
        makeAction(QStringLiteral("Find Ne&xt"), QKeySequence(Qt::Key_F3), &Finder::findNext),
        makeAction(QStringLiteral("Find Pre&vious"), QKeySequence(Qt::SHIFT | Qt::Key_F3),
                   &Finder::findPrevious)};
    for (QAbstractItemView* view : views) {
        view->addActions(actions);
        view->installEventFilter(this);
    }
}

QAction* Finder::makeAction(const QString& text, const QKeySequence& key, void (Finder::*command)()) {
    auto* action = new QAction(text, this);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, command);
    return action;
}

bool Finder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) m_view = static_cast<QAbstractItemView*>(watched);
    return false;
}

void Finder::open() {
    if (m_bar.isNull() || m_bar->parentWidget() != m_view) {
        delete m_bar;
        m_bar = new FindBar(m_view);
        connect(m_bar, &FindBar::findWanted, this, &Finder::find);
        connect(m_bar, &FindBar::closeWanted, this, &Finder::close);
    }
    m_bar->open(m_text);
}

void Finder::close() {
    m_bar->hide();
    m_view->setFocus();
}

void Finder::find(bool backward) {
    if (m_bar && m_bar->isVisible()) m_text = m_bar->text();
    if (m_text.isEmpty() || !m_view->model()) return open();
    FoundText found;
    {
        const Hourglass pointer;
        found = findText(*m_view->model(), m_view->currentIndex(), m_text, backward);
    }
    if (found.cell.isValid()) {
        m_view->setCurrentIndex(found.cell);
        m_view->scrollTo(found.cell);
        // Not under the bar.
        const int bar = m_bar ? m_bar->height() : 0;
        if (m_view->visualRect(found.cell).bottom() > m_view->viewport()->height() - bar)
            m_view->scrollTo(found.cell, QAbstractItemView::PositionAtCenter);
    } else if (!m_bar || !m_bar->isVisible()) {
        open();
    }
    if (!m_bar) return;
    m_bar->tell(!found.cell.isValid() ? QStringLiteral("Not found")
                : !found.wrapped      ? QString()
                : backward            ? QStringLiteral("Continued from the end")
                                      : QStringLiteral("Continued from the beginning"));
}

}  // namespace desktop

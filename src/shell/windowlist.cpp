#include "shell/windowlist.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

namespace tw {

namespace {

constexpr int LastNumberWithAccessKey = 9;

QString entryText(int number, const QString& title) {
    QString literalTitle = title;
    literalTitle.replace(u'&', QStringLiteral("&&"));
    const QString accessKey = number <= LastNumberWithAccessKey ? QStringLiteral("&") : QString();
    return accessKey + QString::number(number) + u' ' + literalTitle;
}

}  // namespace

WindowList::WindowList(QMenu& menu, QMdiArea& area) : QObject(&menu), m_menu(menu), m_area(area) {
    connect(&menu, &QMenu::aboutToShow, this, &WindowList::refresh);
}

void WindowList::refresh() {
    qDeleteAll(m_entries);
    m_entries.clear();

    const QList<QMdiSubWindow*> windows = m_area.subWindowList(QMdiArea::CreationOrder);
    if (windows.isEmpty()) return;
    m_entries.append(m_menu.addSeparator());
    int number = 0;
    for (QMdiSubWindow* window : windows) {
        QAction* entry = m_menu.addAction(entryText(++number, window->windowTitle()));
        entry->setCheckable(true);
        entry->setChecked(window == m_area.currentSubWindow());
        connect(entry, &QAction::triggered, window, [this, window] { m_area.setActiveSubWindow(window); });
        m_entries.append(entry);
    }
}

}  // namespace tw

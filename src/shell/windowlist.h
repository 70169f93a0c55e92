#pragma once

#include <QList>
#include <QObject>

class QAction;
class QMdiArea;
class QMenu;

namespace tw {

/// The list of child windows at the end of a menu: numbered in the order they were opened, the active one
/// checked; choosing one activates it. Made anew each time the menu opens.
class WindowList : public QObject {
    Q_OBJECT

  public:
    /// `menu` must outlive `area`'s windows; the list is owned by the menu.
    WindowList(QMenu& menu, QMdiArea& area);

  private:
    void refresh();

    QMenu& m_menu;
    QMdiArea& m_area;
    QList<QAction*> m_entries;
};

}  // namespace tw

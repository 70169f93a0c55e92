#pragma once

#include "compare/resultindex.h"

#include <QKeySequence>
#include <QObject>

#include <array>
#include <functional>

class QAction;
class QTimer;

namespace desktop {
class ListView;
}

namespace tw {

/// What a result window does about its rows: shows the differences only, goes from one to the next, and keeps
/// both lists at the same table and name. All of it stands, with its keys, in the lists' context menus.
class ResultCommands : public QObject {
    Q_OBJECT

  public:
    /// Adds the commands to the lists, which show the results of the two systems. Owned by the window.
    ResultCommands(QWidget* window, std::array<desktop::ListView*, 2> lists);

    /// Takes in the rows that have come since.
    void update();
    /// The comparison is over: its result can be saved.
    void end();

  Q_SIGNALS:
    void saveWanted(bool differencesOnly);

  private:
    QAction* addCommand(const QString& name, const QString& text, const QKeySequence& key);
    void addMenu();
    void follow(size_t side);
    controls::ListItems& items(size_t side) const;
    /// The list that commands act on.
    size_t activeSide() const;
    int currentItem(size_t side) const;
    void goTo(size_t side, int item);
    void showDifferencesOnly(bool on);
    void showRows();
    void goToDifference(bool backward);
    /// Brings the other list to where `side` is, once for whatever happens before events are served.
    void linkSoon(size_t side, bool byCurrentRow);
    void link();

    std::array<desktop::ListView*, 2> m_lists;
    ResultIndexes m_indexes;
    QList<QAction*> m_actions;
    QAction* mnuDifferencesOnly;
    QAction* mnuLinkScrolling;
    QAction* mnuSaveAs;
    QTimer* m_catchUp;
    struct {
        bool wanted = false;
        size_t side = 0;
        bool byCurrentRow = false;
    } m_link;
    bool m_linking = false;
};

}  // namespace tw

#pragma once

#include <QKeySequence>
#include <QModelIndex>
#include <QObject>
#include <QPointer>

#include <vector>

class QAbstractItemView;
class QAction;

namespace desktop {

class FindBar;

/// Finds texts in the views of a window: Ctrl+F opens a bar at the foot of the view that has the focus, F3
/// and Shift+F3 go on. Nothing is filtered: the view goes to the next row with the text in it, in whatever
/// case and in closed branches of a tree, too. The commands are actions of the views.
class Finder : public QObject {
    Q_OBJECT

  public:
    /// Owned by the window, which the views are in.
    Finder(QWidget* window, const std::vector<QAbstractItemView*>& views);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QAction* makeAction(const QString& text, const QKeySequence& key, void (Finder::*command)());
    void open();
    void close();
    void findNext() { find(false); }
    void findPrevious() { find(true); }
    void find(bool backward);

    QAbstractItemView* m_view;  ///< the one that had the focus last
    QPointer<FindBar> m_bar;    ///< goes with the view that it stands in
    QString m_text;
};

struct FoundText {
    QModelIndex cell;      ///< invalid when the text is nowhere
    bool wrapped = false;  ///< found beyond the end of the model
};

/// The first cell with the text, in whatever case, in the next row behind `from` that has one, going round
/// the end. Its own row comes last; without a valid one the search begins at the beginning.
FoundText findText(const QAbstractItemModel& model, const QModelIndex& from, const QString& text,
                   bool backward);

}  // namespace desktop

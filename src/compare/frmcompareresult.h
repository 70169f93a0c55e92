#pragma once

#include "platform/desktop/doevents.h"
#include "shell/core/frame.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace controls {
class ListItems;
}

namespace desktop {
class ListView;
}

namespace tw {

struct AppState;
class ComparePanes;
class ComparisonRun;
class DBConnection;
class ResultCommands;

/// A child window that holds one schema comparison: its two connection objects and options, and the two lists
/// of results, one per system, under a title each. Made and configured by the comparison selection.
///
/// It may be closed, and destroyed, at any time: a comparison that runs is cancelled by that.
class frmCompareResult : public QWidget, public ChildWindow {
    Q_OBJECT

  public:
    /// `state` must outlive the window and its comparison; `yield` serves events while that runs.
    explicit frmCompareResult(AppState& state, std::function<void()> yield = desktop::DoEvents);
    ~frmCompareResult() override;

    /// The connection objects of system 1 and system 2.
    DBConnection& DBConn1();
    DBConnection& DBConn2();
    /// What to compare besides tables and columns; any value but 0 means yes.
    void setCompareIndex(qint16 value);
    void setCompareConstraint(qint16 value);
    void setCompareForeignKey(qint16 value);

    /// Titles the lists and compares; returns when the comparison has ended or was cancelled. Due once, when
    /// the window is in its place and shown. Events are served meanwhile, so the window may be gone then.
    void Form_Load();

    QString getModuleName() const override { return QStringLiteral("frmCompareResult"); }
    std::shared_ptr<DBConnection> queryConnection() override;
    void Form_Resize() override;

    ComparePanes& panes() { return *m_panes; }

    /// Where a new result window goes, in pixels, given the frame with its border on the screen and its
    /// active child. A maximised frame counts as one that begins left of and above the screen.
    static QRect placeIn(const QRect& frame, bool maximised, const QRect& activeChild);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    desktop::ListView* makeList(const QString& name, controls::ListItems& items);

    std::shared_ptr<ComparisonRun> m_run;
    desktop::ListView* lvSystem1;
    desktop::ListView* lvSystem2;
    ComparePanes* m_panes;
    ResultCommands* m_commands;
};

}  // namespace tw

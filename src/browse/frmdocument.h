#pragma once

#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "shell/core/appstate.h"
#include "shell/core/documents.h"
#include "shell/core/frame.h"

#include <QTimer>
#include <QWidget>

#include <memory>

namespace desktop {
class ListView;
class TreeView;
}  // namespace desktop

namespace tw {

class DocumentPanes;

/// A child window that shows one server: the tree of its databases and tables, the column definitions of the
/// chosen table, and a page of its rows or the details of the chosen database.
///
/// It belongs to the collection of open documents, under the newest running number, from its making until it
/// is closed or destroyed, whichever comes first. State and frame must outlive it.
class frmDocument : public QWidget, public ChildWindow, public Document {
    Q_OBJECT

  public:
    frmDocument(AppState& state, Frame& frame, QWidget* parent = nullptr);
    ~frmDocument() override;

    /// The window's connection object (DBConn), made on first use.
    std::shared_ptr<DBConnection> connection() override;
    void setConnection(std::shared_ptr<DBConnection> connection);
    bool isConnected() const { return m_connected; }
    /// Changes the window's own flag only, not the count of connected documents.
    void setConnected(bool connected);

    QString getModuleName() const override { return QStringLiteral("frmDocument"); }
    std::shared_ptr<DBConnection> queryConnection() override { return connection(); }
    void Form_Resize() override;

    /// Writes the items of a list to a text file in Windows-1252, under a head of the server and the first
    /// two titles. Of each item `columnCount` texts are written, its own the first. Asks before it replaces a
    /// file, and reports its own failures.
    void ExportListViewItems(const controls::ListItems& list, qint16 columnCount, const QString& fileName);
    /// Asks for a file and saves the rows of the lower list to it, as saveRows does.
    void mnuSaveAs_Click();

    desktop::TreeView& tvDB() { return *m_tvDB; }
    desktop::ListView& lvTblDef() { return *m_lvTblDef; }
    desktop::ListView& lvTblData() { return *m_lvTblData; }
    /// What the three show.
    controls::Nodes& tvDBNodes() { return m_nodes; }
    controls::ListItems& lvTblDefItems() { return m_definitions; }
    controls::ListItems& lvTblDataItems() { return m_data; }
    DocumentPanes& panes() const { return *m_panes; }

    QSize sizeHint() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    enum class MouseAction { Click, DoubleClick };

    void makeViews();
    void connectHandlers();
    void Form_Load();
    void Form_Unload();
    void showStatus();
    void tvDB_NodeClick();
    void tvDB_DblClick();
    void tvDB_MouseUp(const QPoint& screenPosition);
    void lvTblDef_MouseUp(const QPoint& screenPosition);
    /// Does what a mouse action on the selected node means.
    void chooseNode(MouseAction action);
    void chooseDatabase(const controls::Node& node, bool open);
    void openTable(const controls::Node& node);
    MouseAction openingAction() const;

    AppState& m_state;
    Frame& m_frame;
    QString m_key;  ///< in the collection of open documents; empty when not in it
    bool m_unloaded = false;
    std::shared_ptr<DBConnection> m_connection;
    bool m_connected = false;
    bool m_secondClick = false;
    QTimer m_statusDue;
    controls::Nodes m_nodes;
    controls::ListItems m_definitions;
    controls::ListItems m_data;
    desktop::TreeView* m_tvDB = nullptr;
    desktop::ListView* m_lvTblDef = nullptr;
    desktop::ListView* m_lvTblData = nullptr;
    DocumentPanes* m_panes = nullptr;
};

}  // namespace tw

// What the mouse and the keyboard do in a document window's tree and definition list.
#include "browse/documentpanes.h"
#include "browse/frmdocument.h"
#include "browse/handler.h"
#include "dbaccess/dbconnection.h"
#include "platform/desktop/hourglass.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/treeview.h"

#include <QKeyEvent>
#include <QPointer>

#include <utility>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmDocument");
const QString RootKey = QStringLiteral("R");

}  // namespace

void frmDocument::connectHandlers() {
    connect(m_tvDB, &QAbstractItemView::pressed, this, [this] { m_secondClick = false; });
    connect(m_tvDB, &QAbstractItemView::clicked, this, [this] {
        // The button of a double click comes up twice.
        if (!m_secondClick) tvDB_NodeClick();
    });
    connect(m_tvDB, &QAbstractItemView::doubleClicked, this, [this] {
        m_secondClick = true;
        tvDB_DblClick();
    });
    m_tvDB->installEventFilter(this);
    // Menus are served once the view has done with the event, since anything may be chosen from them.
    connect(m_tvDB, &desktop::TreeView::contextMenuWanted, this, &frmDocument::tvDB_MouseUp,
            Qt::QueuedConnection);
    connect(m_lvTblDef, &desktop::ListView::contextMenuWanted, this, &frmDocument::lvTblDef_MouseUp,
            Qt::QueuedConnection);
}

/// The Enter key opens the selected node, whichever mouse action does.
bool frmDocument::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_tvDB || event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
    openingAction() == MouseAction::Click ? tvDB_NodeClick() : tvDB_DblClick();
    return true;
}

void frmDocument::tvDB_NodeClick() {
    handle(QStringLiteral("tvDB_NodeClick"), ModuleName, [this] { chooseNode(MouseAction::Click); });
}

void frmDocument::tvDB_DblClick() {
    handle(QStringLiteral("tvDB_DblClick"), ModuleName, [this] { chooseNode(MouseAction::DoubleClick); });
}

frmDocument::MouseAction frmDocument::openingAction() const {
    return m_state.options.MouseClickOption == 1 ? MouseAction::Click : MouseAction::DoubleClick;
}

void frmDocument::chooseNode(MouseAction action) {
    const controls::Node* node = m_nodes.node(m_tvDB->currentIndex());
    if (node == nullptr || node->parent == nullptr) return;
    const bool open = action == openingAction();
    if (node->parent->key == RootKey) {
        chooseDatabase(*node, open);
    } else if (open) {
        openTable(*node);
    }
}

void frmDocument::chooseDatabase(const controls::Node& node, bool open) {
    m_panes->lblTitle(0).setText(QStringLiteral("Database: ") + node.text);
    if (!open) return;
    m_panes->lblTitle(1).setText(QStringLiteral("Table Definition:"));
    m_definitions.clearItems();
    const QPointer<frmDocument> stillOpen(this);  // as in openTable()
    const WindowStatus::Running running(status());
    const desktop::Hourglass pointer;
    const QString caption = connection()->FillLvDBDetail(m_data, QString(node.text));
    if (!stillOpen.isNull()) m_panes->lblTitle(2).setText(caption);
}

void frmDocument::openTable(const controls::Node& node) {
    // A message box on the way lets events run, and the window may be closed or connected anew meanwhile.
    const QPointer<frmDocument> open(this);
    const std::shared_ptr<DBConnection> source = connection();
    const QString database = node.parent->text;
    const QString table = node.text;
    const WindowStatus::Running running(status());
    const desktop::Hourglass pointer;
    m_definitions.clearItems();
    source->FillLvTblDef(m_definitions, database, table);
    if (open.isNull()) return;
    m_panes->lblTitle(0).setText(QStringLiteral("Database: ") + database);
    m_panes->lblTitle(1).setText(QStringLiteral("Table Definition: ") + table);
    const QString caption = source->FillLvTblData(m_data, database, table, m_state.options.NumberRecShow);
    if (!open.isNull()) m_panes->lblTitle(2).setText(caption);
}

void frmDocument::tvDB_MouseUp(const QPoint& screenPosition) {
    handle(QStringLiteral("tvDB_MouseUp"), ModuleName, [&] {
        const controls::Node* node = m_nodes.node(m_tvDB->currentIndex());
        if (node != nullptr && node->key == RootKey) m_frame.popUpConnectMenu(screenPosition);
    });
}

void frmDocument::lvTblDef_MouseUp(const QPoint& screenPosition) {
    handle(QStringLiteral("lvTblDef_MouseUp"), ModuleName, [&] {
        if (m_definitions.count() > 0) m_frame.popUpExportMenu(screenPosition);
    });
}

}  // namespace tw

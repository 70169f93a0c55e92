#include "browse/frmdocument.h"

#include "browse/documentpanes.h"
#include "browse/handler.h"
#include "dbaccess/dbconnection.h"
#include "icons/icons.h"
#include "platform/desktop/finder.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/treeview.h"
#include "platform/desktop/twips.h"

#include <QAction>
#include <QCloseEvent>

#include <algorithm>
#include <utility>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmDocument");
constexpr int SmallestSize = 3000;

void addHeaders(controls::ListItems& list, const QStringList& texts) {
    for (const QString& text : texts) {
        list.addHeader(text);
    }
}

}  // namespace

frmDocument::frmDocument(AppState& state, Frame& frame, QWidget* parent)
    : QWidget(parent), m_state(state), m_frame(frame) {
    setObjectName(ModuleName);
    setWindowTitle(QStringLiteral("Not Connected"));
    setMinimumSize(desktop::toPixels(SmallestSize), desktop::toPixels(SmallestSize));
    makeViews();
    connectHandlers();
    Form_Load();
}

frmDocument::~frmDocument() {
    Form_Unload();
    // The models go before the views, which are children.
    m_tvDB->setNodes(nullptr);
    m_lvTblDef->setItems(nullptr);
    m_lvTblData->setItems(nullptr);
}

QSize frmDocument::sizeHint() const {
    return {desktop::toPixels(10500), desktop::toPixels(7500)};
}

std::shared_ptr<DBConnection> frmDocument::connection() {
    if (m_connection == nullptr) m_connection = std::make_shared<DBConnection>(m_state.connectionPool);
    return m_connection;
}

void frmDocument::setConnection(std::shared_ptr<DBConnection> connection) {
    m_connection = std::move(connection);
}

void frmDocument::setConnected(bool connected) {
    m_connected = connected;
    m_statusDue.start();
}

/// Tells of the tree as it was filled.
void frmDocument::showStatus() {
    if (!m_connected) return status().setText(QStringLiteral("Not connected"));
    const std::shared_ptr<DBConnection> source = connection();
    const QString login = source->getDSN()              ? QStringLiteral("that of the data source")
                          : source->getUser().isEmpty() ? QStringLiteral("Windows account")
                                                        : source->getUser();
    qsizetype tables = 0;
    if (const controls::Node* root = m_nodes.find(QStringLiteral("R"))) {
        for (const controls::Node* database : root->children)
            tables += std::ranges::count_if(database->children, [](const controls::Node* table) {
                return table->text != QStringLiteral("<No Permission>");
            });
    }
    status().setText(QStringLiteral("Server: %1    Login: %2    Tables: %3")
                         .arg(source->getServer(), login, QString::number(tables)));
}

void frmDocument::makeViews() {
    m_tvDB = new desktop::TreeView(this);
    m_lvTblDef = new desktop::ListView(this);
    m_lvTblData = new desktop::ListView(this);
    m_tvDB->setObjectName(QStringLiteral("tvDB"));
    m_lvTblDef->setObjectName(QStringLiteral("lvTblDef"));
    m_lvTblData->setObjectName(QStringLiteral("lvTblData"));
    m_tvDB->setPictures(
        {icon(QStringLiteral("server")), icon(QStringLiteral("database")), icon(QStringLiteral("table"))});
    m_tvDB->setNodes(&m_nodes);
    m_statusDue.setSingleShot(true);
    connect(&m_statusDue, &QTimer::timeout, this, &frmDocument::showStatus);
    connect(&m_nodes, &controls::Nodes::rowsInserted, &m_statusDue, qOverload<>(&QTimer::start));
    showStatus();
    m_lvTblDef->setItems(&m_definitions);
    m_lvTblDef->setPictures({icon(QStringLiteral("constraint")), icon(QStringLiteral("index")),
                             icon(QStringLiteral("foreign")), icon(QStringLiteral("table")),
                             icon(QStringLiteral("key"))});
    m_definitions.setMarkWords({{}, {}, {}, {}, QStringLiteral("primary key")});
    m_lvTblData->setItems(&m_data);
    m_panes = new DocumentPanes(*this, {m_tvDB, m_lvTblDef, m_lvTblData}, m_state.options.Layout);
    m_lvTblData->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(m_lvTblData->addSaveCommand(), &QAction::triggered, this, &frmDocument::mnuSaveAs_Click);
    new desktop::Finder(this, {m_tvDB, m_lvTblDef, m_lvTblData});  // owned by the window
    setFocusProxy(m_tvDB);
}

void frmDocument::Form_Load() {
    handle(QStringLiteral("Form_Load"), ModuleName, [this] {
        m_connected = false;
        const QString key = QString::number(m_state.documentNumber);
        m_state.documents.add(*this, key);
        m_key = key;
        controls::Node& root = m_nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 1, 1);
        m_nodes.ensureVisible(
            m_nodes.add(&root, QStringLiteral("D1"), QStringLiteral("<No Connection>"), 2, 2));
        addHeaders(m_definitions, {QStringLiteral("Name"), QStringLiteral("Data Type"),
                                   QStringLiteral("Nullable"), QStringLiteral("Foreign")});
        addHeaders(m_data, {QStringLiteral("Column1"), QStringLiteral("Column2"), QStringLiteral("Column3")});
        m_tvDB->setHotTracking(m_state.options.MouseHotTracking == 1);
    });
}

void frmDocument::Form_Unload() {
    if (std::exchange(m_unloaded, true)) return;
    handle(QStringLiteral("Form_Unload"), ModuleName, [this] {
        if (!m_key.isEmpty()) m_state.documents.remove(std::exchange(m_key, {}));
        --m_state.openDocuments;
        if (m_connected) --m_state.connectedDocuments;
        m_frame.SetMenuAndToolBarControls();
    });
}

void frmDocument::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}

void frmDocument::resizeEvent(QResizeEvent*) {
    Form_Resize();
}

void frmDocument::Form_Resize() {
    handle(QStringLiteral("Form_Resize"), ModuleName, [this] { m_panes->Form_Resize(); });
}

}  // namespace tw

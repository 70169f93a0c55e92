#include "browse/frmdocument.h"

#include "browse/documentpanes.h"
#include "browse/handler.h"
#include "dbaccess/dbconnection.h"
#include "icons/icons.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/treeview.h"
#include "platform/desktop/twips.h"

#include <QCloseEvent>

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
    m_lvTblDef->setItems(&m_definitions);
    m_lvTblDef->setPictures({icon(QStringLiteral("constraint")), icon(QStringLiteral("index")),
                             icon(QStringLiteral("foreign")), icon(QStringLiteral("table")),
                             icon(QStringLiteral("key"))});
    m_lvTblData->setItems(&m_data);
    m_panes = new DocumentPanes(*this, {m_tvDB, m_lvTblDef, m_lvTblData}, m_state.options.Layout);
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

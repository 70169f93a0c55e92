#include "shell/frmmain.h"

#include "browse/frmconnection.h"
#include "browse/frmdocument.h"
#include "dbaccess/dbconnection.h"
#include "icons/icons.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/outersize.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/twips.h"
#include "shell/core/appstate.h"
#include "shell/core/options.h"
#include "shell/core/placement.h"
#include "shell/core/reporterror.h"
#include "shell/frmflash.h"
#include "shell/maintoolbar.h"
#include "shell/windowlist.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>

#include <algorithm>

namespace tw {

namespace {

/// What the user chose to connect to. Filling the tree has replaced a data source's name by its server's, so
/// the name is taken from the connection string, "DSN=name;".
QString connectionName(const DBConnection& connection) {
    if (!connection.getDSN()) return connection.getServer();
    const QString text = connection.getConnectionString();
    const qsizetype start = QStringLiteral("DSN=").size();
    return text.sliced(start, text.size() - start - 1) + QStringLiteral(" (through ODBC)");
}

/// A stored coordinate may be any number; what window systems take is smaller.
int screenPixels(float twips) {
    constexpr float Farthest = 32000.0F * desktop::TwipsPerPixel;
    return desktop::toPixels(std::clamp(twips, -Farthest, Farthest));
}

/// Whether a window there can be taken hold of: the screen that it stood on may be gone.
bool titleCanBeSeen(const QRect& window) {
    constexpr int TitleHeight = 24;
    const QRect title(window.topLeft(), QSize(window.width(), TitleHeight));
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(),
                       [&](const QScreen* screen) { return screen->geometry().intersects(title); });
}

}  // namespace

frmMain::frmMain(AppState& state)
    : m_state(state),
      m_area(new QMdiArea(this)),
      m_menus(*this),
      tbToolBar(new MainToolBar(this)),
      sbStatusBar(new QStatusBar(this)),
      lblStatus(new desktop::TitleLabel({}, sbStatusBar)) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("SQL Server Tablewright"));
    setWindowIcon(icon(QStringLiteral("tablewright")));
    // Qt's own menu of tool bars would hide the toolbar behind the back of View > Toolbar.
    setContextMenuPolicy(Qt::NoContextMenu);

    m_area->setObjectName(QStringLiteral("mdiArea"));
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setBackground(palette().mid());
    // A window that opens beside a maximised one comes at its own size, and one that closes gives way to the
    // one that was used before it.
    m_area->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
    m_area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    setCentralWidget(m_area);
    addToolBar(tbToolBar);
    sbStatusBar->setObjectName(QStringLiteral("sbStatusBar"));
    sbStatusBar->addWidget(lblStatus, 1);
    setStatusBar(sbStatusBar);
    connect(m_area, &QMdiArea::subWindowActivated, this, &frmMain::followStatus);
    m_menus.mnuViewToolbar->setChecked(true);
    m_menus.mnuViewStatusBar->setChecked(true);

    new WindowList(*m_menus.mnuWindow, *m_area);  // owned by the menu
    auto* menuKey = new QShortcut(Qt::Key_F10, this);
    connect(menuKey, &QShortcut::activated, this,
            [this] { menuBar()->setActiveAction(m_menus.mnuFile->menuAction()); });
    auto* childMenuKey = new QShortcut(Qt::ALT | Qt::Key_Minus, this);
    connect(childMenuKey, &QShortcut::activated, this, [this] {
        if (QMdiSubWindow* child = activeChild()) child->showSystemMenu();
    });
    connectCommands();
}

frmMain::~frmMain() {
    // The child windows speak to the frame while they go.
    delete m_area;
}

void frmMain::Form_Load() {
    loadOptions(m_state);
    checkLayout();
    const bool labels = m_state.options.ToolBarCaption == 1;
    tbToolBar->setLabelsShown(labels);
    m_menus.mnuViewToolbarLabels->setChecked(labels);
    SetMenuAndToolBarControls();
    place();
    m_loaded = true;

    // Once the frame is on the screen, so that the window system keeps the splash above it.
    QMetaObject::invokeMethod(
        this, [this] { desktop::guard([this] { showFlash(); }); }, Qt::QueuedConnection);
}

void frmMain::showFlash() {
    if (!m_loaded) return;
    auto* flash = new frmFlash(this);
    desktop::connectGuarded(flash, &frmFlash::unloaded, this, [this] {
        if (m_loaded) show();
    });
    flash->show();
}

/// Position and size are those of the window with its frame.
void frmMain::place() {
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const StartPlacement start =
        startPlacement(loadPlacement(m_state), float(desktop::toTwips(screen.width())),
                       float(desktop::toTwips(screen.height())));
    const QSize stored(screenPixels(start.placement.width), screenPixels(start.placement.height));
    // A size that only showing the frame makes possible would shift it by its border.
    new desktop::OuterSize(*this, stored.expandedTo(minimumSizeHint()));  // owned by the frame
    const QPoint corner(screenPixels(start.placement.left), screenPixels(start.placement.top));
    move(titleCanBeSeen(QRect(corner, size())) ? corner : QPoint(0, 0));
    if (start.maximised) setWindowState(windowState() | Qt::WindowMaximized);
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (m_loaded) {
        m_loaded = false;
        desktop::guard([this] { Form_Unload(); });
        desktop::guard([this] { m_area->closeAllSubWindows(); });
    }
    event->accept();
}

void frmMain::Form_Unload() {
    if (!isMinimized()) {
        const QRect place = frameGeometry();
        savePlacement(m_state, {.left = float(desktop::toTwips(place.x())),
                                .top = float(desktop::toTwips(place.y())),
                                .width = float(desktop::toTwips(place.width())),
                                .height = float(desktop::toTwips(place.height()))});
    }
    saveOptions(m_state);
}

void frmMain::saveForLogOut() {
    if (m_loaded) Form_Unload();
}

void frmMain::SetMenuAndToolBarControls() {
    const bool connected = m_state.connectedDocuments > 0;
    const auto enable = [&](QAction* item, const QString& key, bool enabled) {
        item->setEnabled(enabled);
        if (!key.isEmpty()) tbToolBar->button(key)->setEnabled(enabled);
    };
    enable(m_menus.mnuViewHorizontal, QStringLiteral("Horizontal"), connected);
    enable(m_menus.mnuViewVertical, QStringLiteral("Vertical"), connected);
    enable(m_menus.mnuViewCenter, QStringLiteral("CenterChild"), connected);
    enable(m_menus.mnuToolCompare, QStringLiteral("Compare"), connected);
    enable(m_menus.mnuToolQuery, QStringLiteral("Query"), connected);
    enable(m_menus.mnuWindowCascade, {}, connected);
    enable(m_menus.mnuWindowTileHorizontal, {}, connected);
    enable(m_menus.mnuWindowTileVertical, {}, connected);
    enable(m_menus.mnuWindowArrangeIcons, {}, connected);
}

void frmMain::followStatus() {
    const QMdiSubWindow* child = activeChild();
    auto* window = child == nullptr ? nullptr : dynamic_cast<ChildWindow*>(child->widget());
    disconnect(m_statusFollowed);
    if (window == nullptr) return lblStatus->setText({});
    WindowStatus& status = window->status();
    m_statusFollowed =
        connect(&status, &WindowStatus::changed, this, [this, &status] { showStatus(status); });
    showStatus(status);
}

void frmMain::showStatus(const WindowStatus& status) {
    lblStatus->setText(status.text());
    // What runs now may not serve events for a while.
    lblStatus->repaint();
}

void frmMain::popUpConnectMenu(const QPoint& screenPosition) {
    m_menus.mnuPop1->popup(screenPosition);
}

void frmMain::popUpExportMenu(const QPoint& screenPosition) {
    m_menus.mnuPop2->popup(screenPosition);
}

void frmMain::ShowConnectionForm(frmDocument& document) {
    try {
        // While the dialog is open the program may be ended and the document with it.
        const QPointer<frmDocument> open(&document);
        if (!showConnectionDialog(document) || open.isNull()) return;
        const std::shared_ptr<DBConnection> connection = document.connection();
        document.setWindowTitle(QStringLiteral("Connected to ") + connectionName(*connection));
    } catch (...) {
        QString noExtraText;
        ReportError(QStringLiteral("ShowConnectionForm"), QStringLiteral("frmMain"), noExtraText);
    }
}

bool frmMain::showConnectionDialog(frmDocument& document) {
    frmConnection dialog(m_state, *this, document, this);
    return dialog.exec() == QDialog::Accepted && !m_state.cancelled;
}

QMdiSubWindow* frmMain::activeChild() const {
    if (QMdiSubWindow* current = m_area->currentSubWindow()) return current;
    // Minimising the active child may leave the area without one; the frame's active child stays the last
    // one.
    const QList<QMdiSubWindow*> windows = m_area->subWindowList(QMdiArea::ActivationHistoryOrder);
    return windows.isEmpty() ? nullptr : windows.last();
}

}  // namespace tw

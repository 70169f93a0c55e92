// What the commands of the frame do.

#include "browse/frmdocument.h"
#include "compare/frmcompareresult.h"
#include "compare/frmcompareselect.h"
#include "dbaccess/dbconnection.h"
#include "icons/icons.h"
#include "platform/desktop/caption.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/helpviewer.h"
#include "platform/desktop/mdiarrangement.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/treeview.h"
#include "platform/desktop/twips.h"
#include "platform/runtimeerror.h"
#include "query/frmquery.h"
#include "shell/core/appstate.h"
#include "shell/frmabout.h"
#include "shell/frmmain.h"
#include "shell/frmoption.h"
#include "shell/maintoolbar.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QStatusBar>

namespace tw {

namespace {

constexpr qint16 HorizontalLayout = 1;
constexpr qint16 VerticalLayout = 2;

/// The position, in pixels, that centres a child.
int centred(int outside, int inside) {
    return desktop::toPixels(desktop::centredPosition(desktop::toTwips(outside), desktop::toTwips(inside)));
}

void showExclamation(const QString& text) {
    desktop::MsgBox(text, desktop::MsgBoxIcon::Exclamation);
}

[[noreturn]] void failWithoutActiveChild() {
    throw platform::RuntimeError(platform::errors::ObjectNotSet,
                                 QStringLiteral("Object variable or With block variable not set"));
}

[[noreturn]] void failWithoutMember() {
    throw platform::RuntimeError(platform::errors::NoSuchMember,
                                 QStringLiteral("Object doesn't support this property or method"));
}

}  // namespace

void frmMain::connectCommands() {
    const auto lead = [this](QAction* item, Command command) {
        desktop::connectGuarded(item, &QAction::triggered, this,
                                [this, command](bool) { (this->*command)(); });
    };
    lead(m_menus.mnuFileNew, &frmMain::mnuFileNew_Click);
    lead(m_menus.mnuFileExit, &frmMain::mnuFileExit_Click);
    lead(m_menus.mnuViewToolbar, &frmMain::mnuViewToolbar_Click);
    lead(m_menus.mnuViewToolbarLabels, &frmMain::mnuViewToolbarLabels_Click);
    lead(m_menus.mnuViewStatusBar, &frmMain::mnuViewStatusBar_Click);
    lead(m_menus.mnuViewHorizontal, &frmMain::mnuViewHorizontal_Click);
    lead(m_menus.mnuViewVertical, &frmMain::mnuViewVertical_Click);
    lead(m_menus.mnuViewCenter, &frmMain::mnuViewCenter_Click);
    lead(m_menus.mnuToolConnect, &frmMain::mnuToolConnect_Click);
    lead(m_menus.mnuToolCompare, &frmMain::mnuToolCompare_Click);
    lead(m_menus.mnuToolQuery, &frmMain::mnuToolQuery_Click);
    lead(m_menus.mnuToolOptions, &frmMain::mnuToolOptions_Click);
    lead(m_menus.mnuWindowNewWindow, &frmMain::mnuFileNew_Click);
    lead(m_menus.mnuWindowCascade, &frmMain::mnuWindowCascade_Click);
    lead(m_menus.mnuWindowTileHorizontal, &frmMain::mnuWindowTileHorizontal_Click);
    lead(m_menus.mnuWindowTileVertical, &frmMain::mnuWindowTileVertical_Click);
    lead(m_menus.mnuWindowArrangeIcons, &frmMain::mnuWindowArrangeIcons_Click);
    lead(m_menus.mnuHelpContents, &frmMain::mnuHelpContents_Click);
    lead(m_menus.mnuHelpSearchForHelpOn, &frmMain::mnuHelpSearchForHelpOn_Click);
    lead(m_menus.mnuHelpAbout, &frmMain::mnuHelpAbout_Click);
    lead(m_menus.mnuPop1Connect, &frmMain::mnuToolConnect_Click);
    lead(m_menus.mnuPop2ExportColNames, &frmMain::mnuPop2ExportColNames_Click);
    lead(m_menus.mnuPop2ExportColDef, &frmMain::mnuPop2ExportColDef_Click);
    desktop::connectGuarded(tbToolBar, &MainToolBar::ButtonClick, this, &frmMain::tbToolBar_ButtonClick);
}

void frmMain::tbToolBar_ButtonClick(const QString& key) {
    static const std::pair<QString, Command> commands[] = {
        {QStringLiteral("New"), &frmMain::mnuFileNew_Click},
        {QStringLiteral("Connect"), &frmMain::mnuToolConnect_Click},
        {QStringLiteral("Compare"), &frmMain::mnuToolCompare_Click},
        {QStringLiteral("Query"), &frmMain::mnuToolQuery_Click},
        {QStringLiteral("Options"), &frmMain::mnuToolOptions_Click},
        {QStringLiteral("Horizontal"), &frmMain::mnuViewHorizontal_Click},
        {QStringLiteral("Vertical"), &frmMain::mnuViewVertical_Click},
        {QStringLiteral("CenterChild"), &frmMain::mnuViewCenter_Click},
        {QStringLiteral("Open"), &frmMain::failOnRichText},
        {QStringLiteral("Save"), &frmMain::failOnRichText},
        {QStringLiteral("Print"), &frmMain::failOnRichText},
    };
    for (const auto& [commandKey, command] : commands) {
        if (commandKey == key) return (this->*command)();
    }
}

/// These act on a rich text of the active child; no child has one.
void frmMain::failOnRichText() {
    if (activeChild() == nullptr) failWithoutActiveChild();
    failWithoutMember();
}

frmDocument* frmMain::activeDocument() const {
    const QMdiSubWindow* child = activeChild();
    return child == nullptr ? nullptr : qobject_cast<frmDocument*>(child->widget());
}

ChildWindow& frmMain::requireActiveWindow() const {
    const QMdiSubWindow* child = activeChild();
    auto* window = child == nullptr ? nullptr : dynamic_cast<ChildWindow*>(child->widget());
    if (window == nullptr) failWithoutActiveChild();
    return *window;
}

frmDocument& frmMain::requireActiveDocument() const {
    if (activeChild() == nullptr) failWithoutActiveChild();
    frmDocument* document = activeDocument();
    if (document == nullptr) failWithoutMember();
    return *document;
}

frmDocument& frmMain::openDocument() {
    ++m_state.documentNumber;
    ++m_state.openDocuments;
    auto* document = new frmDocument(m_state, *this);  // owned by its sub-window
    QMdiSubWindow* child = desktop::addCaptioned(*m_area, document);
    child->setWindowIcon(icon(QStringLiteral("server")));

    constexpr int Step = 28;
    constexpr int StepsUntilBack = 6;
    const int offset = Step * ((m_state.documentNumber - 1) % StepsUntilBack);
    const QSize size = m_area->viewport()->size() * 3 / 4;
    child->setGeometry(QRect(QPoint(offset, offset), size.expandedTo(child->minimumSizeHint())));
    child->show();
    return *document;
}

void frmMain::mnuFileNew_Click() {
    ShowConnectionForm(openDocument());
}

void frmMain::mnuFileExit_Click() {
    close();
}

void frmMain::mnuViewToolbar_Click() {
    tbToolBar->setVisible(tbToolBar->isHidden());
    m_menus.mnuViewToolbar->setChecked(!tbToolBar->isHidden());
}

void frmMain::mnuViewToolbarLabels_Click() {
    const bool shown = m_state.options.ToolBarCaption != 1;
    m_state.options.ToolBarCaption = shown ? 1 : 0;
    tbToolBar->setLabelsShown(shown);
    m_menus.mnuViewToolbarLabels->setChecked(shown);
}

void frmMain::mnuViewStatusBar_Click() {
    sbStatusBar->setVisible(sbStatusBar->isHidden());
    m_menus.mnuViewStatusBar->setChecked(!sbStatusBar->isHidden());
}

void frmMain::mnuViewHorizontal_Click() {
    setLayout(HorizontalLayout);
}

void frmMain::mnuViewVertical_Click() {
    setLayout(VerticalLayout);
}

void frmMain::setLayout(qint16 layout) {
    const bool changed = m_state.options.Layout != layout;
    m_state.options.Layout = layout;
    checkLayout();  // the click has toggled the item's mark by itself
    if (changed && activeChild() != nullptr) requireActiveWindow().Form_Resize();
}

void frmMain::checkLayout() {
    m_menus.mnuViewHorizontal->setChecked(m_state.options.Layout == HorizontalLayout);
    m_menus.mnuViewVertical->setChecked(m_state.options.Layout == VerticalLayout);
}

void frmMain::mnuViewCenter_Click() {
    QMdiSubWindow* child = activeChild();
    if (child == nullptr) failWithoutActiveChild();
    if (child->isMaximized()) return;  // it fills the client area

    const QSize client = m_area->viewport()->size();
    child->move(centred(client.width(), child->width()), centred(client.height(), child->height()));
}

void frmMain::mnuToolConnect_Click() {
    frmDocument* document = activeDocument();
    if (document == nullptr) return mnuFileNew_Click();
    document->lvTblDefItems().clearItems();
    document->lvTblDataItems().clearItems();
    ShowConnectionForm(*document);
}

void frmMain::mnuToolCompare_Click() {
    if (!hasOpenDocument()) return;
    std::unique_ptr<frmCompareResult> result;
    {
        frmCompareSelect selection(m_state, this);
        // The program may be ended while it is open.
        if (selection.exec() != QDialog::Accepted || !m_loaded) return;
        result = selection.takeResult();
    }
    showComparison(std::move(result));
}

/// Returns when the comparison has ended, or was cancelled; the window may be closed by then.
void frmMain::showComparison(std::unique_ptr<frmCompareResult> window) {
    const QMdiSubWindow* active = activeChild();
    const QRect place = frmCompareResult::placeIn(frameGeometry(), isMaximized(),
                                                  active == nullptr ? QRect() : active->geometry());
    frmCompareResult* result = window.release();  // owned by its sub-window
    QMdiSubWindow* child = desktop::addCaptioned(*m_area, result);
    child->setWindowIcon(icon(QStringLiteral("Compare")));
    child->setGeometry(place);
    child->show();
    child->repaint();  // the catalogs are read before events are served again
    result->Form_Load();
}

void frmMain::mnuToolQuery_Click() {
    if (!hasOpenDocument()) return;
    const std::shared_ptr<DBConnection> connection = requireActiveWindow().queryConnection();
    if (connection->getServer().isEmpty()) {
        return showExclamation(
            QStringLiteral("The active form is not connected to the database server.  "
                           "Please select another form that have a server connection "
                           "or click on 'Connect' to connect to a server."));
    }
    openQuery(connection);
}

void frmMain::openQuery(const std::shared_ptr<DBConnection>& connection) {
    ++m_queryNumber;
    auto* query = new frmQuery(m_state, connection);  // owned by its sub-window
    const QPointer<QMdiSubWindow> child = desktop::addCaptioned(*m_area, query);
    child->setWindowIcon(icon(QStringLiteral("Query")));
    query->Form_Load();
    if (child == nullptr) return;  // the program was ended while a failure was told

    query->setWindowTitle(QStringLiteral("Query Window %1 - ").arg(m_queryNumber) + connection->getServer());
    const QSize client = m_area->viewport()->size();
    child->resize(child->sizeHint().boundedTo(client).expandedTo(child->minimumSizeHint()));
    child->move(centred(client.width(), child->width()), 0);
    child->show();
}

void frmMain::mnuToolOptions_Click() {
    const auto setHotTracking = [this](bool on) {
        if (activeChild() == nullptr) failWithoutActiveChild();
        if (frmDocument* document = activeDocument()) document->tvDB().setHotTracking(on);
    };
    frmOption(m_state, setHotTracking, this).exec();
}

/// Whether there is any document window; says so when there is none.
bool frmMain::hasOpenDocument() const {
    if (m_state.openDocuments >= 1) return true;
    showExclamation(NoServerConnection);
    return false;
}

void frmMain::mnuWindowCascade_Click() {
    desktop::cascade(*m_area);
}

void frmMain::mnuWindowTileHorizontal_Click() {
    desktop::tileHorizontally(*m_area);
}

void frmMain::mnuWindowTileVertical_Click() {
    desktop::tileVertically(*m_area);
}

void frmMain::mnuWindowArrangeIcons_Click() {
    desktop::arrangeIcons(*m_area);
}

void frmMain::mnuHelpContents_Click() {
    showHelp(desktop::HelpCommand::Contents);
}

void frmMain::mnuHelpSearchForHelpOn_Click() {
    showHelp(desktop::HelpCommand::PartialKey);
}

void frmMain::showHelp(desktop::HelpCommand command) {
    if (m_state.helpFile.isEmpty()) {
        desktop::MsgBox(
            QStringLiteral("Unable to display Help Contents. There is no Help associated with this project."),
            desktop::MsgBoxIcon::Information);
        return;
    }
    desktop::WinHelp(this, m_state.helpFile, command);
}

void frmMain::mnuHelpAbout_Click() {
    frmAbout(this).exec();
}

}  // namespace tw

#include "shell/mainmenus.h"

#include "icons/icons.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace tw {

namespace {

QMenu* addMenu(QMainWindow& frame, const QString& name, const QString& text) {
    QMenu* menu = frame.menuBar()->addMenu(text);
    menu->setObjectName(name);
    return menu;
}

QMenu* addPopUp(QMainWindow& frame, const QString& name, const QString& text) {
    auto* menu = new QMenu(text, &frame);
    menu->setObjectName(name);
    return menu;
}

QAction* addItem(QMenu* menu, const QString& name, const QString& text, const QString& tip,
                 const QIcon& picture = {}) {
    QAction* item = menu->addAction(picture, text);
    item->setObjectName(name);
    item->setStatusTip(tip);
    return item;
}

QAction* addCheckItem(QMenu* menu, const QString& name, const QString& text, const QString& tip) {
    QAction* item = addItem(menu, name, text, tip);
    item->setCheckable(true);
    return item;
}

void addBar(QMenu* menu, const QString& name) {
    menu->addSeparator()->setObjectName(name);
}

}  // namespace

MainMenus::MainMenus(QMainWindow& frame) {
    buildFile(frame);
    buildView(frame);
    buildTool(frame);
    buildWindow(frame);
    buildHelp(frame);
    buildPopUps(frame);
}

void MainMenus::buildFile(QMainWindow& frame) {
    mnuFile = addMenu(frame, QStringLiteral("mnuFile"), QStringLiteral("&File"));
    mnuFileNew = addItem(mnuFile, QStringLiteral("mnuFileNew"), QStringLiteral("&New Connection..."),
                         QStringLiteral("Open a document window and connect it to a server"),
                         icon(QStringLiteral("New")));
    mnuFileNew->setShortcut(QKeySequence::New);
    addBar(mnuFile, QStringLiteral("mnuFileBar5"));
    mnuFileExit = addItem(mnuFile, QStringLiteral("mnuFileExit"), QStringLiteral("E&xit"),
                          QStringLiteral("Close all windows and end the program"));
}

void MainMenus::buildView(QMainWindow& frame) {
    mnuView = addMenu(frame, QStringLiteral("mnuView"), QStringLiteral("&View"));
    mnuViewToolbar = addCheckItem(mnuView, QStringLiteral("mnuViewToolbar"), QStringLiteral("&Toolbar"),
                                  QStringLiteral("Show or hide the toolbar"));
    mnuViewToolbarLabels =
        addCheckItem(mnuView, QStringLiteral("mnuViewToolbarLabels"), QStringLiteral("Toolbar labels"),
                     QStringLiteral("Show or hide the labels of the toolbar's buttons"));
    mnuViewStatusBar =
        addCheckItem(mnuView, QStringLiteral("mnuViewStatusBar"), QStringLiteral("Status &Bar"),
                     QStringLiteral("Show or hide the status bar"));
    addBar(mnuView, QStringLiteral("mnuViewSep1"));
    mnuViewHorizontal =
        addCheckItem(mnuView, QStringLiteral("mnuViewHorizontal"), QStringLiteral("&Horizontal"),
                     QStringLiteral("Let the rows span the window under the tree and the columns"));
    mnuViewVertical = addCheckItem(mnuView, QStringLiteral("mnuViewVertical"), QStringLiteral("&Vertical"),
                                   QStringLiteral("Stack the columns and the rows right of the tree"));
    mnuViewCenter =
        addItem(mnuView, QStringLiteral("mnuViewCenter"), QStringLiteral("&Center Document"),
                QStringLiteral("Center the active window in the frame"), icon(QStringLiteral("CenterChild")));
}

void MainMenus::buildTool(QMainWindow& frame) {
    mnuTool = addMenu(frame, QStringLiteral("mnuTool"), QStringLiteral("&Tools"));
    mnuToolConnect =
        addItem(mnuTool, QStringLiteral("mnuToolConnect"), QStringLiteral("&Connect..."),
                QStringLiteral("Connect the active window to a server"), icon(QStringLiteral("Connect")));
    mnuToolCompare = addItem(mnuTool, QStringLiteral("mnuToolCompare"), QStringLiteral("Com&pare..."),
                             QStringLiteral("Compare two databases, or one table of each"),
                             icon(QStringLiteral("Compare")));
    mnuToolQuery = addItem(mnuTool, QStringLiteral("mnuToolQuery"), QStringLiteral("&Query..."),
                           QStringLiteral("Build and run a query on the active window's server"),
                           icon(QStringLiteral("Query")));
    addBar(mnuTool, QStringLiteral("mnuToolSep1"));
    mnuToolOptions = addItem(mnuTool, QStringLiteral("mnuToolOptions"), QStringLiteral("&Options..."),
                             QStringLiteral("Set how many rows are shown and what the mouse does"),
                             icon(QStringLiteral("Options")));
}

void MainMenus::buildWindow(QMainWindow& frame) {
    mnuWindow = addMenu(frame, QStringLiteral("mnuWindow"), QStringLiteral("&Window"));
    mnuWindowNewWindow =
        addItem(mnuWindow, QStringLiteral("mnuWindowNewWindow"), QStringLiteral("&New Window"),
                QStringLiteral("Open a document window and connect it to a server"));
    addBar(mnuWindow, QStringLiteral("mnuWindowBar0"));
    mnuWindowCascade = addItem(mnuWindow, QStringLiteral("mnuWindowCascade"), QStringLiteral("&Cascade"),
                               QStringLiteral("Arrange the windows one behind the other"));
    mnuWindowTileHorizontal =
        addItem(mnuWindow, QStringLiteral("mnuWindowTileHorizontal"), QStringLiteral("Tile &Horizontal"),
                QStringLiteral("Arrange the windows one above the other"));
    mnuWindowTileVertical =
        addItem(mnuWindow, QStringLiteral("mnuWindowTileVertical"), QStringLiteral("Tile &Vertical"),
                QStringLiteral("Arrange the windows side by side"));
    mnuWindowArrangeIcons =
        addItem(mnuWindow, QStringLiteral("mnuWindowArrangeIcons"), QStringLiteral("&Arrange Icons"),
                QStringLiteral("Line up the minimised windows at the bottom of the frame"));
}

void MainMenus::buildHelp(QMainWindow& frame) {
    mnuHelp = addMenu(frame, QStringLiteral("mnuHelp"), QStringLiteral("&Help"));
    mnuHelpContents = addItem(mnuHelp, QStringLiteral("mnuHelpContents"), QStringLiteral("&Contents"),
                              QStringLiteral("Read the guide"));
    mnuHelpContents->setShortcut(QKeySequence::HelpContents);
    mnuHelpSearchForHelpOn =
        addItem(mnuHelp, QStringLiteral("mnuHelpSearchForHelpOn"), QStringLiteral("&Search For Help On..."),
                QStringLiteral("Look for a word in the guide"));
    addBar(mnuHelp, QStringLiteral("mnuHelpBar0"));
    mnuHelpAbout = addItem(mnuHelp, QStringLiteral("mnuHelpAbout"), QStringLiteral("&About Tablewright..."),
                           QStringLiteral("Show the program's version"), icon(QStringLiteral("tablewright")));
}

void MainMenus::buildPopUps(QMainWindow& frame) {
    mnuPop1 = addPopUp(frame, QStringLiteral("mnuPop1"), QStringLiteral("Popup1"));
    mnuPop1Connect =
        addItem(mnuPop1, QStringLiteral("mnuPop1Connect"), QStringLiteral("Connect..."),
                QStringLiteral("Connect the active window to a server"), icon(QStringLiteral("Connect")));

    mnuPop2 = addPopUp(frame, QStringLiteral("mnuPop2"), QStringLiteral("Popup2"));
    mnuPop2ExportColNames =
        addItem(mnuPop2, QStringLiteral("mnuPop2ExportColNames"), QStringLiteral("Export Column &Names"),
                QStringLiteral("Write the names of the table's columns to a text file"));
    mnuPop2ExportColDef =
        addItem(mnuPop2, QStringLiteral("mnuPop2ExportColDef"), QStringLiteral("Export Column &Definitions"),
                QStringLiteral("Write the definitions of the table's columns to a text file"));
}

}  // namespace tw

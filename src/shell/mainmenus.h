#pragma once

class QAction;
class QMainWindow;
class QMenu;

namespace tw {

/// The menus of the main frame: its menu bar and the two menus that the document windows pop up. Owned by the
/// frame; what the items do is the frame's.
struct MainMenus {
    explicit MainMenus(QMainWindow& frame);

    QMenu* mnuFile = nullptr;
    QAction* mnuFileNew = nullptr;
    QAction* mnuFileExit = nullptr;

    QMenu* mnuView = nullptr;
    QAction* mnuViewToolbar = nullptr;
    QAction* mnuViewToolbarLabels = nullptr;
    QAction* mnuViewStatusBar = nullptr;
    QAction* mnuViewHorizontal = nullptr;
    QAction* mnuViewVertical = nullptr;
    QAction* mnuViewCenter = nullptr;

    QMenu* mnuTool = nullptr;
    QAction* mnuToolConnect = nullptr;
    QAction* mnuToolCompare = nullptr;
    QAction* mnuToolQuery = nullptr;
    QAction* mnuToolOptions = nullptr;

    QMenu* mnuWindow = nullptr;
    QAction* mnuWindowNewWindow = nullptr;
    QAction* mnuWindowCascade = nullptr;
    QAction* mnuWindowTileHorizontal = nullptr;
    QAction* mnuWindowTileVertical = nullptr;
    QAction* mnuWindowArrangeIcons = nullptr;

    QMenu* mnuHelp = nullptr;
    QAction* mnuHelpContents = nullptr;
    QAction* mnuHelpSearchForHelpOn = nullptr;
    QAction* mnuHelpAbout = nullptr;

    QMenu* mnuPop1 = nullptr;
    QAction* mnuPop1Connect = nullptr;

    QMenu* mnuPop2 = nullptr;
    QAction* mnuPop2ExportColNames = nullptr;
    QAction* mnuPop2ExportColDef = nullptr;

  private:
    void buildFile(QMainWindow& frame);
    void buildView(QMainWindow& frame);
    void buildTool(QMainWindow& frame);
    void buildWindow(QMainWindow& frame);
    void buildHelp(QMainWindow& frame);
    void buildPopUps(QMainWindow& frame);
};

}  // namespace tw

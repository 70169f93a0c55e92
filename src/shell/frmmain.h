#pragma once

#include "platform/desktop/helpviewer.h"
#include "shell/core/frame.h"
#include "shell/mainmenus.h"

#include <QMainWindow>

#include <memory>

class QMdiArea;
class QMdiSubWindow;
class QStatusBar;

namespace desktop {
class TitleLabel;
}

namespace tw {

struct AppState;
class frmCompareResult;
class frmDocument;
class MainToolBar;

/// The one top-level window: a frame whose children are the document, query and comparison result windows. It
/// turns each command into a call on the active child or the opening of a dialog.
///
/// The command procedures throw what goes wrong in them; the connections to menus and toolbar lead them to
/// the place where an unhandled failure ends the program.
class frmMain : public QMainWindow, public Frame {
    Q_OBJECT

  public:
    explicit frmMain(AppState& state);
    ~frmMain() override;

    /// Takes over the settings: options, check marks, place on the screen. Due once, before the frame is
    /// shown. Throws RuntimeError for a setting that is not the number it should be.
    void Form_Load();

    /// Writes the settings as closing does, and goes on: a log-out may be called off. Throws what
    /// SettingsStore::SaveSetting throws.
    void saveForLogOut();

    void SetMenuAndToolBarControls() override;
    void popUpConnectMenu(const QPoint& screenPosition) override;
    void popUpExportMenu(const QPoint& screenPosition) override;

    /// Shows the connection dialog for a document and, when a connection was made, puts its server into the
    /// document's caption. Reports its own failures.
    void ShowConnectionForm(frmDocument& document);

    /// The child window that commands act on, also while the frame is not the active window; null without
    /// any.
    QMdiSubWindow* activeChild() const;
    QMdiArea& area() const { return *m_area; }

    /// Runs the command under a toolbar key.
    void tbToolBar_ButtonClick(const QString& key);

    void mnuFileNew_Click();
    void mnuFileExit_Click();
    void mnuViewToolbar_Click();
    void mnuViewToolbarLabels_Click();
    void mnuViewStatusBar_Click();
    void mnuViewHorizontal_Click();
    void mnuViewVertical_Click();
    void mnuViewCenter_Click();
    void mnuToolConnect_Click();
    void mnuToolCompare_Click();
    void mnuToolQuery_Click();
    void mnuToolOptions_Click();
    void mnuWindowCascade_Click();
    void mnuWindowTileHorizontal_Click();
    void mnuWindowTileVertical_Click();
    void mnuWindowArrangeIcons_Click();
    void mnuPop2ExportColNames_Click();
    void mnuPop2ExportColDef_Click();
    void mnuHelpContents_Click();
    void mnuHelpSearchForHelpOn_Click();
    void mnuHelpAbout_Click();

  protected:
    void closeEvent(QCloseEvent* event) override;

    /// Lets the user connect a document; true when a connection was made.
    virtual bool showConnectionDialog(frmDocument& document);

  private:
    using Command = void (frmMain::*)();

    void connectCommands();
    void Form_Unload();
    void place();
    void showFlash();
    /// Tells of the active child from now on.
    void followStatus();
    void showStatus(const WindowStatus& status);
    void setLayout(qint16 layout);
    void checkLayout();
    frmDocument& openDocument();
    void openQuery(const std::shared_ptr<DBConnection>& connection);
    void showComparison(std::unique_ptr<frmCompareResult> window);
    frmDocument* activeDocument() const;
    ChildWindow& requireActiveWindow() const;
    /// Throws RuntimeError 91 without an active child and 438 when that is no document.
    frmDocument& requireActiveDocument() const;
    bool hasOpenDocument() const;
    void exportDefinitions(qint16 columnCount, const QString& title, const QString& what);
    void failOnRichText();
    void showHelp(desktop::HelpCommand command);

    AppState& m_state;
    QMdiArea* m_area;
    MainMenus m_menus;
    MainToolBar* tbToolBar;
    QStatusBar* sbStatusBar;
    desktop::TitleLabel* lblStatus;
    QMetaObject::Connection m_statusFollowed;
    bool m_loaded = false;
    qint32 m_queryNumber = 0;  ///< running number of the newest query window
    QString m_exportFolder;    ///< the one that was exported to last
};

}  // namespace tw

#pragma once

#include "browse/frmdocument.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>

#include <functional>
#include <memory>

/// A frame whose user answers the connection dialog as the test says; by default it is cancelled. Without an
/// answer the real dialog shows.
class TestFrame : public tw::frmMain {
  public:
    using frmMain::frmMain;
    std::function<bool(tw::frmDocument&)> dialog = [](tw::frmDocument&) { return false; };

  protected:
    bool showConnectionDialog(tw::frmDocument& document) override {
        return dialog ? dialog(document) : frmMain::showConnectionDialog(document);
    }
};

/// A frame with settings of its own.
struct FrameFixture {
    FrameFixture() { state.connectionPool = std::make_shared<tw::ConnectionPool>(); }

    QTemporaryDir folder;
    desktop::SettingsStore store{folder.filePath(QStringLiteral("settings.ini"))};
    tw::AppState state{store};
    TestFrame frame{state};

    /// Loads and shows the frame at a size that leaves room for children.
    void start() {
        state.saveSetting(QStringLiteral("MainLeft"), QStringLiteral("0"));
        state.saveSetting(QStringLiteral("MainTop"), QStringLiteral("0"));
        state.saveSetting(QStringLiteral("MainWidth"), QStringLiteral("11250"));
        state.saveSetting(QStringLiteral("MainHeight"), QStringLiteral("8250"));
        frame.Form_Load();
        frame.show();
    }

    /// What the connection dialog does when its user connects to a server.
    bool connectTo(tw::frmDocument& document, const QString& server, bool dataSource = false) {
        auto connection = std::make_shared<tw::DBConnection>();
        connection->setServer(server);
        connection->setDSN(dataSource);
        // A filled tree has put the server in the place of the data source's name.
        if (dataSource) connection->setConnectionString(QStringLiteral("DSN=Warehouse;"));
        document.setConnection(connection);
        if (!document.isConnected()) {
            document.setConnected(true);
            ++state.connectedDocuments;
        }
        frame.SetMenuAndToolBarControls();
        return true;
    }

    /// Opens a document, connected to a server or, without a name, not connected.
    tw::frmDocument& open(const QString& server = {}) {
        frame.dialog = [this, server](tw::frmDocument& document) {
            return !server.isEmpty() && connectTo(document, server);
        };
        frame.mnuFileNew_Click();
        return activeDocument();
    }

    tw::frmDocument& activeDocument() const {
        return *qobject_cast<tw::frmDocument*>(frame.activeChild()->widget());
    }

    /// The command or button with this object name.
    QAction* action(const char* name) const { return frame.findChild<QAction*>(QString::fromLatin1(name)); }
};

/// A child that is no document, as query windows are.
class OtherChild : public QWidget, public tw::ChildWindow {
  public:
    QString getModuleName() const override { return QStringLiteral("frmQuery"); }
    std::shared_ptr<tw::DBConnection> queryConnection() override { return m_connection; }
    void Form_Resize() override { ++resizes; }
    int resizes = 0;

  private:
    std::shared_ptr<tw::DBConnection> m_connection = std::make_shared<tw::DBConnection>();
};

/// Makes one the active child.
inline OtherChild& addOtherChild(FrameFixture& fixture) {
    auto* child = new OtherChild;  // owned by its sub-window
    fixture.frame.area().addSubWindow(child)->show();
    return *child;
}

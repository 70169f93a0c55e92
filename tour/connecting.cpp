#include "browse/frmconnection.h"
#include "browse/frmdocument.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmflash.h"
#include "shell/frmmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTreeView>

namespace tour {

namespace {

void lookAtFirstStart(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("The program starts"));
    stage.expectText(place.frame.windowTitle(), QStringLiteral("SQL Server Tablewright"),
                     QStringLiteral("the caption"));
    stage.expect(place.frame.isMaximized(), QStringLiteral("the frame is maximised at its first start"));
    for (const char* name : {"mnuToolCompare", "mnuToolQuery", "mnuViewHorizontal", "mnuWindowCascade"}) {
        const QString item = QLatin1String(name);
        stage.expect(!stage.find<QAction>(place.frame, item).isEnabled(),
                     item + QStringLiteral(" waits for a connection"));
    }
    stage.picture(QStringLiteral("splash"));
    stage.waitFor([&] { return !place.frame.findChild<tw::frmFlash*>(); },
                  QStringLiteral("the splash has gone"));
    stage.picture(QStringLiteral("first-start"));
    stage.showMenu(place.frame, QStringLiteral("mnuView"),
                   [&] { stage.picture(QStringLiteral("view-menu")); });
}

void refuseEmptyEntries(Stage& stage, QWidget& dialog) {
    auto& server = stage.find<QComboBox>(dialog, QStringLiteral("cbServer"));
    auto& ok = stage.find<QPushButton>(dialog, QStringLiteral("cmdOK"));
    stage.expectText(server.currentText(), QStringLiteral("(local)"),
                     QStringLiteral("the server offered first"));
    stage.type(*server.lineEdit(), QStringLiteral(" "));
    stage.expectMessage([&] { stage.click(ok); },
                        QStringLiteral("Please enter the SQL Server computer name."),
                        QStringLiteral("no-server"));
    stage.type(*server.lineEdit(), QStringLiteral("somewhere"));
    stage.click(stage.find<QCheckBox>(dialog, QStringLiteral("chkSQLAuthentication")));
    stage.expectMessage(
        [&] { stage.click(ok); },
        QStringLiteral("When using SQL Server Authentication method, the User ID and Password must "
                       "be entered."));
}

void refuseWrongPassword(Place& place, QWidget& dialog) {
    Stage& stage = place.stage;
    stage.type(*stage.find<QComboBox>(dialog, QStringLiteral("cbServer")).lineEdit(), place.server);
    stage.type(stage.find<QLineEdit>(dialog, QStringLiteral("txtUserName")), QStringLiteral("clerk"));
    stage.type(stage.find<QLineEdit>(dialog, QStringLiteral("txtPassword")), QStringLiteral("wrong"));
    stage.inDialog([&] { stage.click(stage.find<QPushButton>(dialog, QStringLiteral("cmdOK"))); },
                   [&](QWidget& box) {
                       const QString text = stage.messageOf(box);
                       stage.expect(text.startsWith(QStringLiteral("Error: -2147217843.")),
                                    QStringLiteral("the number of a refused login: ") + text);
                       stage.expect(
                           text.contains(QStringLiteral("Please make sure your User ID and Password have "
                                                        "been entered correctly.")),
                           QStringLiteral("the hint of a refused login: ") + text);
                       stage.picture(QStringLiteral("wrong-password"));
                       stage.press(box, Qt::Key_Return);
                   });
    stage.expectText(place.frame.area().activeSubWindow()->widget()->windowTitle(),
                     QStringLiteral("<No Connection>"), QStringLiteral("the caption after a refusal"));
}

void expectTree(Place& place, tw::frmDocument& document) {
    Stage& stage = place.stage;
    auto& tree = stage.find<QTreeView>(document, QStringLiteral("tvDB"));
    const QAbstractItemModel& model = *tree.model();
    const QModelIndex root = model.index(0, 0);
    QStringList databases;
    for (int row = 0; row < model.rowCount(root); ++row) {
        databases.append(model.index(row, 0, root).data().toString());
    }
    for (const char* name : {"Payroll", "Workshop", "Workshop2"}) {
        stage.expect(databases.contains(QLatin1String(name)),
                     QStringLiteral("the tree lists ") + QLatin1String(name));
    }
    for (const char* name : {"master", "model", "msdb", "tempdb", "distribution"}) {
        stage.expect(!databases.contains(QLatin1String(name)),
                     QStringLiteral("the tree leaves out ") + QLatin1String(name));
    }
    const QModelIndex closed =
        model.index(static_cast<int>(databases.indexOf(QStringLiteral("Payroll"))), 0, root);
    stage.expect(model.rowCount(closed) == 1, QStringLiteral("a closed database has one child"));
    stage.expectText(model.index(0, 0, closed).data().toString(), QStringLiteral("<No Permission>"),
                     QStringLiteral("the child of a closed database"));
}

}  // namespace

void walkConnecting(Place& place) {
    Stage& stage = place.stage;
    lookAtFirstStart(place);

    stage.say(QStringLiteral("A new connection, with every refusal on the way"));
    stage.inDialog(
        [&] { stage.choose(place.frame, QStringLiteral("mnuFile"), QStringLiteral("mnuFileNew")); },
        [&](QWidget& dialog) {
            stage.expectText(dialog.windowTitle(), QStringLiteral("Login - Database Connection"),
                             QStringLiteral("the dialog's caption"));
            stage.picture(QStringLiteral("connection-dialog"));
            refuseEmptyEntries(stage, dialog);
            refuseWrongPassword(place, dialog);
            stage.type(stage.find<QLineEdit>(dialog, QStringLiteral("txtPassword")), QStringLiteral("clerk"));
            stage.picture(QStringLiteral("connection-dialog-filled"));
            stage.press(dialog, Qt::Key_Return);
        });

    stage.say(QStringLiteral("The tree of a server"));
    auto* document = qobject_cast<tw::frmDocument*>(place.frame.area().activeSubWindow()->widget());
    stage.expect(document != nullptr && document->isConnected(), QStringLiteral("the document is connected"));
    stage.expect(document->windowTitle().startsWith(QStringLiteral("Connected to ")),
                 QStringLiteral("the caption names the server: ") + document->windowTitle());
    stage.expect(place.state.connectedDocuments == 1, QStringLiteral("one document is connected"));
    expectTree(place, *document);
    auto& tree = stage.find<QTreeView>(*document, QStringLiteral("tvDB"));
    const QString server = tree.model()->index(0, 0).data().toString();
    stage.clickNode(tree, {server, QStringLiteral("Payroll"), QStringLiteral("<No Permission>")});
    stage.clickNode(tree, {server, QStringLiteral("Workshop")});
    tree.expand(tree.currentIndex());
    stage.expectText(stage.find<QLabel>(*document, QStringLiteral("lblTitle0")).text(),
                     QStringLiteral("Database: Workshop"), QStringLiteral("the title above the tree"));
    stage.picture(QStringLiteral("connected"));
}

}  // namespace tour

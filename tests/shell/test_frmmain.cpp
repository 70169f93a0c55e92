#include "platform/desktop/helpwindow.h"
#include "platform/runtimeerror.h"
#include "shell/framefixture.h"
#include "shell/frmmain.h"
#include "shell/maintoolbar.h"
#include "support/answers.h"
#include "support/table.h"

#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>

using platform::RuntimeError;
using testsupport::Table;

namespace {

/// "name|text" of each item, "-" in place of a separator's text.
QStringList itemsOf(const QList<QAction*>& actions) {
    QStringList items;
    for (const QAction* action : actions) {
        items << action->objectName() + u'|' + (action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    return items;
}

qint32 numberOfFailure(const std::function<void()>& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

const QString NoServerText = QStringLiteral(
    "Failure to find a server connection.  Please make sure that there is at least one active connection.");
const QString NotConnectedText = QStringLiteral(
    "The active form is not connected to the database server.  Please select another form that have a server "
    "connection or click on 'Connect' to connect to a server.");

}  // namespace

class FrmMainTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void menus_data();
    void menus();
    void menuKey();
    void helpCommands_data();
    void helpCommands();
    void toolbar();
    void enabling_data();
    void enabling();
    void partsOfTheFrameToggle();
    void statusTellsOfTheActiveWindow();
    void layout();
    void centre_data();
    void centre();
    void newConnectionCounts();
    void connectWithoutDocumentOpensOne();
    void connectClearsTheActiveDocument();
    void connectionFailureIsReported();
    void messagesWithoutConnection();
    void unhandledFailures();
    void windowList();
};

void FrmMainTest::menus_data() {
    const Table<QString, QString, QString> row("menu", "title", "items");
    row("File", "mnuFile", "&File", "mnuFileNew|&New Connection..., mnuFileBar5|-, mnuFileExit|E&xit");
    row("View", "mnuView", "&View",
        "mnuViewToolbar|&Toolbar, mnuViewToolbarLabels|Toolbar labels, "
        "mnuViewStatusBar|Status &Bar, mnuViewSep1|-, mnuViewHorizontal|&Horizontal, "
        "mnuViewVertical|&Vertical, mnuViewCenter|&Center Document");
    row("Tools", "mnuTool", "&Tools",
        "mnuToolConnect|&Connect..., mnuToolCompare|Com&pare..., mnuToolQuery|&Query..., "
        "mnuToolSep1|-, mnuToolOptions|&Options...");
    row("Window", "mnuWindow", "&Window",
        "mnuWindowNewWindow|&New Window, mnuWindowBar0|-, mnuWindowCascade|&Cascade, "
        "mnuWindowTileHorizontal|Tile &Horizontal, mnuWindowTileVertical|Tile &Vertical, "
        "mnuWindowArrangeIcons|&Arrange Icons");
    row("Help", "mnuHelp", "&Help",
        "mnuHelpContents|&Contents, mnuHelpSearchForHelpOn|&Search For Help On..., "
        "mnuHelpBar0|-, mnuHelpAbout|&About Tablewright...");
    row("Popup1", "mnuPop1", "Popup1", "mnuPop1Connect|Connect...");
    row("Popup2", "mnuPop2", "Popup2",
        "mnuPop2ExportColNames|Export Column &Names, "
        "mnuPop2ExportColDef|Export Column &Definitions");
}

void FrmMainTest::menus() {
    QFETCH(QString, menu);
    FrameFixture fixture;
    const auto* shown = fixture.frame.findChild<QMenu*>(menu);
    QVERIFY(shown != nullptr);
    QTEST(shown->title(), "title");
    QTEST(itemsOf(shown->actions()).join(QStringLiteral(", ")), "items");
    const bool onMenuBar = fixture.frame.menuBar()->actions().contains(shown->menuAction());
    QCOMPARE(onMenuBar, !menu.startsWith(QStringLiteral("mnuPop")));
}

void FrmMainTest::menuKey() {
    FrameFixture fixture;
    fixture.frame.show();
    QVERIFY(QTest::qWaitForWindowActive(&fixture.frame));
    auto* file = fixture.frame.findChild<QMenu*>(QStringLiteral("mnuFile"));
    QTest::keyClick(&fixture.frame, Qt::Key_F10);
    QTRY_VERIFY(file->isVisible());
    QTest::keyClick(file, Qt::Key_Escape);
    QVERIFY(!file->isVisible());
}

void FrmMainTest::helpCommands_data() {
    const Table<QString> row("focus");
    row("mnuHelpContents", "QListWidget");
    row("mnuHelpSearchForHelpOn", "QLineEdit");
}

void FrmMainTest::helpCommands() {
    QFETCH(QString, focus);
    testsupport::Answers answers;
    FrameFixture fixture;
    fixture.start();
    QAction& command = *fixture.action(QTest::currentDataTag());
    fixture.state.helpFile.clear();
    command.trigger();
    const auto box = answers.takeBox();
    QCOMPARE(box.text,
             QStringLiteral("Unable to display Help Contents. There is no Help associated with this "
                            "project."));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Information);

    QFile file(fixture.folder.filePath(QStringLiteral("guide.hlp")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("# One\n") > 0);
    file.close();
    fixture.state.helpFile = file.fileName();
    command.trigger();
    const auto* help = fixture.frame.findChild<desktop::HelpWindow*>();
    QVERIFY(help != nullptr && help->isVisible());
    QCOMPARE(help->focusWidget()->metaObject()->className(), qPrintable(focus));
}

void FrmMainTest::toolbar() {
    FrameFixture fixture;
    const auto* bar = fixture.frame.findChild<tw::MainToolBar*>(QStringLiteral("tbToolBar"));
    QCOMPARE(itemsOf(bar->actions()),
             (QStringList{"New|New", "Connect|Connect", "Compare|Compare", "Query|Query", "Options|Options",
                          "Separator2|-", "Horizontal|Horizontal", "Vertical|Vertical", "CenterChild|Center",
                          "Separator3|-"}));
    for (const QAction* action : bar->actions()) {
        QVERIFY2(action->isSeparator() || !action->icon().isNull(), qUtf8Printable(action->objectName()));
    }
    QCOMPARE(bar->button(QStringLiteral("Horizontal"))->toolTip(),
             QStringLiteral("Allign data pane horizontal"));
    QCOMPARE(bar->button(QStringLiteral("CenterChild"))->toolTip(),
             QStringLiteral("Center current child window to its container"));
}

void FrmMainTest::enabling_data() {
    const Table<QString, bool> row("name", "always");
    for (const char* always : {"mnuFileNew", "mnuFileExit", "mnuViewToolbar", "mnuToolConnect", "New",
                               "Connect", "mnuWindowNewWindow", "mnuHelpAbout", "mnuPop1Connect",
                               "mnuPop2ExportColNames", "mnuPop2ExportColDef", "mnuToolOptions", "Options"}) {
        row(always, QString::fromLatin1(always), true);
    }
    for (const char* connected :
         {"mnuViewHorizontal", "mnuViewVertical", "mnuViewCenter", "mnuToolCompare", "Compare",
          "mnuToolQuery", "Query", "mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical",
          "mnuWindowArrangeIcons", "Horizontal", "Vertical", "CenterChild"}) {
        row(connected, QString::fromLatin1(connected), false);
    }
}

void FrmMainTest::enabling() {
    QFETCH(QString, name);
    QFETCH(bool, always);
    FrameFixture fixture;
    fixture.start();
    const auto* action = fixture.frame.findChild<QAction*>(name);
    QVERIFY(action != nullptr);
    QCOMPARE(action->isEnabled(), always);
    fixture.open();
    QCOMPARE(action->isEnabled(), always);
    fixture.open(QStringLiteral("alpha"));
    QVERIFY(action->isEnabled());
    fixture.frame.activeChild()->close();
    QCOMPARE(action->isEnabled(), always);
}

void FrmMainTest::partsOfTheFrameToggle() {
    FrameFixture fixture;
    fixture.start();
    const auto* bar = fixture.frame.findChild<tw::MainToolBar*>(QStringLiteral("tbToolBar"));
    const auto* status = fixture.frame.findChild<QStatusBar*>(QStringLiteral("sbStatusBar"));
    for (const bool shown : {false, true}) {
        fixture.action("mnuViewToolbar")->trigger();
        QCOMPARE(bar->isVisible(), shown);
        QCOMPARE(fixture.action("mnuViewToolbar")->isChecked(), shown);
        fixture.action("mnuViewStatusBar")->trigger();
        QCOMPARE(status->isVisible(), shown);
        QCOMPARE(fixture.action("mnuViewStatusBar")->isChecked(), shown);
        fixture.action("mnuViewToolbarLabels")->trigger();
        QCOMPARE(bar->toolButtonStyle(), shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
        QCOMPARE(fixture.action("mnuViewToolbarLabels")->isChecked(), shown);
        QCOMPARE(fixture.state.options.ToolBarCaption, shown ? 1 : 0);
    }
}

void FrmMainTest::statusTellsOfTheActiveWindow() {
    FrameFixture fixture;
    fixture.start();
    const auto* told = fixture.frame.findChild<QStatusBar*>()->findChild<QLabel*>();
    QCOMPARE(told->text(), QString());
    tw::frmDocument& document = fixture.open(QStringLiteral("alpha"));
    controls::Nodes& nodes = document.tvDBNodes();
    controls::Node& database = nodes.add(nodes.find(QStringLiteral("R")), QStringLiteral("d"), {}, 2, 2);
    for (const char* table : {"t1", "t2", "<No Permission>"})
        nodes.add(&database, QLatin1String(table), QLatin1String(table), 3, 3);
    QTRY_COMPARE(told->text(), QStringLiteral("Server: alpha    Login: Windows account    Tables: 2"));
    OtherChild& other = addOtherChild(fixture);
    QCOMPARE(told->text(), QString());
    {
        const tw::WindowStatus::Running running(other.status());
        QCOMPARE(told->text(), QStringLiteral("Running"));
        document.setConnected(false);
        QTRY_COMPARE(told->text(), QStringLiteral("Running, 1 s"));
    }
    other.status().setText(QStringLiteral("done"));
    QCOMPARE(told->text(), QStringLiteral("done"));
    fixture.frame.activeChild()->close();
    QTRY_COMPARE(told->text(), QStringLiteral("Not connected"));
    fixture.frame.activeChild()->close();
    QTRY_COMPARE(told->text(), QString());
}

void FrmMainTest::layout() {
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"));
    const OtherChild& active = addOtherChild(fixture);
    QAction* horizontal = fixture.action("mnuViewHorizontal");
    QAction* vertical = fixture.action("mnuViewVertical");
    const struct {
        QAction* command;
        int layout;
        int resizes;
    } steps[] = {
        {horizontal, 1, 0}, {vertical, 2, 1}, {vertical, 2, 1}, {fixture.action("Horizontal"), 1, 2}};
    for (const auto& step : steps) {
        step.command->trigger();
        QCOMPARE(fixture.state.options.Layout, step.layout);
        QCOMPARE(horizontal->isChecked(), step.layout == 1);
        QCOMPARE(vertical->isChecked(), step.layout == 2);
        QCOMPARE(active.resizes, step.resizes);
    }
}

void FrmMainTest::centre_data() {
    // than the client area
    const Table<QSize, QPoint> row("less", "expected");
    row("even room", QSize(100, 60), QPoint(50, 30));
    row("half a pixel is rounded away from zero", QSize(101, 61), QPoint(51, 31));
    row("larger than the client area", QSize(-80, -40), QPoint(-40, -20));
}

void FrmMainTest::centre() {
    QFETCH(QSize, less);
    QFETCH(QPoint, expected);
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"));
    fixture.frame.area().setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fixture.frame.area().setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QMdiSubWindow* child = fixture.frame.activeChild();
    const QSize size = fixture.frame.area().viewport()->size() - less;
    child->resize(size);
    fixture.action("CenterChild")->trigger();
    QCOMPARE(child->pos(), expected);
    QCOMPARE(child->size(), size);
}

void FrmMainTest::newConnectionCounts() {
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"));
    const tw::frmDocument* second = &fixture.open();
    QCOMPARE(fixture.state.documentNumber, 2);
    QCOMPARE(fixture.state.openDocuments, 2);
    QCOMPARE(fixture.state.connectedDocuments, 1);
    QCOMPARE(fixture.state.documents.find(QStringLiteral("2")), second);

    fixture.frame.activeChild()->close();
    fixture.frame.dialog = [&](tw::frmDocument& document) {
        return fixture.connectTo(document, QStringLiteral("alpha"), true);
    };
    fixture.action("mnuWindowNewWindow")->trigger();
    QCOMPARE(fixture.state.documentNumber, 3);
    QCOMPARE(fixture.state.openDocuments, 2);
    QCOMPARE(fixture.frame.activeChild()->windowTitle(),
             QStringLiteral("Connected to Warehouse (through ODBC)"));
}

void FrmMainTest::connectWithoutDocumentOpensOne() {
    FrameFixture fixture;
    fixture.start();
    fixture.action("mnuToolConnect")->trigger();
    QCOMPARE(fixture.state.openDocuments, 1);
    fixture.action("Connect")->trigger();
    QCOMPARE(fixture.state.openDocuments, 1);
    addOtherChild(fixture);
    fixture.action("Connect")->trigger();
    QCOMPARE(fixture.state.openDocuments, 2);
}

void FrmMainTest::connectClearsTheActiveDocument() {
    FrameFixture fixture;
    fixture.start();
    tw::frmDocument& other = fixture.open(QStringLiteral("alpha"));
    tw::frmDocument& active = fixture.open(QStringLiteral("beta"));
    for (tw::frmDocument* document : {&other, &active}) {
        document->lvTblDefItems().addItem(u"column");
        document->lvTblDataItems().addItem(u"row");
    }
    fixture.frame.dialog = [&](tw::frmDocument& document) {
        return fixture.connectTo(document, QStringLiteral("gamma"));
    };
    fixture.action("mnuPop1Connect")->trigger();
    QCOMPARE(active.lvTblDefItems().count(), 0);
    QCOMPARE(active.lvTblDataItems().count(), 0);
    QCOMPARE(active.windowTitle(), QStringLiteral("Connected to gamma"));
    QCOMPARE(other.lvTblDefItems().count(), 1);
    QCOMPARE(other.windowTitle(), QStringLiteral("Connected to alpha"));
    QCOMPARE(fixture.state.connectedDocuments, 2);
}

void FrmMainTest::connectionFailureIsReported() {
    testsupport::Answers answers;
    FrameFixture fixture;
    fixture.start();
    fixture.frame.dialog = [](tw::frmDocument&) -> bool {
        throw RuntimeError(7, QStringLiteral("Out of memory"));
    };
    fixture.frame.mnuFileNew_Click();
    QVERIFY(
        answers.takeBox().text.contains(QStringLiteral("subroutine ShowConnectionForm of module frmMain.")));
    QCOMPARE(fixture.state.openDocuments, 1);
}

void FrmMainTest::messagesWithoutConnection() {
    testsupport::Answers answers;
    FrameFixture fixture;
    fixture.start();
    fixture.frame.tbToolBar_ButtonClick(QStringLiteral("Compare"));
    fixture.frame.tbToolBar_ButtonClick(QStringLiteral("Query"));
    for (int i = 0; i < 2; ++i) {
        const desktop::MsgBoxRequest box = answers.takeBox();
        QCOMPARE(box.text, NoServerText);
        QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    }
    fixture.open();
    fixture.frame.mnuToolCompare_Click();
    QCOMPARE(answers.takeBox().text, NoServerText);
    fixture.frame.mnuToolQuery_Click();
    QCOMPARE(answers.takeBox().text, NotConnectedText);
    fixture.open(QStringLiteral("alpha"));
    addOtherChild(fixture);
    fixture.frame.mnuToolQuery_Click();
    QCOMPARE(answers.takeBox().text, NotConnectedText);
}

void FrmMainTest::unhandledFailures() {
    FrameFixture fixture;
    fixture.start();
    const auto click = [&](const char* key) {
        return numberOfFailure([&] { fixture.frame.tbToolBar_ButtonClick(QString::fromLatin1(key)); });
    };
    QCOMPARE(click("CenterChild"), platform::errors::ObjectNotSet);
    QCOMPARE(click("Open"), platform::errors::ObjectNotSet);
    fixture.open();
    QCOMPARE(click("CenterChild"), 0);
    for (const char* key : {"Open", "Save", "Print"}) {
        QCOMPARE(click(key), platform::errors::NoSuchMember);
    }
}

void FrmMainTest::windowList() {
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("a&b"));
    QMdiSubWindow* first = fixture.frame.activeChild();
    fixture.open();
    fixture.open();
    QMdiSubWindow* last = fixture.frame.activeChild();
    auto* menu = fixture.frame.findChild<QMenu*>(QStringLiteral("mnuWindow"));
    Q_EMIT menu->aboutToShow();
    QCOMPARE(itemsOf(menu->actions().mid(6)),
             (QStringList{"|-", "|&1 Connected to a&&b", "|&2 Not Connected", "|&3 Not Connected"}));
    QVERIFY(menu->actions().at(9)->isChecked());
    menu->actions().at(7)->trigger();
    QCOMPARE(fixture.frame.activeChild(), first);

    first->close();
    QCOMPARE(fixture.frame.activeChild(), last);
    Q_EMIT menu->aboutToShow();
    QCOMPARE(itemsOf(menu->actions().mid(6)), (QStringList{"|-", "|&1 Not Connected", "|&2 Not Connected"}));
}

QTEST_MAIN(FrmMainTest)
#include "test_frmmain.moc"

// The frame from start to end: settings, placement, splash, closing in any order.

#include "platform/desktop/failures.h"
#include "platform/runtimeerror.h"
#include "shell/framefixture.h"
#include "shell/frmflash.h"
#include "support/table.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMdiArea>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using platform::RuntimeError;

namespace {

Qt::ToolButtonStyle labelsOf(const tw::frmMain& frame) {
    return frame.findChild<QToolBar*>(QStringLiteral("tbToolBar"))->toolButtonStyle();
}

}  // namespace

class FrmMainLifeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void firstRun();
    void settingsAreTakenOver();
    void closingStores_data();
    void closingStores();
    void placeDoesNotCreep();
    void placeThatNobodyCouldReach_data();
    void placeThatNobodyCouldReach();
    void badNumberLeavesTheSettingsAlone();
    void splashLeavesTheFrameAsItIs_data();
    void splashLeavesTheFrameAsItIs();
    void documentsCloseInAnyOrder_data();
    void documentsCloseInAnyOrder();
    void closingWhileTheDialogIsOpen();
    void quittingEndsTheDialogToo();
    void settingsThatCannotBeWritten();
    void frameThatWasNeverClosed();
};

void FrmMainLifeTest::firstRun() {
    FrameFixture fixture;
    fixture.frame.Form_Load();
    const QSize screen = QGuiApplication::primaryScreen()->size();
    QVERIFY(fixture.frame.isMaximized());
    QCOMPARE(fixture.frame.pos(), QPoint(0, 0));
    QCOMPARE(fixture.frame.width(), (screen.width() * 15 - 1000 + 7) / 15);
    QCOMPARE(fixture.frame.height(), (screen.height() * 15 - 1000 + 7) / 15);
    QVERIFY(fixture.action("mnuViewHorizontal")->isChecked());
    QVERIFY(!fixture.action("mnuViewVertical")->isChecked());
    QVERIFY(fixture.action("mnuViewToolbarLabels")->isChecked());
    QCOMPARE(labelsOf(fixture.frame), Qt::ToolButtonTextUnderIcon);
    QCOMPARE(fixture.state.setting(QStringLiteral("MainTop"), QStringLiteral("none")),
             QStringLiteral("none"));
}

void FrmMainLifeTest::settingsAreTakenOver() {
    FrameFixture fixture;
    fixture.state.saveSetting(QStringLiteral("Layout"), QStringLiteral("2"));
    fixture.state.saveSetting(QStringLiteral("ToolBarCaption"), QStringLiteral("0"));
    fixture.start();
    QVERIFY(!fixture.frame.isMaximized());
    QTRY_COMPARE(fixture.frame.frameGeometry(), QRect(0, 0, 750, 550));
    QVERIFY(fixture.frame.size() != QSize(750, 550));
    QCOMPARE(labelsOf(fixture.frame), Qt::ToolButtonIconOnly);
    QVERIFY(fixture.action("mnuViewVertical")->isChecked());
    QVERIFY(!fixture.action("mnuViewHorizontal")->isChecked());
    QVERIFY(!fixture.action("mnuViewToolbarLabels")->isChecked());
}

void FrmMainLifeTest::closingStores_data() {
    const testsupport::Table<Qt::WindowState, bool> row("windowState", "placeStored");
    row("normal", Qt::WindowNoState, true);
    row("minimised", Qt::WindowMinimized, false);
    row("maximised", Qt::WindowMaximized, true);
}

void FrmMainLifeTest::closingStores() {
    QFETCH(Qt::WindowState, windowState);
    QFETCH(bool, placeStored);
    FrameFixture fixture;
    fixture.start();
    fixture.frame.resize(700, 500);
    fixture.frame.setWindowState(windowState);
    QTRY_COMPARE(fixture.frame.width() > 700, windowState == Qt::WindowMaximized);
    fixture.action("mnuViewToolbarLabels")->trigger();
    fixture.state.options.NumberRecShow = 123;
    const int width = fixture.frame.frameGeometry().width();
    fixture.action("mnuFileExit")->trigger();

    QVERIFY(!fixture.frame.isVisible());
    const QString storedWidth = fixture.state.setting(QStringLiteral("MainWidth"), {});
    QCOMPARE(storedWidth, placeStored ? QString::number(width * 15) : QStringLiteral("11250"));
    QCOMPARE(fixture.state.setting(QStringLiteral("NumberRecShow"), {}), QStringLiteral("123"));
    QCOMPARE(fixture.state.setting(QStringLiteral("ToolBarCaption"), {}), QStringLiteral("0"));
    QCOMPARE(fixture.state.setting(QStringLiteral("Layout"), {}), QStringLiteral("1"));
}

void FrmMainLifeTest::placeDoesNotCreep() {
    FrameFixture fixture;
    fixture.start();
    fixture.frame.setGeometry(60, 70, 640, 480);
    const QRect place = fixture.frame.frameGeometry();
    fixture.frame.close();

    TestFrame again(fixture.state);
    again.Form_Load();
    again.show();
    QTRY_COMPARE(again.frameGeometry(), place);
}

void FrmMainLifeTest::placeThatNobodyCouldReach_data() {
    const testsupport::Table<QString, QString, QString, QString> row("left", "top", "size", "position");
    row("half outside", "-1500", "1500", "6000", "-100,100");
    row("left of the screen", "-60000", "1500", "6000", "0,0");
    row("only the title above the screen", "1500", "-3000", "6000", "0,0");
    row("beyond what window systems take", "1E+30", "1500", "6000", "0,0");
    row("no size", "1500", "1500", "0", "100,100");
    row("negative size", "1500", "1500", "-300", "100,100");
}

void FrmMainLifeTest::placeThatNobodyCouldReach() {
    QFETCH(QString, left);
    QFETCH(QString, top);
    QFETCH(QString, size);
    FrameFixture fixture;
    fixture.state.saveSetting(QStringLiteral("MainLeft"), left);
    fixture.state.saveSetting(QStringLiteral("MainTop"), top);
    fixture.state.saveSetting(QStringLiteral("MainWidth"), size);
    fixture.state.saveSetting(QStringLiteral("MainHeight"), size);
    fixture.frame.Form_Load();
    const QSize loaded = fixture.frame.size();
    fixture.frame.show();
    QTEST(QStringLiteral("%1,%2").arg(fixture.frame.x()).arg(fixture.frame.y()), "position");
    QCOMPARE(fixture.frame.size(), loaded);
}

void FrmMainLifeTest::badNumberLeavesTheSettingsAlone() {
    FrameFixture fixture;
    fixture.state.saveSetting(QStringLiteral("NumberRecShow"), QStringLiteral("many"));
    QVERIFY_EXCEPTION_THROWN(fixture.frame.Form_Load(), RuntimeError);
    fixture.frame.close();
    QCOMPARE(fixture.state.setting(QStringLiteral("NumberRecShow"), {}), QStringLiteral("many"));
    QCOMPARE(fixture.state.setting(QStringLiteral("Layout"), QStringLiteral("none")), QStringLiteral("none"));
    QVERIFY(fixture.frame.findChild<tw::frmFlash*>() == nullptr);
}

void FrmMainLifeTest::splashLeavesTheFrameAsItIs_data() {
    const testsupport::Table<bool> row("closed");
    row("shown", false);
    row("closed already", true);
}

void FrmMainLifeTest::splashLeavesTheFrameAsItIs() {
    QFETCH(bool, closed);
    FrameFixture fixture;
    fixture.start();
    QTRY_VERIFY(fixture.frame.findChild<tw::frmFlash*>() != nullptr);
    const QPointer<tw::frmFlash> flash = fixture.frame.findChild<tw::frmFlash*>();
    QVERIFY(flash->isVisible());
    QCOMPARE(flash->cursor().shape(), Qt::WaitCursor);
    if (closed) {
        fixture.frame.close();
        flash->close();
    }
    QTRY_VERIFY(flash.isNull() || closed);
    QCOMPARE(fixture.frame.isVisible(), !closed);
}

void FrmMainLifeTest::documentsCloseInAnyOrder_data() {
    const testsupport::Table<QList<int>> row("closedFirst");
    row("frame alone", {});
    row("oldest first", {0, 1, 2});
    row("newest first", {2, 1, 0});
    row("the middle one, then the frame", {1});
}

void FrmMainLifeTest::documentsCloseInAnyOrder() {
    QFETCH(QList<int>, closedFirst);
    FrameFixture fixture;
    fixture.start();
    QList<QPointer<QMdiSubWindow>> windows;
    for (const char* server : {"alpha", "", "gamma"}) {
        fixture.open(QString::fromLatin1(server));
        windows << fixture.frame.activeChild();
    }
    for (const int index : closedFirst) {
        windows.at(index)->close();
    }
    QCOMPARE(fixture.state.openDocuments, 3 - closedFirst.size());
    fixture.frame.close();
    QCOMPARE(fixture.state.openDocuments, 0);
    QCOMPARE(fixture.state.connectedDocuments, 0);
    QVERIFY(fixture.state.documents.all().empty());
    for (const auto& window : windows) {
        QTRY_VERIFY(window.isNull());
    }
}

void FrmMainLifeTest::closingWhileTheDialogIsOpen() {
    FrameFixture fixture;
    fixture.start();
    bool documentWent = false;
    fixture.frame.dialog = [&](tw::frmDocument& document) {
        const QPointer<tw::frmDocument> open(&document);
        fixture.connectTo(document, QStringLiteral("alpha"));
        fixture.frame.close();
        documentWent = QTest::qWaitFor([&] { return open.isNull(); });
        return true;
    };
    fixture.frame.mnuFileNew_Click();
    QVERIFY(documentWent);
    QCOMPARE(fixture.state.openDocuments, 0);
    QVERIFY(fixture.frame.activeChild() == nullptr);
}

void FrmMainLifeTest::quittingEndsTheDialogToo() {
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"));
    fixture.frame.dialog = nullptr;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &fixture.frame, [] {
        if (QApplication::activeModalWidget() != nullptr) QApplication::closeAllWindows();
    });
    timer.start(10);
    fixture.frame.mnuFileNew_Click();
    QVERIFY(!fixture.frame.isVisible());
    QCOMPARE(fixture.state.openDocuments, 0);
    QCOMPARE(fixture.state.connectedDocuments, 0);
    QVERIFY(fixture.state.cancelled);
}

void FrmMainLifeTest::settingsThatCannotBeWritten() {
    QList<qint32> failures;
    const auto previous =
        desktop::setUnhandledFailureHandler([&](const RuntimeError& error) { failures << error.number(); });
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"));
    QVERIFY(QFile::remove(fixture.store.filePath()));
    QVERIFY(QDir().mkpath(fixture.store.filePath()));
    fixture.frame.close();
    desktop::setUnhandledFailureHandler(previous);

    QCOMPARE(failures, QList<qint32>{platform::errors::PathFileAccess});
    QVERIFY(!fixture.frame.isVisible());
    QCOMPARE(fixture.state.openDocuments, 0);
}

void FrmMainLifeTest::frameThatWasNeverClosed() {
    QTemporaryDir folder;
    desktop::SettingsStore store(folder.filePath(QStringLiteral("settings.ini")));
    tw::AppState state(store);
    {
        TestFrame frame(state);
        frame.Form_Load();
        frame.mnuFileNew_Click();
        QCOMPARE(state.openDocuments, 1);
    }
    QCOMPARE(state.openDocuments, 0);
    QVERIFY(state.documents.all().empty());
}

QTEST_MAIN(FrmMainLifeTest)
#include "test_frmmainlife.moc"

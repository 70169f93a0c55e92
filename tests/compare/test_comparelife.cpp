// What can happen to a comparison while it runs.

#include "comparingframe.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/programend.h"
#include "support/answers.h"
#include "support/picking.h"
#include "support/rowtexts.h"
#include "support/table.h"

#include <QApplication>
#include <QCheckBox>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

class TestCompareLife : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void cleanup();
    void endsWhateverHappens_data();
    void endsWhateverHappens();
    void comparesInsideAnother_data();
    void comparesInsideAnother();
    void serverThatDies();
    void quietAfterClosing();
    void closedUnderAMessageBox();
    void closingTheResultClosesItsProgress();
    void endsWhileChoosing();
    void wholeRoad_data();
    void wholeRoad();

  private:
    testsupport::RunningSampleServer m_server;
};

/// A program that ended leaves later event loops told to quit.
void TestCompareLife::cleanup() {
    QGuiApplication::setQuitOnLastWindowClosed(true);
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
}

void TestCompareLife::endsWhateverHappens_data() {
    QTest::addColumn<QString>("event");
    QTest::addColumn<int>("atYield");
    for (const char* event : {"cancel", "cancel twice", "close progress", "close result", "destroy result",
                              "close all children", "close frame", "quit", "fail", "cancel a connection"}) {
        for (const int moment : {1, 2, 60, 250}) {
            QTest::addRow("%s at yield %d", event, moment) << QString::fromLatin1(event) << moment;
        }
    }
}

void TestCompareLife::endsWhateverHappens() {
    QFETCH(QString, event);
    QFETCH(int, atYield);
    testsupport::Answers answers;
    const desktop::ProgramEnd end;
    ComparingFrame comparing(m_server);
    const QPointer<tw::frmCompareResult> result = &comparing.show();
    const auto happens = [&](const char* name) { return event == QString::fromLatin1(name); };
    int rowsThen = 0;
    comparing.atYield(atYield, [&] {
        rowsThen = itemsOf(*result, 1).count() + itemsOf(*result, 2).count();
        if (happens("cancel")) clickClose(*result);
        if (happens("cancel twice")) {
            clickClose(*result);
            clickClose(*result);
        }
        if (happens("close progress")) progressOf(*result).close();
        if (happens("close result")) result->parentWidget()->close();
        if (happens("destroy result")) delete result->parentWidget();
        if (happens("close all children")) comparing.frame.area().closeAllSubWindows();
        if (happens("close frame")) comparing.frame.close();
        if (happens("quit")) QApplication::closeAllWindows();
        if (happens("fail")) desktop::guard([] { throw platform::RuntimeError(13, QStringLiteral("x")); });
        if (happens("cancel a connection")) comparing.state.cancelled = true;
    });
    result->Form_Load();
    if (happens("fail")) answers.takeBox();
    // The kinds that were still to come go up to their first test each.
    QVERIFY2(comparing.yields >= atYield && comparing.yields <= atYield + 3,
             qPrintable(QString::number(comparing.yields)));
    const bool stays = event.startsWith(QStringLiteral("c")) && !happens("close result") &&
                       !happens("close all children") && !happens("close frame");
    QCOMPARE(!result.isNull(), stays);
    if (!stays) return;
    QCOMPARE(textOf(progressOf(*result), "lblProgress"), QStringLiteral("Comparing databases cancelled."));
    QCOMPARE(progressOf(*result).findChild<QPushButton*>(QStringLiteral("cmdClose"))->text(),
             QStringLiteral("&Close"));
    QCOMPARE(progressOf(*result).isVisible(), !happens("cancel twice") && !happens("close progress"));
    QVERIFY(result->status().text().endsWith(QStringLiteral("Not complete: cancelled")));
    // The rows so far stay; what follows is headings only.
    QVERIFY(itemsOf(*result, 1).count() + itemsOf(*result, 2).count() >= rowsThen);
    QVERIFY(itemsOf(*result, 1).count() + itemsOf(*result, 2).count() <= rowsThen + 6);
}

void TestCompareLife::comparesInsideAnother_data() {
    const testsupport::Table<QString, QString, QString> row("event", "firstEnds", "secondEnds");
    row("nothing", "", "finished.", "finished.");
    row("the outer one has been cancelled", "cancel first", "cancelled.", "finished.");
    row("the inner result is closed", "close inner", "finished.", "");
    row("the inner one is cancelled", "cancel inner", "cancelled.", "cancelled.");
    row("the outer result is closed", "close outer", "", "finished.");
    row("the frame is closed", "close frame", "", "");
}

/// The flag is one for the whole program: whoever cancels one comparison cancels all that run, but not the
/// next one to start.
void TestCompareLife::comparesInsideAnother() {
    QFETCH(QString, event);
    QFETCH(QString, firstEnds);
    const testsupport::Answers noBoxes;
    ComparingFrame comparing(m_server);
    const QPointer<tw::frmCompareResult> first = &comparing.show();
    QString secondEnd;
    int rowsThen = 0;
    comparing.atYield(40, [&] {
        if (event == QStringLiteral("cancel first")) clickClose(*first);
        rowsThen = itemsOf(*first, 1).count();
        const QPointer<tw::frmCompareResult> second = &comparing.show();
        comparing.yields = 0;
        comparing.atYield(25, [&] {
            if (event == QStringLiteral("close inner")) second->parentWidget()->close();
            if (event == QStringLiteral("cancel inner")) clickClose(*second);
            if (event == QStringLiteral("close outer")) first->parentWidget()->close();
            if (event == QStringLiteral("close frame")) comparing.frame.close();
        });
        second->Form_Load();
        if (second) secondEnd = textOf(progressOf(*second), "lblProgress").section(u' ', -1);
    });
    first->Form_Load();
    QTEST(secondEnd, "secondEnds");
    QCOMPARE(first.isNull(), firstEnds.isEmpty());
    if (first.isNull()) return;
    QCOMPARE(textOf(progressOf(*first), "lblProgress").section(u' ', -1), firstEnds);
    QCOMPARE(itemsOf(*first, 1).count() > rowsThen + 3, firstEnds == QStringLiteral("finished."));
}

void TestCompareLife::serverThatDies() {
    testsupport::RunningSampleServer server;
    testsupport::Answers answers;
    ComparingFrame comparing(server);
    tw::frmCompareResult& result = comparing.show();
    comparing.atYield(100, [&] { server.kill(); });
    result.Form_Load();
    answers.takeBox();
    QCOMPARE(answers.boxes(), 0);
    QCOMPARE(textOf(progressOf(result), "lblProgress"), QStringLiteral("Comparing databases cancelled."));
    QVERIFY(result.status().text().endsWith(QStringLiteral("Not complete: the line to a server was lost")));
}

/// No table is read any more for a window that has gone, and no failure told.
void TestCompareLife::quietAfterClosing() {
    testsupport::Answers answers;
    ComparingFrame comparing(m_server);
    const QString broken = QStringLiteral("It's");
    const QPointer<tw::frmCompareResult> result = &comparing.show(broken, broken);
    comparing.atYield(1, [&] { comparing.frame.close(); });
    result->Form_Load();
    QVERIFY(result.isNull());
    QCOMPARE(answers.boxes(), 0);
}

/// The box of a database that may not be read shows before there is any progress.
void TestCompareLife::closedUnderAMessageBox() {
    testsupport::Answers answers;
    ComparingFrame comparing(m_server);
    const QPointer<tw::frmCompareResult> result = &comparing.show();
    result->DBConn1().setConnectionString(
        m_server.connectionString(QStringLiteral("clerk"), QStringLiteral("clerk")));
    result->DBConn1().setDatabase(QStringLiteral("Payroll"));
    answers.whileOpen([&](const auto&) { delete result; });
    result->Form_Load();
    QVERIFY(result.isNull());
    QCOMPARE(answers.boxes(), 1);
    answers.takeBox();
    for (const QWidget* window : QApplication::topLevelWidgets())
        QVERIFY(window->objectName() != QStringLiteral("frmCompareProgress"));
}

void TestCompareLife::closingTheResultClosesItsProgress() {
    ComparingFrame comparing(m_server);
    tw::frmCompareResult& result = comparing.show(QStringLiteral("Part"), QStringLiteral("Part"));
    result.Form_Load();
    const QPointer<QDialog> progress = &progressOf(result);
    result.parentWidget()->close();
    QVERIFY(progress.isNull() || !progress->isVisible());
    // Closing a comparison that has finished cancels nothing.
    QVERIFY(!comparing.state.cancelled);
    QTRY_VERIFY(progress.isNull());
}

void TestCompareLife::endsWhileChoosing() {
    ComparingFrame comparing(m_server);
    QTimer::singleShot(0, &comparing.frame, [] { QApplication::closeAllWindows(); });
    comparing.frame.mnuToolCompare_Click();
    QVERIFY(!comparing.frame.isVisible());
    QVERIFY(comparing.frame.findChild<tw::frmCompareResult*>() == nullptr);
}

void TestCompareLife::wholeRoad_data() {
    const testsupport::TextTable<QStringList> row("box", "headings");
    row("chkIndex", {"2 Indexes|Index Table|Index Column"});
    row("chkConstraint", {"1 Constraints|Constraint Table|Constraint Check"});
    row("chkForeignKey", {"3 Foreign Keys|Foreign Table|Foreign Column|Reference Table|Reference Column"});
}

/// From the command through the dialog to a comparison that serves real events, and out of it by the frame.
void TestCompareLife::wholeRoad() {
    QFETCH(QString, box);
    const testsupport::Answers noBoxes;
    ComparingFrame comparing(m_server);
    comparing.activeDocument().connection()->setConnectionString(m_server.connectionString());
    QTimer user;
    bool sawRows = false;
    const QRect document = comparing.frame.activeChild()->geometry();
    connect(&user, &QTimer::timeout, this, [&] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            for (const char* name : {"Server1", "Server2", "Database1", "Database2"}) {
                auto* list = dialog->findChild<QComboBox*>(QStringLiteral("cb") + name);
                QVERIFY(testsupport::pick(
                    *list, name[0] == 'S' ? m_server.serverText() : QStringLiteral("Workshop")));
            }
            dialog->findChild<QCheckBox*>(box)->click();
            dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
            return;
        }
        const auto* result = comparing.frame.findChild<tw::frmCompareResult*>();
        if (result != nullptr && itemsOf(*result, 1).count() > 0) sawRows = true;
    });
    user.start(0);
    comparing.frame.tbToolBar_ButtonClick(QStringLiteral("Compare"));
    QVERIFY(sawRows);
    const auto* result = comparing.frame.findChild<tw::frmCompareResult*>();
    QTEST(testsupport::rowsOf(itemsOf(*result, 1)).filter(QRegularExpression(QStringLiteral("^[1-3] "))),
          "headings");
    QCOMPARE(result->parentWidget()->geometry(),
             tw::frmCompareResult::placeIn(comparing.frame.frameGeometry(), false, document));
    comparing.frame.close();
    QVERIFY(!comparing.frame.isVisible());
    QTRY_VERIFY(comparing.frame.findChild<tw::frmCompareResult*>() == nullptr);
}

QTEST_MAIN(TestCompareLife)
#include "test_comparelife.moc"

#include "compare/comparepanes.h"
#include "compare/comparison.h"
#include "comparingframe.h"
#include "platform/desktop/twips.h"
#include "support/answers.h"
#include "support/rowtexts.h"
#include "support/table.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>

using desktop::toPixels;

namespace {

QRect placeOf(const tw::frmCompareResult& result, const char* name) {
    return result.findChild<QWidget*>(QString::fromLatin1(name))->geometry();
}

QStringList rowsWith(const controls::ListItems& items, int icon) {
    return testsupport::rowsOf(items).filter(QRegularExpression(QStringLiteral("^%1 ").arg(icon)));
}

int rightOf(const QRect& rectangle) {
    return rectangle.x() + rectangle.width();
}
int below(const QRect& rectangle) {
    return rectangle.y() + rectangle.height();
}

/// A finished comparison in the active window.
struct Compared {
    explicit Compared(const testsupport::SampleServerProcess& server)
        : comparing(server), result(comparing.show()) {
        result.Form_Load();
        for (const int system : {1, 2})
            itemsOf(result, system).notifyViews();
        progressOf(result).close();
        QCoreApplication::processEvents();
        for (QWidget* splash : comparing.frame.findChildren<QWidget*>(QStringLiteral("frmFlash")))
            splash->close();
        listOf(result, 1).setFocus();
        comparing.frame.activateWindow();
        if (!QTest::qWaitForWindowActive(&comparing.frame)) qFatal("The frame is not active.");
    }
    /// The rows to be seen, each its icon and its name.
    QStringList shown(int system) const {
        QStringList rows;
        const controls::ListItems& items = itemsOf(result, system);
        for (int row = 0; row < items.rowCount(); ++row)
            rows += QStringLiteral("%1 %2")
                        .arg(items.icon(items.itemOf(row)))
                        .arg(items.index(row, 0).data().toString());
        return rows;
    }

    ComparingFrame comparing;
    tw::frmCompareResult& result;
};

}  // namespace

class TestCompareResult : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void goesToItsPlace_data();
    void goesToItsPlace();
    void standsSideBySide();
    void standsOneAboveTheOther();
    void followsTheLayout();
    void comparesDatabases();
    void showsDifferencesOnly();
    void goesThroughDifferences();
    void linksLists_data();
    void linksLists();
    void savesWhatIsShown();
    void queriesSystem1();

  private:
    testsupport::RunningSampleServer m_server;
};

void TestCompareResult::goesToItsPlace_data() {
    const testsupport::Table<QRect, bool, QRect> row("frame", "maximised", "place");
    // The active child stands at 30, 45: 450 and 675 twips.
    row("normal", QRect(100, 120, 800, 600), false, QRect(33, 48, 600, 300));
    row("maximised", QRect(0, 0, 1001, 701), true, QRect(1, 1, 751, 351));
    row("left of the screen", QRect(-8, 10, 800, 600), false, QRect(1, 48, 600, 300));
    row("above the screen", QRect(10, -1, 800, 600), false, QRect(33, 1, 600, 300));
}

void TestCompareResult::goesToItsPlace() {
    QFETCH(QRect, frame);
    QFETCH(bool, maximised);
    QFETCH(QRect, place);
    QCOMPARE(tw::frmCompareResult::placeIn(frame, maximised, QRect(30, 45, 300, 300)), place);
}

void TestCompareResult::standsSideBySide() {
    ComparingFrame comparing(m_server, 2);
    tw::frmCompareResult& result = comparing.show();
    result.parentWidget()->resize(700, 450);
    const int width = result.width();
    QCOMPARE(placeOf(result, "imgSplitter").x(), width / 2);
    QVERIFY(result.findChild<QWidget*>(QStringLiteral("imgSplitter"))->isVisible());
    QVERIFY(!result.findChild<QWidget*>(QStringLiteral("imgSplitter2"))->isVisible());

    for (const auto& [asked, position] :
         {std::pair{3000, 3000}, {100, 1500}, {100000, desktop::toTwips(width) - 1500}}) {
        int x = asked;
        result.panes().SizeControls(x);
        QCOMPARE(x, position);
        const QRect first = placeOf(result, "lvSystem1");
        const QRect second = placeOf(result, "lvSystem2");
        QCOMPARE(first.width(), toPixels(position));
        QCOMPARE(placeOf(result, "imgSplitter").x(), toPixels(position));
        QCOMPARE(second.x(), toPixels(position + 40));
        QCOMPARE(rightOf(second), toPixels(desktop::toTwips(width) - 100));
        QCOMPARE(first.y(), below(placeOf(result, "picTitles")));
        QCOMPARE(below(first), result.height());
        QCOMPARE(below(second), result.height());
        QCOMPARE(placeOf(result, "lblTitle0").width(), toPixels(position - 30));
        QCOMPARE(placeOf(result, "lblTitle1").x(), toPixels(position + 60));
        QCOMPARE(rightOf(placeOf(result, "lblTitle1")), toPixels(desktop::toTwips(width) + 20));
    }
    QWidget* handle = result.findChild<QWidget*>(QStringLiteral("imgSplitter"));
    QTest::mousePress(handle, Qt::LeftButton, {}, {0, 0});
    QVERIFY(result.findChild<QWidget*>(QStringLiteral("picSplitter"))->isVisible());
    QTest::mouseMove(handle, {-handle->x() + 220, 0});
    QTest::mouseRelease(handle, Qt::LeftButton, {}, {0, 0});
    QCOMPARE(placeOf(result, "lvSystem1").width(), 220);
    handle->setFocus();
    QTest::keyClick(handle, Qt::Key_Right);
    QCOMPARE(placeOf(result, "lvSystem1").width(), 235);
    QTest::keyClick(handle, Qt::Key_Left);
    QCOMPARE(placeOf(result, "lvSystem1").width(), 220);
}

void TestCompareResult::standsOneAboveTheOther() {
    ComparingFrame comparing(m_server);
    tw::frmCompareResult& result = comparing.show();
    result.parentWidget()->resize(700, 450);
    QVERIFY(!result.findChild<QWidget*>(QStringLiteral("imgSplitter"))->isVisible());
    QCOMPARE(placeOf(result, "imgSplitter2").y(), result.height() / 2);
    for (const auto& [asked, position] :
         {std::pair{3000, 3000}, {0, 1500}, {100000, desktop::toTwips(result.height()) - 1500}}) {
        int y = asked;
        result.panes().SizeControls2(y);
        QCOMPARE(y, position);
        QCOMPARE(placeOf(result, "lvSystem1").y(), below(placeOf(result, "picTitles")));
        QCOMPARE(below(placeOf(result, "lvSystem1")), toPixels(position));
        QCOMPARE(placeOf(result, "imgSplitter2").y(), toPixels(position));
        QCOMPARE(placeOf(result, "lvSystem2").y(), below(placeOf(result, "lblTitle2")));
        QCOMPARE(below(placeOf(result, "lvSystem2")), result.height());
    }
    result.parentWidget()->resize(10, 10);
    QCOMPARE(result.size(), QSize(toPixels(3000), toPixels(3000)));
}

void TestCompareResult::followsTheLayout() {
    ComparingFrame comparing(m_server);
    const tw::frmCompareResult& result = comparing.show();
    comparing.frame.SetMenuAndToolBarControls();
    comparing.action("mnuViewVertical")->trigger();
    QCOMPARE(placeOf(result, "lvSystem1").y(), placeOf(result, "lvSystem2").y());
    QVERIFY(result.findChild<QLabel*>(QStringLiteral("lblTitle1"))->isVisible());
    QVERIFY(!result.findChild<QLabel*>(QStringLiteral("lblTitle2"))->isVisible());
    comparing.action("mnuViewHorizontal")->trigger();
    QCOMPARE(placeOf(result, "lvSystem1").x(), placeOf(result, "lvSystem2").x());
    QVERIFY(!result.findChild<QLabel*>(QStringLiteral("lblTitle1"))->isVisible());
    QVERIFY(result.findChild<QLabel*>(QStringLiteral("lblTitle2"))->isVisible());
}

void TestCompareResult::comparesDatabases() {
    ComparingFrame comparing(m_server);
    tw::frmCompareResult& result = comparing.show();
    result.Form_Load();
    QCOMPARE(result.windowTitle(), QStringLiteral("Databases Comparison Result"));
    QCOMPARE(result.getModuleName(), QStringLiteral("frmCompareResult"));
    QCOMPARE(result.queryConnection().get(), &result.DBConn1());
    const QString title1 = m_server.serverText() + QStringLiteral(" - Workshop - (All Tables)");
    const QString title2 = m_server.serverText() + QStringLiteral(" - Workshop2 - (All Tables)");
    QCOMPARE(textOf(result, "lblTitle0"), title1);
    QCOMPARE(textOf(result, "lblTitle1"), title2);
    QCOMPARE(textOf(result, "lblTitle2"), title2);

    const QDialog& progress = progressOf(result);
    QVERIFY(progress.isVisible());
    QCOMPARE(textOf(progress, "lblSystem1"), title1);
    QCOMPARE(textOf(progress, "lblSystem2"), title2);
    QCOMPARE(textOf(progress, "lblProgress"), QStringLiteral("Comparing databases finished."));
    QCOMPARE(textOf(progress, "lblCompareItem"), QStringLiteral("Finished"));

    const controls::ListItems& items1 = itemsOf(result, 1);
    const controls::ListItems& items2 = itemsOf(result, 2);
    for (const int kind : {tw::Comparison::Constraint, tw::Comparison::Index, tw::Comparison::ForeignKey})
        QCOMPARE(rowsWith(items1, kind).size(), 1);
    const QString table = QStringLiteral("4 Table: OpeningHours|Data type|Nullable|Foreign key");
    QVERIFY(rowsWith(items1, tw::Comparison::Table).contains(table));
    QVERIFY(!rowsWith(items2, tw::Comparison::Table).contains(table));
    // What the window counted is what the lists hold.
    QCOMPARE(textOf(progress, "lblNumMatch").toInt(), rowsWith(items1, tw::Comparison::Matched).size());
    QCOMPARE(textOf(progress, "lblNumUnmatch").toInt(),
             rowsWith(items1, tw::Comparison::Unmatched).size() +
                 rowsWith(items2, tw::Comparison::Unmatched).size());
    QCOMPARE(result.status().text(),
             QStringLiteral("Matched: %1    Unmatched: %2    Complete")
                 .arg(textOf(progress, "lblNumMatch"), textOf(progress, "lblNumUnmatch")));
    QTRY_COMPARE(listOf(result, 1).model()->rowCount(), items1.count());
    QStringList marks;
    for (int row = 0; row < items1.count(); ++row)
        marks.append(items1.markWord(row));
    marks.removeDuplicates();
    QCOMPARE(marks.join(u'|'), QStringLiteral("heading of indexes|matched|unmatched|heading of constraints|"
                                              "heading of foreign keys|heading of a table"));
}

void TestCompareResult::showsDifferencesOnly() {
    Compared compared(m_server);
    desktop::ListView& list = listOf(compared.result, 1);
    const QStringList all = compared.shown(1);
    list.selectRow(static_cast<int>(all.indexOf(QStringLiteral("4 Table: Part"))));
    QTest::keyClick(&list, Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(list.currentIndex().data().toString(), QStringLiteral("Table: Part"));
    for (const int system : {1, 2}) {
        const QStringList rows = compared.shown(system);
        QCOMPARE(rows.filter(QRegularExpression(QStringLiteral("^6 "))).size(),
                 rowsWith(itemsOf(compared.result, system), tw::Comparison::Unmatched).size());
        QVERIFY(rows.filter(QRegularExpression(QStringLiteral("^5 "))).isEmpty());
        QVERIFY(!rows.contains(QStringLiteral("4 Table: Supplier")));
        // What differs on the other side only has its heading here, too.
        QVERIFY(rows.contains(QStringLiteral("4 Table: PartCategory")));
    }
    list.selectAll();
    QCOMPARE(list.selectedText().count(u'\n'), compared.shown(1).size());
    QTest::keyClick(&list, Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(compared.shown(1), all);
}

void TestCompareResult::savesWhatIsShown() {
    Compared compared(m_server);
    desktop::ListView& list = listOf(compared.result, 1);
    testsupport::Answers answers;
    const QString path = compared.comparing.folder.filePath(QStringLiteral("result.json"));
    const auto save = [&](const QString& to) {
        answers.saveAs(to);
        QTest::keyClick(&list, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(answers.takeSaveFile().suggestedName, QStringLiteral("Workshop and Workshop2"));
    };
    const auto saved = [&] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    };
    save(path);
    QCOMPARE(saved().value(QStringLiteral("complete")), QJsonValue(true));
    QCOMPARE(saved().value(QStringLiteral("unmatched")).toInt(), 69);
    QTest::keyClick(&list, Qt::Key_D, Qt::ControlModifier);
    save(path);  // which is there already, and not to be replaced
    QVERIFY(answers.takeBox().text.startsWith(path));
    QVERIFY(!saved().value(QStringLiteral("differencesOnly")).toBool());
    answers.press(desktop::MsgBoxResult::Ok);
    save(path);
    answers.takeBox();
    QVERIFY(saved().value(QStringLiteral("differencesOnly")).toBool());
    save(QStringLiteral("/nowhere/x.csv"));
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("mnuSaveAs_Click of module frmCompareResult")));
}

void TestCompareResult::goesThroughDifferences() {
    Compared compared(m_server);
    const auto active = [&] {
        return &listOf(compared.result, listOf(compared.result, 2).hasFocus() ? 2 : 1);
    };
    const auto walk = [&](Qt::KeyboardModifiers modifiers) {
        QStringList rows;
        for (;;) {
            QTest::keyClick(active(), Qt::Key_F8, modifiers);
            const QString row = active()->objectName() + QString::number(active()->currentIndex().row()) +
                                active()->selectedText();
            if (!rows.isEmpty() && row == rows.last()) return rows;
            rows += row;
        }
    };
    const QStringList forward = walk({});
    QCOMPARE(forward.size(), textOf(progressOf(compared.result), "lblNumUnmatch").toInt());
    QCOMPARE(forward.filter(QStringLiteral("\tunmatched\n")).size(), forward.size());
    QStringList backward = walk(Qt::ShiftModifier);
    std::ranges::reverse(backward);
    QCOMPARE(backward, forward.first(forward.size() - 1));
}

void TestCompareResult::linksLists_data() {
    const testsupport::Table<int, QString, QString> row("system", "row", "partner");
    row("equal", 1, QStringLiteral("5 PK_Invoice"), QStringLiteral("5 PK_Invoice"));
    row("heading", 1, QStringLiteral("4 Table: Part"), QStringLiteral("4 Table: Part"));
    row("from the other side", 2, QStringLiteral("4 Table: Part"), QStringLiteral("4 Table: Part"));
    row("of another type", 1, QStringLiteral("6 HourlyRate"), QStringLiteral("6 HourlyRate"));
    row("behind the same neighbour", 1, QStringLiteral("6 Note"), QStringLiteral("6 Since"));
    row("behind a neighbour further up", 2, QStringLiteral("6 PK_ClosedDay"),
        QStringLiteral("5 UQ_Bicycle_FrameNo"));
}

void TestCompareResult::linksLists() {
    QFETCH(int, system);
    QFETCH(QString, row);
    Compared compared(m_server);
    desktop::ListView& leader = listOf(compared.result, system);
    desktop::ListView& follower = listOf(compared.result, 3 - system);
    leader.setFocus();
    leader.selectRow(static_cast<int>(compared.shown(system).indexOf(row)));
    const auto current = [&] {
        return follower.currentIndex().isValid()
                   ? compared.shown(3 - system).at(follower.currentIndex().row())
                   : QString();
    };
    QFETCH(QString, partner);
    QTRY_COMPARE(current(), partner);
    leader.verticalScrollBar()->setValue(70);
    const auto atTop = [](const desktop::ListView& list) {
        return list.model()->index(list.rowAt(0), 0).data().toString();
    };
    QTRY_COMPARE(atTop(follower), atTop(leader));
    QTest::keyClick(&leader, Qt::Key_L, Qt::ControlModifier);
    const QString before = atTop(follower);
    leader.verticalScrollBar()->setValue(40);
    QCoreApplication::processEvents();
    QCOMPARE(atTop(follower), before);
}

void TestCompareResult::queriesSystem1() {
    ComparingFrame comparing(m_server);
    tw::frmCompareResult& result = comparing.show();
    result.DBConn1().setServer(QStringLiteral("the first"));
    comparing.frame.mnuToolQuery_Click();
    QCOMPARE(comparing.frame.activeChild()->widget()->windowTitle(),
             QStringLiteral("Query Window 1 - the first"));
}

QTEST_MAIN(TestCompareResult)
#include "test_compareresult.moc"

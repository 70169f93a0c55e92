#include "compare/comparepanes.h"
#include "compare/comparison.h"
#include "comparingframe.h"
#include "platform/desktop/twips.h"
#include "support/rowtexts.h"
#include "support/table.h"

#include <QRegularExpression>
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

    // The connections are the program's.
    QVERIFY(comparing.state.connectionPool->count() > 0);

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
    QTRY_COMPARE(listOf(result, 1).model()->rowCount(), items1.count());
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

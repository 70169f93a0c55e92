#include "platform/desktop/caption.h"
#include "platform/desktop/mdiarrangement.h"
#include "platform/desktop/twips.h"
#include "platform/runtimeerror.h"
#include "support/table.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

#include <algorithm>
#include <map>
#include <numeric>

class MdiArrangementTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void arrowKeysMoveAndSize();
    void tilesCoverTheArea();
    void tilesOfManyChildren();
    void cascadeStaysInside();
    void iconsFillRowsUpwards();
    void centring_data();
    void centring();
    void arrangesTheArea();
    void restoresMaximisedChild();
    void manyChildrenKeepTheirSmallestSize();
};

void MdiArrangementTest::tilesCoverTheArea() {
    const QSize area(1001, 703);
    // How many children, and in how many lines they stand.
    const std::map<int, int> linesOf{{1, 1}, {2, 1}, {3, 1}, {4, 2}, {7, 2}, {10, 3}, {37, 6}};
    for (const auto& [count, lines] : linesOf) {
        for (const bool stacked : {true, false}) {
            const auto tiles = desktop::arrangement::tiles(area, count, stacked);
            QCOMPARE(int(tiles.size()), count);
            QRegion covered;
            qint64 pixels = 0;
            int atTheEdge = 0;
            for (const QRect& tile : tiles) {
                covered += tile;
                pixels += qint64(tile.width()) * tile.height();
                atTheEdge += stacked ? tile.top() == 0 : tile.left() == 0;
            }
            QCOMPARE(covered, QRegion(QRect(QPoint(), area)));
            QCOMPARE(pixels, qint64(area.width()) * area.height());
            QCOMPARE(atTheEdge, lines);
        }
    }
}

void MdiArrangementTest::tilesOfManyChildren() {
    // More children than pixels, and an area that is not laid out yet: nothing breaks.
    QCOMPARE(desktop::arrangement::tiles(QSize(3, 3), 100, true).size(), size_t(100));
    QCOMPARE(desktop::arrangement::tiles(QSize(0, 0), 2, false).size(), size_t(2));
    QVERIFY(desktop::arrangement::tiles(QSize(10, 10), 0, true).empty());
}

void MdiArrangementTest::cascadeStaysInside() {
    const QRect area(0, 0, 800, 600);
    const auto places = desktop::arrangement::cascade(area.size(), 20, 25);
    QCOMPARE(places.size(), size_t(20));
    QCOMPARE(places[0].topLeft(), QPoint(0, 0));
    QCOMPARE(places[1].topLeft(), QPoint(25, 25));
    QVERIFY(
        std::all_of(places.begin(), places.end(), [&](const QRect& place) { return area.contains(place); }));
    QVERIFY(std::count(places.begin(), places.end(), places[0]) > 1);
}

void MdiArrangementTest::iconsFillRowsUpwards() {
    const auto places = desktop::arrangement::icons(QSize(350, 200), 4, QSize(160, 24));
    const std::vector<QPoint> expected = {{0, 176}, {160, 176}, {0, 152}, {160, 152}};
    QCOMPARE(places, expected);
}

void MdiArrangementTest::centring_data() {
    const testsupport::Table<double, double, double> row("outside", "inside", "position");
    row("the half stays", 9000.0, 6015.0, 1492.5);
    row("larger than the area", 3000.0, 6015.0, -1507.5);
    row("rounded before halving", 100.0, 0.6, 49.5);
}

void MdiArrangementTest::centring() {
    QFETCH(double, outside);
    QFETCH(double, inside);
    QTEST(desktop::centredPosition(outside, inside), "position");
}

namespace {

// An area with children of which the last but one is active and the first minimised.
struct Frame {
    QMdiArea area;
    std::vector<QMdiSubWindow*> children;

    explicit Frame(int count) {
        area.resize(1000, 700);
        for (int child = 0; child < count; ++child) {
            children.push_back(area.addSubWindow(new QWidget));
            children.back()->resize(200, 150);
        }
        area.show();
        children.front()->showMinimized();
        area.setActiveSubWindow(active());
    }
    QMdiSubWindow* active() const { return children[children.size() - 2]; }
};

}  // namespace

void MdiArrangementTest::arrangesTheArea() {
    Frame frame(4);
    const int width = frame.area.viewport()->width();
    const int height = frame.area.viewport()->height();
    const int iconTop = height - frame.children.front()->height();

    desktop::tileHorizontally(frame.area);
    QCOMPARE(frame.active()->pos(), QPoint(0, 0));
    for (size_t child = 1; child < 4; ++child) {
        QCOMPARE(frame.children[child]->width(), width);
        QVERIFY(frame.children[child]->geometry().bottom() < iconTop);
    }
    QVERIFY(frame.children.front()->isMinimized());
    QCOMPARE(frame.children.front()->pos(), QPoint(0, iconTop));

    desktop::tileVertically(frame.area);
    QCOMPARE(frame.active()->pos(), QPoint(0, 0));
    QCOMPARE(frame.children[1]->height(), iconTop);

    desktop::cascade(frame.area);
    QCOMPARE(frame.area.subWindowList(QMdiArea::StackingOrder).last(), frame.active());
    QVERIFY(frame.active()->x() > frame.children[1]->x());
    QCOMPARE(frame.area.activeSubWindow(), frame.active());

    frame.children.front()->move(300, 100);
    desktop::arrangeIcons(frame.area);
    QCOMPARE(frame.children.front()->pos(), QPoint(0, iconTop));
}

void MdiArrangementTest::restoresMaximisedChild() {
    Frame frame(3);
    frame.active()->showMaximized();
    desktop::tileVertically(frame.area);
    QVERIFY(!frame.active()->isMaximized());
    QCOMPARE(frame.active()->width(), frame.area.viewport()->width() / 2);
    QVERIFY(frame.children.front()->isMinimized());
}

void MdiArrangementTest::manyChildrenKeepTheirSmallestSize() {
    QMdiArea area;
    area.resize(600, 400);
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    std::vector<QMdiSubWindow*> children;
    for (int child = 0; child < 9; ++child) {
        children.push_back(area.addSubWindow(new QWidget));
        children.back()->widget()->setMinimumSize(150, 200);
    }
    area.show();
    desktop::tileHorizontally(area);
    for (const QMdiSubWindow* child : children) {
        QVERIFY(child->rect().contains(child->widget()->geometry()));
    }
    // Each column's title bars lie above what hangs over them, but for the active child, which is on top.
    QList<QMdiSubWindow*> expected = area.subWindowList(QMdiArea::ActivationHistoryOrder);
    std::reverse(expected.begin(), expected.end());
    expected.append(expected.takeFirst());
    QCOMPARE(area.subWindowList(QMdiArea::StackingOrder), expected);
    QTRY_VERIFY(area.verticalScrollBar()->isVisible());
    // The scroll bar that the tall ones brought takes no room from the next arrangement.
    for (const QMdiSubWindow* child : children) {
        child->widget()->setMinimumSize(0, 0);
    }
    desktop::tileHorizontally(area);
    QRect covered;
    for (const QMdiSubWindow* child : children) {
        covered |= child->geometry();
    }
    QCOMPARE(covered.size(), area.maximumViewportSize());
}

void MdiArrangementTest::arrowKeysMoveAndSize() {
    QMdiArea area;
    area.resize(600, 400);
    QMdiSubWindow* child = desktop::addCaptioned(area, new QWidget);
    area.show();
    child->setGeometry(50, 60, 300, 200);
    const auto after = [&](const char* command) {
        for (QAction* action : child->systemMenu()->actions())
            if (action->text() == QLatin1String(command)) action->trigger();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(child, Qt::Key_Right);
        QTest::keyClick(child, Qt::Key_Up, Qt::ShiftModifier);
        QTest::keyClick(child, Qt::Key_Return);
        QTest::keyClick(child, Qt::Key_Right);
        return child->geometry();
    };
    QCOMPARE(after("&Move"), QRect(65, 40, 300, 200));
    QCOMPARE(after("&Size"), QRect(65, 40, 315, 180));
}

QTEST_MAIN(MdiArrangementTest)
#include "test_mdiarrangement.moc"

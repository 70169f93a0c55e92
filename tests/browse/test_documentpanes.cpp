#include "browse/documentpanes.h"
#include "desk.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/twips.h"
#include "support/table.h"

#include <QTest>

#include <utility>
#include <vector>

using desktop::toPixels;
using desktop::toTwips;

namespace {

using Span = std::pair<int, int>;

/// A window of 9000 by 6000 twips (600 by 400 pixels).
struct Window : Desk {
    explicit Window(qint16 layout, QSize size = {600, 400}) {
        state.options.Layout = layout;
        document->resize(size);
        document->show();
    }
    QRect place(const char* name) const {
        return document->findChild<QWidget*>(QString::fromLatin1(name))->geometry();
    }
    QWidget* part(const char* name) const { return document->findChild<QWidget*>(QString::fromLatin1(name)); }
};

int below(const QRect& rectangle) {
    return rectangle.y() + rectangle.height();
}

}  // namespace

class TestDocumentPanes : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void arrangesPanes_data();
    void arrangesPanes();
    void limitsSplitters_data();
    void limitsSplitters();
    void centresSplittersOnResize();
    void dragsSplitter_data();
    void dragsSplitter();
    void marksCutTitles();
};

void TestDocumentPanes::arrangesPanes_data() {
    // Left edge and width of each part that the splitter across moves: lblTitle0, lblTitle1, tvDB, lvTblDef,
    // lvTblData.
    const testsupport::Table<int, QSize, QPoint, std::vector<Span>> row("layout", "size", "splitters",
                                                                        "across");
    const QSize usual(1000, 700);
    const QSize smallest(200, 200);
    row("usual, horizontal", 1, usual, {500, 350}, {{0, 499}, {504, 489}, {0, 500}, {503, 490}, {0, 995}});
    row("usual, vertical", 2, usual, {500, 350}, {{0, 499}, {504, 489}, {0, 500}, {503, 490}, {503, 490}});
    row("smallest, horizontal", 1, smallest, {100, 100}, {{0, 99}, {104, 89}, {0, 100}, {103, 90}, {0, 195}});
    row("smallest, vertical", 2, smallest, {100, 100}, {{0, 99}, {104, 89}, {0, 100}, {103, 90}, {103, 90}});
}

void TestDocumentPanes::arrangesPanes() {
    QFETCH(int, layout);
    QFETCH(QSize, size);
    QFETCH(QPoint, splitters);
    const Window window(static_cast<qint16>(layout), size);
    std::vector<Span> across;
    for (const char* name : {"lblTitle0", "lblTitle1", "tvDB", "lvTblDef", "lvTblData"})
        across.emplace_back(window.place(name).x(), window.place(name).width());
    QTEST(across, "across");
    QCOMPARE(window.place("imgSplitter").x(), splitters.x());
    QCOMPARE(window.place("imgSplitter2").y(), splitters.y());

    const QRect tree = window.place("tvDB");
    const QRect definitions = window.place("lvTblDef");
    const QRect data = window.place("lvTblData");
    const QRect title = window.place("lblTitle2");
    const int titleHeight = window.part("lblTitle2")->sizeHint().height();
    QCOMPARE(window.place("picTitles"), QRect(0, 0, size.width(), titleHeight));
    QCOMPARE(tree.y(), titleHeight);
    QCOMPARE(definitions.y(), titleHeight);
    QCOMPARE(below(tree), layout == 1 ? splitters.y() : size.height());
    QCOMPARE(below(definitions), splitters.y());
    QCOMPARE(title.x(), layout == 1 ? 0 : window.place("lblTitle1").x());
    QCOMPARE(title.right(), data.right());
    QCOMPARE(title.y(), splitters.y() + 4);
    QCOMPARE(title.height(), titleHeight);
    QCOMPARE(data.y(), below(title));
    QCOMPARE(below(data), size.height());

    std::vector<QWidget*> parts;
    for (const char* name : {"lblTitle0", "lblTitle1", "lblTitle2", "tvDB", "lvTblDef", "lvTblData"})
        parts.push_back(window.part(name));
    // The splitters' handles are left where the user can reach them, or at an edge.
    for (const int x : {0, size.width() / 3, size.width()}) {
        for (const int y : {0, size.height() / 3, size.height()}) {
            QPoint wanted(toTwips(x), toTwips(y));
            window.document->panes().SizeControls(wanted.rx());
            window.document->panes().SizeControls2(wanted.ry());
            for (const QWidget* one : parts) {
                const QRect place(one->mapTo(window.document.get(), QPoint()), one->size());
                QVERIFY2(QRect({}, size).contains(place), qUtf8Printable(one->objectName()));
                for (const QWidget* other : parts) {
                    const QRect otherPlace(other->mapTo(window.document.get(), QPoint()), other->size());
                    QVERIFY2(one == other || !place.intersects(otherPlace),
                             qUtf8Printable(one->objectName() + u' ' + other->objectName()));
                }
            }
        }
    }
}

void TestDocumentPanes::limitsSplitters_data() {
    const testsupport::Table<QPoint, QPoint> row("wanted", "given");
    // Of a window of 15000 by 10500 twips.
    row("inside", QPoint(1500, 9000), QPoint(1500, 9000));
    row("too near the start", QPoint(1499, -20), QPoint(1500, 1500));
    row("too near the end", QPoint(13501, 20000), QPoint(13500, 9000));
}

void TestDocumentPanes::limitsSplitters() {
    QFETCH(QPoint, wanted);
    const Window window(1, {1000, 700});
    window.document->panes().SizeControls(wanted.rx());
    window.document->panes().SizeControls2(wanted.ry());
    QTEST(wanted, "given");
    QCOMPARE(window.place("tvDB").width(), toPixels(wanted.x()));
}

void TestDocumentPanes::centresSplittersOnResize() {
    Window window(1);
    int x = 2000;
    window.document->panes().SizeControls(x);
    window.document->resize(640, 480);
    QCOMPARE(window.place("imgSplitter").x(), 320);
    QCOMPARE(window.place("imgSplitter2").y(), 240);
    window.state.options.Layout = 2;
    window.document->Form_Resize();
    QCOMPARE(window.place("lvTblData").x(), window.place("lvTblDef").x());
    window.document->resize(10, 10);
    QCOMPARE(window.document->size(), QSize(200, 200));
}

void TestDocumentPanes::dragsSplitter_data() {
    const testsupport::Table<QString, int, int, int> row("handle", "to", "bar", "splitter");
    row("sideways", "imgSplitter", 200, 3000, 3000);
    row("to the far left", "imgSplitter", 0, 500, 1500);
    row("beyond the right", "imgSplitter", 700, 8500, 7500);
    row("up", "imgSplitter2", 150, 2250, 2250);
    row("near the bottom", "imgSplitter2", 390, 5500, 4500);
}

void TestDocumentPanes::dragsSplitter() {
    QFETCH(QString, handle);
    QFETCH(int, to);
    QFETCH(int, bar);
    QFETCH(int, splitter);
    const Window window(2);
    const bool sideways = handle == QStringLiteral("imgSplitter");
    QWidget* grip = window.part(sideways ? "imgSplitter" : "imgSplitter2");
    QWidget* shown = window.part(sideways ? "picSplitter" : "picSplitter2");
    const auto along = [&](const QWidget* widget) { return sideways ? widget->x() : widget->y(); };
    const auto otherPosition = [&] {
        return sideways ? window.place("imgSplitter2").y() : window.place("imgSplitter").x();
    };
    const int other = otherPosition();
    const int paneBefore = window.place("tvDB").width();

    QTest::mousePress(grip, Qt::LeftButton, {}, {0, 0});
    QVERIFY(shown->isVisible());
    QCOMPARE(shown->geometry(), grip->geometry());
    const int offset = to - along(grip);
    QTest::mouseMove(grip, sideways ? QPoint(offset, 0) : QPoint(0, offset));
    QCOMPARE(along(shown), toPixels(bar));
    QCOMPARE(window.place("tvDB").width(), paneBefore);
    QTest::mouseRelease(grip, Qt::LeftButton, {}, {0, 0});
    QVERIFY(!shown->isVisible());
    QCOMPARE(along(grip), toPixels(splitter));
    QCOMPARE(otherPosition(), other);
}

void TestDocumentPanes::marksCutTitles() {
    const Window window(2);
    desktop::TitleLabel& title = window.document->panes().lblTitle(1);
    const QString whole = QStringLiteral("Table Definition: ") + QString(200, u'x');
    title.setText(whole);
    QVERIFY(title.shownText().endsWith(u'\u2026'));
    QCOMPARE(title.text(), whole);
    title.setText(QStringLiteral("Short"));
    QCOMPARE(title.shownText(), QStringLiteral("Short"));
}

QTEST_MAIN(TestDocumentPanes)
#include "test_documentpanes.moc"

#include "browse/documentpanes.h"
#include "desk.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/twips.h"

#include <QTest>

using desktop::toPixels;
using desktop::toTwips;

namespace {

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

int rightOf(const QRect& rectangle) {
    return rectangle.x() + rectangle.width();
}
int below(const QRect& rectangle) {
    return rectangle.y() + rectangle.height();
}

}  // namespace

class TestDocumentPanes : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void arrangesPanes_data();
    void arrangesPanes();
    void centresSplittersOnResize();
    void dragsSplitter_data();
    void dragsSplitter();
    void marksCutTitles();
};

void TestDocumentPanes::arrangesPanes_data() {
    QTest::addColumn<int>("layout");
    QTest::newRow("horizontal") << 1;
    QTest::newRow("vertical") << 2;
}

void TestDocumentPanes::arrangesPanes() {
    QFETCH(int, layout);
    const Window window(static_cast<qint16>(layout));
    int x = 3000;
    int y = 2400;
    window.document->panes().SizeControls(x);
    window.document->panes().SizeControls2(y);

    const QRect tree = window.place("tvDB");
    const QRect definitions = window.place("lvTblDef");
    const QRect data = window.place("lvTblData");
    QCOMPARE(tree.width(), toPixels(3000));
    QCOMPARE(tree.y(), below(window.place("picTitles")));
    QCOMPARE(window.place("lblTitle0").width(), toPixels(3000 - 20));
    QCOMPARE(window.place("lblTitle1").x(), toPixels(3000 - 20 + 80));
    QCOMPARE(definitions.x(), toPixels(3040));
    QCOMPARE(rightOf(definitions), toPixels(9000 - 100));
    QCOMPARE(definitions.y(), tree.y());
    QCOMPARE(below(definitions), toPixels(2400));
    QCOMPARE(data.y(), below(window.place("lblTitle2")));
    QCOMPARE(below(data), 400);
    if (layout == 1) {
        QCOMPARE(data.x(), tree.x());
        QCOMPARE(rightOf(data), toPixels(9000 - 80));
        QCOMPARE(below(tree), toPixels(2400));
    } else {
        QCOMPARE(data.x(), definitions.x());
        QCOMPARE(data.width(), definitions.width());
        QCOMPARE(below(tree), 400);
    }
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
    QTest::addColumn<QString>("handle");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("bar");
    QTest::addColumn<int>("splitter");
    QTest::newRow("sideways") << "imgSplitter" << 200 << 3000 << 3000;
    QTest::newRow("to the far left") << "imgSplitter" << 0 << 500 << 1500;
    QTest::newRow("beyond the right") << "imgSplitter" << 700 << 8500 << 7500;
    QTest::newRow("up") << "imgSplitter2" << 150 << 2250 << 2250;
    QTest::newRow("near the bottom") << "imgSplitter2" << 390 << 5500 << 4500;
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

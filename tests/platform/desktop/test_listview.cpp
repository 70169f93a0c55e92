#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "support/answers.h"
#include "support/table.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include <functional>
#include <vector>

using controls::ListItems;
using desktop::ListView;

namespace {

struct List {
    ListItems items;
    ListView view;

    explicit List(int rows) {
        view.setItems(&items);
        if (rows > 0) fill(rows);
        view.resize(400, 300);
        view.show();
    }
    void fill(int rows) {
        items.addHeader(QStringLiteral("Name"));
        items.addHeader(QStringLiteral("Value"));
        for (int row = 0; row < rows; ++row) {
            items.addItem(QStringLiteral("row %1").arg(row));
            items.setSubItem(row, 1, QString::number(row));
        }
        items.notifyViews();
    }
    void click(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(items.index(row, 1)).center());
    }
    QString copied() {
        QTest::keySequence(&view, QKeySequence::Copy);
        return QGuiApplication::clipboard()->text();
    }
};

using Step = std::function<void(List&)>;

}  // namespace

class ListViewTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void copies();
    void selectsWithMouseAndKeys_data();
    void selectsWithMouseAndKeys();
    void marksAreTold();
    void keysMove();
    void columnWidths();
    void columnsAreDragged();
    void beginsAnewAtItsFirstCell();
    void withoutHeaders();
    void takesRowsWhileShown();
};

void ListViewTest::copies() {
    List list(5);
    list.click(3);
    list.click(1, Qt::ControlModifier);
    QCOMPARE(list.copied(), QStringLiteral("row 1\t1\nrow 3\t3\n"));
    list.view.clearSelection();
    QCOMPARE(list.copied(), QStringLiteral("row 1\t1\nrow 3\t3\n"));

    // Too much leaves the clipboard alone.
    list.view.setCopyLimit(16);
    list.click(0);
    QCOMPARE(list.copied(), QStringLiteral("row 0\t0\n"));
    list.view.selectAll();
    testsupport::Answers answers;
    QCOMPARE(list.copied(), QStringLiteral("row 0\t0\n"));
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("too long")));

    // A cell stays one cell, and columns come as they are shown.
    list.items.setSubItem(0, 1, u"a\tb\r\nc\nd");
    list.click(0);
    QCOMPARE(list.view.selectedText(), QStringLiteral("row 0\ta b c d\n"));
    list.view.horizontalHeader()->moveSection(1, 0);
    QCOMPARE(list.view.selectedText(), QStringLiteral("a b c d\trow 0\n"));
    list.view.setItems(nullptr);
    QCOMPARE(list.view.selectedText(), QString());
}

void ListViewTest::selectsWithMouseAndKeys_data() {
    const testsupport::Table<std::vector<Step>, QString> row("steps", "selected");
    const auto click = [](int clicked, Qt::KeyboardModifiers modifiers = {}) -> Step {
        return [=](List& list) { list.click(clicked, modifiers); };
    };
    const auto key = [](Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) -> Step {
        return [=](List& list) { QTest::keyClick(&list.view, pressed, modifiers); };
    };
    row("a range", {click(1), click(3, Qt::ShiftModifier)}, "1 2 3");
    row("single ones", {click(4), click(2, Qt::ControlModifier)}, "2 4");
    row("one taken out", {click(0), click(3, Qt::ShiftModifier), click(1, Qt::ControlModifier)}, "0 2 3");
    row("only the last", {click(4), click(2)}, "2");
    row("all", {key(Qt::Key_A, Qt::ControlModifier)}, "0 1 2 3 4");
    row("down with Shift", {click(1), key(Qt::Key_Down, Qt::ShiftModifier)}, "1 2");
    row("to the end with Shift", {click(3), key(Qt::Key_End, Qt::ShiftModifier)}, "3 4");
    row("to the top", {click(3), key(Qt::Key_Home)}, "0");
    row("down from the first", {key(Qt::Key_Home), key(Qt::Key_Down)}, "1");
    row("moved, then added",
        {click(0), key(Qt::Key_Down, Qt::ControlModifier), key(Qt::Key_Down, Qt::ControlModifier),
         key(Qt::Key_Space, Qt::ControlModifier)},
        "0 2");
}

/// After each step the screen shows what the list would paint anew: no mark stays where the current row was.
void ListViewTest::selectsWithMouseAndKeys() {
    QFETCH(std::vector<Step>, steps);
    List list(5);
    ListView& view = list.view;
    QVERIFY(QTest::qWaitForWindowActive(&view));
    for (const Step& step : steps) {
        step(list);
        QTRY_COMPARE(view.screen()->grabWindow(view.winId()).toImage(), view.grab().toImage());
    }
    QStringList rows;
    for (int row = 0; row < 5; ++row) {
        const QItemSelectionModel& selection = *view.selectionModel();
        if (!selection.rowIntersectsSelection(row)) continue;
        QVERIFY(selection.isRowSelected(row));
        rows += QString::number(row);
    }
    QTEST(rows.join(u' '), "selected");
}

/// To the mouse, to a screen reader and in what is copied.
void ListViewTest::marksAreTold() {
    List list(0);
    list.items.setMarkWords({QStringLiteral("good")});
    list.fill(1);
    list.items.addItem(u"row 1", 1);
    list.items.notifyViews();
    const auto told = [&](int row) {
        const QRect cell = list.view.visualRect(list.items.index(row, 0));
        QHelpEvent help(QEvent::ToolTip, cell.center(), cell.center());
        QCoreApplication::sendEvent(list.view.viewport(), &help);
        auto* table = QAccessible::queryAccessibleInterface(&list.view)->tableInterface();
        return QStringList{QToolTip::text().isEmpty() ? QString() : QStringLiteral("tip"),
                           table->cellAt(row, 0)->text(QAccessible::Name),
                           table->cellAt(row, 1)->text(QAccessible::Description)}
            .join(u'|');
    };
    QCOMPARE(told(0), QStringLiteral("|row 0|"));
    QCOMPARE(told(1), QStringLiteral("tip|row 1, good|good"));
    list.view.selectAll();
    QCOMPARE(list.view.selectedText(), QStringLiteral("row 0\t0\t\nrow 1\t\tgood\n"));
}

void ListViewTest::keysMove() {
    List list(50);
    list.view.setCurrentIndex(list.items.index(10, 1));
    const auto rowAfter = [&](Qt::Key key) {
        QTest::keyClick(&list.view, key);
        return list.view.currentIndex().row();
    };
    QCOMPARE(rowAfter(Qt::Key_End), 49);
    QCOMPARE(rowAfter(Qt::Key_Home), 0);
    QCOMPARE(rowAfter(Qt::Key_Right), 0);
    for (const auto& [key, step] : {std::pair{Qt::Key_Right, 1}, {Qt::Key_Left, -1}}) {
        const int column = list.view.currentIndex().column();
        const int width = list.view.columnWidth(column);
        QTest::keyClick(&list.view, key, Qt::AltModifier);
        QCOMPARE(list.view.columnWidth(column) > width, step > 0);
        QTest::keyClick(&list.view, key, Qt::ControlModifier);
        QCOMPARE(list.view.currentIndex().column(), column + step);
    }
    list.click(0);
    QTest::keyClicks(&list.view, QStringLiteral("row 3"));
    QCOMPARE(list.view.currentIndex().row(), 3);
}

void ListViewTest::columnWidths() {
    List list(0);
    ListItems& items = list.items;
    const ListView& view = list.view;
    const int letter = view.fontMetrics().horizontalAdvance(u'W');
    items.addHeader(QStringLiteral("Name"));
    items.addHeader(QStringLiteral("Text"));
    items.addItem(QString(25, u'W'));
    items.setSubItem(0, 1, QString(5000, u'W'));
    items.notifyViews();
    const int name = view.columnWidth(0);
    QVERIFY(name > 10 * letter);
    QVERIFY(view.columnWidth(1) < 500);

    // Other rows under the same headers get room too, and so do rows that come one by one.
    items.clearItems();
    for (const int length : {5, 15}) {
        items.addItem(QString(length, u'W'));
        items.notifyViews();
    }
    const int other = view.columnWidth(0);
    QVERIFY(other < name && other > 15 * letter);

    // What the user made of it stays until there are new headers.
    list.view.setColumnWidth(0, 50);
    items.clearItems();
    items.addItem(QStringLiteral("another"));
    items.notifyViews();
    QCOMPARE(view.columnWidth(0), 50);
    items.clearItems();
    items.clearHeaders();
    items.addHeader(QStringLiteral("A much longer name for the column than before, and longer still"));
    items.addItem(QStringLiteral("x"));
    items.notifyViews();
    QVERIFY(view.columnWidth(0) > name);
    items.addHeader(QString(1'000'000, u'W'));
    QVERIFY(view.columnWidth(1) < 20 * name);
}

void ListViewTest::columnsAreDragged() {
    List list(3);
    QWidget* header = list.view.horizontalHeader()->viewport();
    const int width = list.view.columnWidth(0);
    const QPoint edge(width - 1, header->height() / 2);
    QTest::mousePress(header, Qt::LeftButton, {}, edge);
    QTest::mouseMove(header, edge + QPoint(20, 0));
    QTest::mouseMove(header, edge + QPoint(40, 0));
    QTest::mouseRelease(header, Qt::LeftButton, {}, edge + QPoint(40, 0));
    QCOMPARE(list.view.columnWidth(0), width + 40);
    QVERIFY(!list.view.selectionModel()->hasSelection());
}

void ListViewTest::beginsAnewAtItsFirstCell() {
    List list(0);
    ListView& view = list.view;
    const auto addHeaders = [&] {
        list.items.clearHeaders();
        list.items.clearItems();
        for (int column = 0; column < 20; ++column)
            list.items.addHeader(QStringLiteral("A name that wants room %1").arg(column));
    };
    const auto addRows = [&] {
        for (int row = 0; row < 1000; ++row)
            list.items.addItem(QString::number(row));
        list.items.notifyViews();
    };
    addHeaders();
    addRows();
    QCoreApplication::processEvents();
    view.setCurrentIndex(list.items.index(999, 19));
    QVERIFY(view.verticalScrollBar()->value() > 0 && view.horizontalScrollBar()->value() > 0);
    view.setColumnWidth(0, 30);
    addHeaders();
    // Even if no row ever comes, the headers can be read.
    QVERIFY(view.columnWidth(0) > 100);
    addRows();
    QCOMPARE(view.verticalScrollBar()->value(), 0);
    QCOMPARE(view.horizontalScrollBar()->value(), 0);
    QVERIFY(!view.currentIndex().isValid());
}

void ListViewTest::withoutHeaders() {
    List list(0);
    const auto shown = [&] { return list.view.viewport()->grab().toImage(); };
    const QImage empty = shown();
    list.items.addItem(u"<No Permission>");
    list.items.notifyViews();
    QVERIFY(shown() != empty);
    list.items.clearItems();
    QCOMPARE(shown(), empty);
}

void ListViewTest::takesRowsWhileShown() {
    List list(1000);
    QTRY_COMPARE(list.view.model()->rowCount(), 1000);
    list.view.scrollToBottom();
    list.view.selectAll();
    list.items.clearItems();
    list.view.grab();
    QVERIFY(list.view.selectedText().isEmpty());
}

QTEST_MAIN(ListViewTest)
#include "test_listview.moc"

#include "platform/controls/gridrows.h"
#include "platform/desktop/datagrid.h"
#include "support/table.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>

using controls::GridColumnKind;
using controls::GridRows;
using controls::RowStore;
using desktop::DataGrid;

class DataGridTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void rowsAreReplaced();
    void selects_data();
    void selects();
    void copiesWithHeaders();
    void marksNulls();
    void sortsByHeader_data();
    void sortsByHeader();
    void fitsColumns();
    void beginsAnew();
    void longTexts();
    void nothingIsEdited();
};

namespace {

RowStore rowsOf(const QList<QStringList>& lines) {
    RowStore rows;
    for (const QStringList& line : lines) {
        rows.addRow(0);
        for (const QString& cell : line) {
            if (cell == QStringLiteral("<null>")) {
                rows.appendNull();
            } else {
                rows.appendText(cell);
            }
        }
    }
    return rows;
}

/// Three rows of three columns.
struct Grid {
    GridRows rows;
    DataGrid view;

    Grid() {
        rows.reset({{QStringLiteral("Id"), GridColumnKind::Number}, {QStringLiteral("Name")}, {}},
                   rowsOf({{QStringLiteral("1"), QStringLiteral("one"), QStringLiteral("<null>")},
                           {QStringLiteral("2"), QString(), QStringLiteral("x\ty\r\nz")},
                           {QStringLiteral("3"), QStringLiteral("NULL"), QStringLiteral("last")}}));
        view.setRows(&rows);
        view.resize(500, 300);
        view.show();
    }
    QRect rectOf(int row, int column) const { return view.visualRect(rows.index(row, column)); }
    void click(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, rectOf(row, column).center());
    }
    QString copied() {
        QGuiApplication::clipboard()->clear();
        QTest::keySequence(&view, QKeySequence::Copy);
        return QGuiApplication::clipboard()->text();
    }
};

}  // namespace

void DataGridTest::rowsAreReplaced() {
    Grid grid;
    const QAbstractItemModelTester tester(&grid.rows, QAbstractItemModelTester::FailureReportingMode::QtTest);
    grid.view.selectAll();
    QVERIFY(grid.rows.isNull(0, 2) && !grid.rows.isNull(1, 1) && !grid.rows.isNull(2, 1));
    grid.rows.reset({{QStringLiteral("Only")}}, rowsOf({{QStringLiteral("a")}}));
    QCOMPARE(grid.view.selectedText(), QString());
    grid.view.selectAll();
    QCOMPARE(grid.view.selectedText(), QStringLiteral("Only\na\n"));
    grid.rows.reset({}, {});
    grid.view.grab();
    QCOMPARE(grid.view.horizontalHeader()->count(), 0);
    grid.view.setRows(nullptr);
    QCOMPARE(grid.copied(), QString());
}

void DataGridTest::selects_data() {
    // column and row; -1 is the header beside or above
    const testsupport::Table<QList<QPoint>, QString> row("cells", "text");
    row("cell", {{1, 0}}, "Name\none\n");
    row("row", {{-1, 2}}, "Id\tName\t\n3\tNULL\tlast\n");
    row("column", {{0, -1}}, "Id\n1\n2\n3\n");
    row("apart", {{2, 2}, {0, 0}}, "Id\t\n1\t\n\tlast\n");
}

void DataGridTest::selects() {
    QFETCH(QList<QPoint>, cells);
    Grid grid;
    for (const QPoint& cell : cells) {
        const QPoint place = grid.rectOf(std::max(cell.y(), 0), std::max(cell.x(), 0)).center();
        QWidget* target = grid.view.viewport();
        if (cell.x() < 0) target = grid.view.verticalHeader()->viewport();
        if (cell.y() < 0) target = grid.view.horizontalHeader()->viewport();
        const QPoint inTarget(cell.x() < 0 ? 3 : place.x(), cell.y() < 0 ? 3 : place.y());
        QTest::mouseClick(target, Qt::LeftButton,
                          cell == cells.first() ? Qt::NoModifier : Qt::ControlModifier, inTarget);
    }
    QTEST(grid.copied(), "text");
}

void DataGridTest::copiesWithHeaders() {
    Grid grid;
    QCOMPARE(grid.copied(), QString());
    grid.view.setFocus();
    QTest::keySequence(&grid.view, QKeySequence::SelectAll);
    QCOMPARE(grid.copied(), QStringLiteral("Id\tName\t\n1\tone\tNULL\n2\t\tx y z\n3\tNULL\tlast\n"));
}

void DataGridTest::marksNulls() {
    Grid grid;
    grid.rows.reset({{QStringLiteral("a")}, {QStringLiteral("b")}},
                    rowsOf({{QStringLiteral("<null>"), QStringLiteral("NULL")}}));
    const QImage image = grid.view.viewport()->grab().toImage();
    QRect null = grid.rectOf(0, 0);
    QRect text = grid.rectOf(0, 1);
    QCOMPARE(null.size(), text.size());
    QVERIFY(image.copy(null) != image.copy(text));
}

void DataGridTest::sortsByHeader_data() {
    const testsupport::Table<int, int, QString> row("column", "clicks", "order of the rows");
    row("numbers by size", 0, 1, QStringLiteral("null -7 2 10 10"));
    row("the other way round", 0, 2, QStringLiteral("10 10 2 -7 null"));
    row("as they came", 0, 3, QStringLiteral("10 2 null -7 10"));
    row("texts", 1, 1, QStringLiteral("-7 null 10 2 10"));  // null, empty, A, b, c
    row("binary values have no order", 2, 1, QStringLiteral("10 2 null -7 10"));
}

void DataGridTest::sortsByHeader() {
    QFETCH(int, column);
    QFETCH(int, clicks);
    Grid grid;
    grid.rows.reset({{QStringLiteral("Id"), GridColumnKind::Number},
                     {QStringLiteral("Name")},
                     {QStringLiteral("Picture"), GridColumnKind::Binary}},
                    rowsOf({{QStringLiteral("10"), QStringLiteral("A"), QString()},
                            {QStringLiteral("2"), QStringLiteral("b"), QString()},
                            {QStringLiteral("<null>"), QString(), QString()},
                            {QStringLiteral("-7"), QStringLiteral("<null>"), QString()},
                            {QStringLiteral("10"), QStringLiteral("c"), QString()}}));
    const QAbstractItemModelTester tester(&grid.rows, QAbstractItemModelTester::FailureReportingMode::QtTest);
    grid.click(3, 0);
    QHeaderView* header = grid.view.horizontalHeader();
    const QPoint place(header->sectionViewportPosition(column) + 10, header->height() / 2);
    for (int i = 0; i < clicks; ++i)
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
    QStringList order;
    for (int row = 0; row < 5; ++row)
        order += grid.rows.index(row, 0).data().toString().toLower();
    QTEST(order.join(u' '), "order of the rows");
    QCOMPARE(header->sortIndicatorSection(), clicks == 3 ? -1 : column);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    QCOMPARE(header->sortIndicatorSection(), clicks == 3 ? -1 : column);
    // What is copied is what is seen.
    grid.click(0, 0);
    QCOMPARE(grid.copied().toLower(), QStringLiteral("id\n%1\n").arg(order.first()));
    grid.rows.reset({{}}, {});
    QCOMPARE(header->sortIndicatorSection(), -1);
}

void DataGridTest::fitsColumns() {
    Grid grid;
    const auto fitted = [&](const QString& text) {
        grid.rows.reset({{QStringLiteral("a")}}, rowsOf({{text}}));
        return grid.view.columnWidth(0);
    };
    const int narrow = fitted(QStringLiteral("x"));
    const int wide = fitted(QString(25, u'W'));
    const int limit = fitted(QString(100000, u'W'));
    QVERIFY(narrow < wide && wide <= limit && limit < grid.view.width());
}

/// Another result begins at its first cell, whatever was looked at before.
void DataGridTest::beginsAnew() {
    Grid grid;
    const auto fill = [&] {
        QList<QStringList> lines;
        for (int row = 0; row < 200; ++row)
            lines += QStringList(20, QString::number(row));
        grid.rows.reset(std::vector<controls::GridColumn>(20, {QStringLiteral("a")}), rowsOf(lines));
    };
    fill();
    grid.view.scrollToBottom();
    grid.view.horizontalScrollBar()->setValue(grid.view.horizontalScrollBar()->maximum());
    fill();
    QVERIFY(grid.view.viewport()->rect().contains(grid.rectOf(0, 0)));
}

/// A cell shows the beginning of a long text, and copies the whole.
void DataGridTest::longTexts() {
    Grid grid;
    const QString text = QStringLiteral("\u20ac").repeated(1'000'000);
    grid.rows.reset({{QStringLiteral("a\u202e")}}, rowsOf({{text}}));
    const QString shown = grid.rows.index(0, 0).data().toString();
    QVERIFY(shown.size() >= 1000 && shown.size() < 10'000 && text.startsWith(shown));
    grid.view.selectAll();
    QCOMPARE(grid.view.selectedText(), QStringLiteral("a\u202e\n") + text + u'\n');
}

void DataGridTest::nothingIsEdited() {
    Grid grid;
    grid.click(0, 1);
    QTest::keyClicks(&grid.view, QStringLiteral("typed"));
    QTest::keyClick(&grid.view, Qt::Key_F2);
    QTest::mouseDClick(grid.view.viewport(), Qt::LeftButton, {}, grid.rectOf(0, 1).center());
    QCOMPARE(grid.rows.index(0, 1).data().toString(), QStringLiteral("one"));
    QVERIFY(!grid.rows.index(0, 1).flags().testFlag(Qt::ItemIsEditable));
}

QTEST_MAIN(DataGridTest)
#include "test_datagrid.moc"

#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/finder.h"
#include "platform/desktop/treeview.h"
#include "support/table.h"

#include <QLineEdit>
#include <QTest>

using controls::ListItems;
using controls::Node;
using controls::Nodes;
using desktop::TreeView;

class FinderTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void textsAreFound_data();
    void textsAreFound();
    void finderGoesToTexts();
};

void FinderTest::textsAreFound_data() {
    const testsupport::Table<int, QString, bool, QString> row("from", "text", "backward", "found");
    row("the next row with it", -1, QStringLiteral("W 2"), false, QStringLiteral("row 2"));
    row("in any column", 3, QStringLiteral("4"), false, QStringLiteral("row 4"));
    row("not in its own row first", 1, QStringLiteral("1"), false, QStringLiteral("row 10"));
    row("round the end", 10, QStringLiteral("row 0"), false, QStringLiteral("row 0 again"));
    row("its own row last", 5, QStringLiteral("5"), false, QStringLiteral("row 5 again"));
    row("backward", 9, QStringLiteral("1"), true, QStringLiteral("row 1"));
    row("round the beginning", 0, QStringLiteral("1"), true, QStringLiteral("row 10 again"));
    row("nowhere", 0, QStringLiteral("x"), false, QString());
    row("nothing", 0, QString(), false, QString());
}

void FinderTest::textsAreFound() {
    QFETCH(int, from);
    QFETCH(QString, text);
    QFETCH(bool, backward);
    QFETCH(QString, found);
    ListItems items;
    items.addHeader(QStringLiteral("Name"));
    items.addHeader(QStringLiteral("Value"));
    for (int number = 0; number < 11; ++number) {
        items.addItem(QStringLiteral("row %1").arg(number));
        items.setSubItem(number, 1, QString::number(number));
    }
    items.notifyViews();
    const desktop::FoundText at = desktop::findText(items, items.index(from, 1), text, backward);
    const QString name = at.cell.siblingAtColumn(0).data().toString();
    QCOMPARE(at.wrapped ? name + QStringLiteral(" again") : name, found);
}

/// Everything about the bar by keyboard, in a tree whose branches are closed.
void FinderTest::finderGoesToTexts() {
    Nodes nodes;
    Node& root = nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("server"), 0, 0);
    for (const QString& name : {QStringLiteral("one"), QStringLiteral("two")}) {
        Node& database = nodes.add(&root, name, name, 0, 0);
        nodes.add(&database, name + u'1', QStringLiteral("table of ") + name, 0, 0);
    }
    QWidget window;
    auto* tree = new TreeView(&window);
    tree->setNodes(&nodes);
    new desktop::Finder(&window, {tree});
    window.resize(400, 300);
    tree->resize(400, 300);
    window.show();
    tree->setFocus();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(tree, Qt::Key_F, Qt::ControlModifier);
    auto* entry = window.findChild<QLineEdit*>(QStringLiteral("txtFind"));
    QVERIFY(entry && entry->isVisible());
    QTest::keyClicks(entry, QStringLiteral("TABLE"));
    const auto current = [&] { return tree->currentIndex().data().toString(); };
    QTest::keyClick(entry, Qt::Key_Return);
    QCOMPARE(current(), QStringLiteral("table of one"));
    QVERIFY(tree->visualRect(tree->currentIndex()).isValid());
    QTest::keyClick(entry, Qt::Key_F3);
    QCOMPARE(current(), QStringLiteral("table of two"));
    QTest::keyClick(entry, Qt::Key_Escape);
    QVERIFY(!entry->isVisible());
    QTest::keyClick(tree, Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(current(), QStringLiteral("table of one"));
}

QTEST_MAIN(FinderTest)
#include "test_finder.moc"

#include "platform/controls/gridrows.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/caption.h"
#include "platform/desktop/datagrid.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/pickbox.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/treeview.h"
#include "platform/showntext.h"
#include "support/answers.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <functional>
#include <vector>

using controls::ListItems;
using controls::Node;
using controls::Nodes;
using desktop::ListView;
using desktop::TitleLabel;
using desktop::TreeView;

namespace {

QIcon plainIcon(const QColor& color) {
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

void fill(ListItems& items, int rows) {
    items.addHeader(QStringLiteral("Name"));
    items.addHeader(QStringLiteral("Value"));
    for (int row = 0; row < rows; ++row) {
        items.addItem(QStringLiteral("row %1").arg(row), row % 3);
        items.setSubItem(row, 1, QString::number(row));
    }
}

bool holds(const QImage& image, const QRect& rect, const QColor& color) {
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixelColor(x, y) == color) return true;
        }
    }
    return false;
}

}  // namespace

class ViewsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void listSelectsAndCopiesRows();
    void copyKeepsTheGrid();
    void copyHasALimit();
    void listSelectsWithMouseAndKeys_data();
    void listSelectsWithMouseAndKeys();
    void viewsShowFocus_data();
    void viewsShowFocus();
    void cutNamesShowAsTips();
    void listKeys();
    void listColumnWidths();
    void listColumnsAreDragged();
    void listBeginsAnewAtItsFirstCell();
    void listPictures();
    void listWithoutHeaders();
    void listTakesRowsWhileShown();
    void shownTexts_data();
    void shownTexts();
    void namesAreShown_data();
    void namesAreShown();
    void treeOpensBranches();
    void treePictures();
    void treeHotTracking();
    void contextMenus();
};

void ViewsTest::listSelectsAndCopiesRows() {
    ListItems items;
    ListView view;
    fill(items, 5);
    view.setItems(&items);
    view.resize(400, 300);
    view.show();
    const auto click = [&](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(items.index(row, 1)).center());
    };
    click(3, Qt::NoModifier);
    click(1, Qt::ControlModifier);
    QTest::keySequence(&view, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("row 1\t1\nrow 3\t3\n"));
    view.clearSelection();
    QTest::keySequence(&view, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("row 1\t1\nrow 3\t3\n"));
}

void ViewsTest::copyKeepsTheGrid() {
    ListItems items;
    ListView view;
    fill(items, 1);
    items.setSubItem(0, 1, u"a\tb\r\nc\nd");
    view.setItems(&items);
    view.selectAll();
    QCOMPARE(view.selectedText(), QStringLiteral("row 0\ta b c d\n"));
    view.horizontalHeader()->moveSection(1, 0);
    QCOMPARE(view.selectedText(), QStringLiteral("a b c d\trow 0\n"));
    view.setItems(nullptr);
    QCOMPARE(view.selectedText(), QString());
}

void ViewsTest::copyHasALimit() {
    ListItems items;
    ListView view;
    fill(items, 3);
    view.setItems(&items);
    view.setCopyLimit(16);
    view.selectRow(0);
    QTest::keySequence(&view, QKeySequence::Copy);
    view.selectAll();
    testsupport::Answers answers;
    QTest::keySequence(&view, QKeySequence::Copy);
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("too long")));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("row 0\t0\n"));
}

void ViewsTest::listSelectsWithMouseAndKeys_data() {
    using Step = std::function<void(ListView&)>;
    QTest::addColumn<std::vector<Step>>("steps");
    QTest::addColumn<QString>("selected");
    const auto click = [](int row, Qt::KeyboardModifiers modifiers = {}) -> Step {
        return [=](ListView& view) {
            QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                              view.visualRect(view.model()->index(row, 1)).center());
        };
    };
    const auto key = [](Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) -> Step {
        return [=](ListView& view) { QTest::keyClick(&view, pressed, modifiers); };
    };
    const auto row = [](const char* name, const std::vector<Step>& steps, const char* selected) {
        QTest::newRow(name) << steps << QString::fromLatin1(selected);
    };
    row("a range", {click(1), click(3, Qt::ShiftModifier)}, "1 2 3");
    row("single ones", {click(4), click(2, Qt::ControlModifier)}, "2 4");
    row("one taken out", {click(0), click(3, Qt::ShiftModifier), click(1, Qt::ControlModifier)}, "0 2 3");
    row("only the last", {click(4), click(2)}, "2");
    row("all", {key(Qt::Key_A, Qt::ControlModifier)}, "0 1 2 3 4");
    row("down with Shift", {click(1), key(Qt::Key_Down, Qt::ShiftModifier)}, "1 2");
    row("to the end with Shift", {click(3), key(Qt::Key_End, Qt::ShiftModifier)}, "3 4");
    row("to the top", {click(3), key(Qt::Key_Home)}, "0");
    row("moved, then added",
        {click(0), key(Qt::Key_Down, Qt::ControlModifier), key(Qt::Key_Down, Qt::ControlModifier),
         key(Qt::Key_Space, Qt::ControlModifier)},
        "0 2");
}

void ViewsTest::listSelectsWithMouseAndKeys() {
    QFETCH(std::vector<std::function<void(ListView&)>>, steps);
    ListItems items;
    ListView view;
    fill(items, 5);
    view.setItems(&items);
    view.resize(400, 300);
    view.show();
    for (const auto& step : steps)
        step(view);
    QStringList rows;
    for (int row = 0; row < 5; ++row) {
        const QItemSelectionModel& selection = *view.selectionModel();
        if (!selection.rowIntersectsSelection(row)) continue;
        QVERIFY(selection.isRowSelected(row));
        rows += QString::number(row);
    }
    QTEST(rows.join(u' '), "selected");
}

void ViewsTest::viewsShowFocus_data() {
    QTest::addColumn<bool>("tree");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("selected");
    QTest::newRow("empty list") << false << 0 << false;
    QTest::newRow("row that is not selected") << false << 2 << false;
    QTest::newRow("selected row") << false << 2 << true;
    QTest::newRow("node that is not selected") << true << 2 << false;
    QTest::newRow("selected node") << true << 2 << true;
}

/// By a frame around all, a line around the current row, and a selection that is pale without the focus.
void ViewsTest::viewsShowFocus() {
    QFETCH(bool, tree);
    QFETCH(int, rows);
    QFETCH(bool, selected);
    ListItems items;
    Nodes nodes;
    QWidget window;
    auto* list = new ListView(&window);
    auto* nodeView = new TreeView(&window);
    auto* other = new QLineEdit(&window);
    fill(items, rows);
    nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 0, 0);
    list->setItems(&items);
    nodeView->setNodes(&nodes);
    QAbstractItemView* view = nodeView;
    if (!tree) view = list;
    view->resize(300, 200);
    if (rows > 0) view->setCurrentIndex(view->model()->index(0, 0));
    if (!selected) view->clearSelection();
    window.show();
    const auto shown = [&](QWidget* focus, QWidget* part) {
        focus->setFocus();
        return part->grab().toImage();
    };
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(shown(view, view).pixel(0, 50) != shown(other, view).pixel(0, 50));
    QCOMPARE(shown(view, view->viewport()) != shown(other, view->viewport()), rows > 0);
    const QRect row = view->visualRect(view->currentIndex());
    const QColor highlight = view->palette().color(QPalette::Highlight);
    QCOMPARE(holds(shown(view, view->viewport()), row, highlight), selected);
    QVERIFY(!holds(shown(other, view->viewport()), row, highlight));
}

void ViewsTest::cutNamesShowAsTips() {
    const QString name(50, u'W');
    Nodes nodes;
    TreeView view;
    nodes.add(nullptr, QStringLiteral("R"), name, 0, 0);
    view.setNodes(&nodes);
    view.show();
    const auto tipAtWidth = [&](int width) {
        view.resize(width, 200);
        QHelpEvent help(QEvent::ToolTip, QPoint(40, 5), QPoint(40, 5));
        QCoreApplication::sendEvent(view.viewport(), &help);
        return QToolTip::text();
    };
    QCOMPARE(tipAtWidth(2000), QString());
    QVERIFY(tipAtWidth(200).contains(name));
}

void ViewsTest::listKeys() {
    ListItems items;
    ListView view;
    fill(items, 50);
    view.setItems(&items);
    view.resize(400, 300);
    view.show();
    view.setCurrentIndex(items.index(10, 1));
    QTest::keyClick(&view, Qt::Key_End);
    QCOMPARE(view.currentIndex().row(), 49);
    QTest::keyClick(&view, Qt::Key_Home);
    QCOMPARE(view.currentIndex().row(), 0);
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.currentIndex().row(), 0);
    QTest::keyClicks(&view, QStringLiteral("row 3"));
    QCOMPARE(view.currentIndex().row(), 3);

    // Nothing of the mark around the row before stays on the screen.
    QTest::keyClick(&view, Qt::Key_Down, Qt::ControlModifier);
    QTRY_COMPARE(view.screen()->grabWindow(view.winId()).toImage(), view.grab().toImage());
}

void ViewsTest::listColumnWidths() {
    ListItems items;
    ListView view;
    view.setItems(&items);
    items.addHeader(QStringLiteral("Name"));
    items.addHeader(QStringLiteral("Text"));
    items.addItem(QString(25, u'W'));
    items.setSubItem(0, 1, QString(5000, u'W'));
    items.notifyViews();
    const int name = view.columnWidth(0);
    QVERIFY(name > 20 * view.fontMetrics().horizontalAdvance(u'W') / 2);
    QVERIFY(view.columnWidth(1) < 500);

    // Other rows under the same headers get room too, and so do rows that come one by one.
    items.clearItems();
    for (const int length : {5, 15}) {
        items.addItem(QString(length, u'W'));
        items.notifyViews();
    }
    const int other = view.columnWidth(0);
    QVERIFY(other < name && other > 15 * view.fontMetrics().horizontalAdvance(u'W'));

    // What the user made of it stays until there are new headers.
    view.setColumnWidth(0, 50);
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

void ViewsTest::listColumnsAreDragged() {
    ListItems items;
    ListView view;
    fill(items, 3);
    view.setItems(&items);
    view.resize(600, 300);
    view.show();
    QWidget* header = view.horizontalHeader()->viewport();
    const int width = view.columnWidth(0);
    const QPoint edge(width - 1, header->height() / 2);
    QTest::mousePress(header, Qt::LeftButton, {}, edge);
    QTest::mouseMove(header, edge + QPoint(20, 0));
    QTest::mouseMove(header, edge + QPoint(40, 0));
    QTest::mouseRelease(header, Qt::LeftButton, {}, edge + QPoint(40, 0));
    QCOMPARE(view.columnWidth(0), width + 40);
    QVERIFY(!view.selectionModel()->hasSelection());
}

void ViewsTest::listBeginsAnewAtItsFirstCell() {
    ListItems items;
    ListView view;
    const auto list = [&] {
        items.clearHeaders();
        items.clearItems();
        for (int column = 0; column < 20; ++column)
            items.addHeader(QStringLiteral("A name that wants room %1").arg(column));
    };
    const auto addRows = [&] {
        for (int row = 0; row < 1000; ++row)
            items.addItem(QString::number(row));
        items.notifyViews();
    };
    list();
    addRows();
    view.setItems(&items);
    view.resize(400, 300);
    view.show();
    view.setCurrentIndex(items.index(999, 19));
    QVERIFY(view.verticalScrollBar()->value() > 0 && view.horizontalScrollBar()->value() > 0);
    view.setColumnWidth(0, 30);
    list();
    // Even if no row ever comes, the headers can be read.
    QVERIFY(view.columnWidth(0) > 100);
    addRows();
    QCOMPARE(view.verticalScrollBar()->value(), 0);
    QCOMPARE(view.horizontalScrollBar()->value(), 0);
    QVERIFY(!view.currentIndex().isValid());
}

void ViewsTest::listPictures() {
    ListItems items;
    ListView view;
    fill(items, 3);
    view.setPictures({plainIcon(Qt::red), plainIcon(Qt::green)});
    view.setItems(&items);
    view.resize(400, 300);
    view.selectRow(1);
    const QImage image = view.viewport()->grab().toImage();
    const auto shows = [&](int row, const QColor& color) {
        return holds(image, view.visualRect(items.index(row, 0)), color);
    };
    QVERIFY(!shows(0, Qt::red) && !shows(0, Qt::green));
    QVERIFY(shows(1, Qt::red));
    QVERIFY(shows(2, Qt::green));
}

void ViewsTest::listWithoutHeaders() {
    ListItems items;
    ListView view;
    view.setItems(&items);
    const auto shown = [&] { return view.viewport()->grab().toImage(); };
    const QImage empty = shown();
    items.addItem(u"<No Permission>");
    items.notifyViews();
    QVERIFY(shown() != empty);
    items.clearItems();
    QCOMPARE(shown(), empty);
}

void ViewsTest::listTakesRowsWhileShown() {
    ListItems items;
    ListView view;
    view.setItems(&items);
    view.show();
    fill(items, 1000);
    QTRY_COMPARE(view.model()->rowCount(), 1000);
    view.scrollToBottom();
    view.selectAll();
    items.clearItems();
    view.grab();
    QVERIFY(view.selectedText().isEmpty());
}

void ViewsTest::shownTexts_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("lines");
    const auto same = [](const char* name, const QString& text) {
        QTest::newRow(name) << text << text << text;
    };
    same("markup", QStringLiteral(" <b>a</b> & b"));
    same("right to left, joined, outside the basic plane",
         QStringLiteral("\u05d0\u0628 a\u200db \U0001F600"));
    QTest::newRow("line ends") << QStringLiteral("a\r\nb\tc\n \r\n")
                               << QStringLiteral("a⟨CR⟩⟨LF⟩b⟨TAB⟩c⟨LF⟩ ⟨CR⟩⟨LF⟩")
                               << QStringLiteral("a\nb\tc");
    const auto signs = QStringLiteral("⟨ESC⟩[⟨U+007F⟩ ⟨U+0085⟩⟨U+061C⟩⟨U+200F⟩⟨U+2028⟩⟨U+202E⟩⟨U+2066⟩");
    QTest::newRow("obeyed") << QStringLiteral("\u001b[\u007f \u0085\u061c\u200f\u2028\u202e\u2066") << signs
                            << signs;
    const QString halves = QStringLiteral("⟨U+DC00⟩a⟨U+D800⟩");
    QTest::newRow("half pairs") << QString(QChar(0xdc00)) + u'a' + QChar(0xd800) << halves << halves;
    QTest::newRow("long") << QString(200'000, u'x') << QString(1000, u'x') + u'\u2026'
                          << QString(65'535, u'x') + u'\u2026';
    const QString pairs = QStringLiteral("\U0001F600").repeated(999);
    QTest::newRow("cut beside a pair") << u'a' + pairs << u'a' + pairs.left(998) + u'\u2026' << u'a' + pairs;
}

void ViewsTest::shownTexts() {
    QFETCH(QString, text);
    QTEST(platform::shownLine(text), "line");
    QTEST(platform::shownLines(text), "lines");
}

void ViewsTest::namesAreShown_data() {
    using Widget = std::unique_ptr<QWidget>;
    QTest::addColumn<std::function<Widget(const QString&)>>("shownBy");
    const auto row = [](const char* name, const std::function<Widget(const QString&)>& make) {
        QTest::newRow(name) << make;
    };
    const auto list = [](const QString& header, const QString& item) -> Widget {
        auto view = std::make_unique<ListView>();
        auto* items = new ListItems(view.get());
        if (!header.isEmpty()) items->addHeader(header);
        items->addItem(item, 0);
        view->setItems(items);
        return view;
    };
    row("cell", [=](const QString& text) { return list(QStringLiteral("a"), text); });
    row("header", [=](const QString& text) { return list(text, {}); });
    row("item without headers", [=](const QString& text) { return list({}, text); });
    row("grid's header", [](const QString& text) -> Widget {
        auto view = std::make_unique<desktop::DataGrid>();
        auto* rows = new controls::GridRows(view.get());
        rows->reset({{text}}, {});
        view->setRows(rows);
        return view;
    });
    row("node", [](const QString& text) -> Widget {
        auto view = std::make_unique<TreeView>();
        auto* nodes = new Nodes(view.get());
        nodes->add(nullptr, QString(), text, 0, 0);
        view->setNodes(nodes);
        return view;
    });
    const auto box = [](const QString& text) {
        auto pick = std::make_unique<desktop::PickBox>();
        pick->addItem(text);
        return pick;
    };
    row("closed list", box);
    row("open list", [=](const QString& text) -> Widget {
        auto pick = box(text);
        pick->showPopup();
        return pick;
    });
    row("title", [](const QString& text) { return std::make_unique<TitleLabel>(text, nullptr); });
    row("caption", [](const QString& text) -> Widget {
        auto area = std::make_unique<QMdiArea>();
        auto* window = new QWidget;
        desktop::addCaptioned(*area, window)->resize(300, 200);
        window->setWindowTitle(text);
        return area;
    });
}

/// Wherever a name is painted it looks as its shown text.
void ViewsTest::namesAreShown() {
    QFETCH(std::function<std::unique_ptr<QWidget>(const QString&)>, shownBy);
    const auto picture = [&](const QString& name) {
        const auto widget = shownBy(name);
        widget->resize(300, 200);
        const auto open = widget->findChild<QListView*>();
        return (open && open->isVisible() ? open : widget.get())->grab().toImage();
    };
    const QString name = QStringLiteral("a\u202eb\rc");
    QVERIFY(picture(name) == picture(platform::shownLine(name)));
    QVERIFY(picture(name) != picture(QStringLiteral("abc")));
}

namespace {

struct Tree {
    Nodes nodes;
    Node& root = nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 1, 1);
    Node& first = nodes.add(&root, QStringLiteral("D1"), QStringLiteral("one"), 1, 2);
    Node& second = nodes.add(&root, QStringLiteral("D2"), QStringLiteral("two"), 1, 2);
    Node& leaf = nodes.add(&second, QStringLiteral("T1"), QStringLiteral("leaf"), 1, 2);
    TreeView view;

    Tree() {
        view.setPictures({plainIcon(Qt::red), plainIcon(Qt::green)});
        view.setNodes(&nodes);
        view.resize(300, 300);
        view.show();
    }
    QRect rectOf(const Node& node) const { return view.visualRect(nodes.indexOf(node)); }
};

}  // namespace

void ViewsTest::treeOpensBranches() {
    Tree tree;
    QVERIFY(!tree.rectOf(tree.leaf).isValid());
    tree.nodes.ensureVisible(tree.leaf);
    QVERIFY(tree.rectOf(tree.leaf).isValid());
    QVERIFY(!tree.view.isExpanded(tree.nodes.indexOf(tree.first)));

    // A tree that is filled anew begins at its root, however many branches are opened below.
    tree.view.verticalScrollBar()->setValue(1);
    tree.nodes.clear();
    Node& root = tree.nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 0, 0);
    for (int row = 0; row < 200; ++row) {
        const QString key = QString::number(row);
        tree.nodes.ensureVisible(tree.nodes.add(&root, key, key, 0, 0));
    }
    QCoreApplication::processEvents();
    QCOMPARE(tree.rectOf(root).top(), 0);
    QVERIFY(tree.rectOf(*root.children.back()).isValid());
    QVERIFY(tree.view.selectionModel()->isSelected(tree.nodes.indexOf(root)));
}

void ViewsTest::treePictures() {
    Tree tree;
    tree.view.expandAll();
    tree.view.setCurrentIndex(tree.nodes.indexOf(tree.second));
    const QImage image = tree.view.viewport()->grab().toImage();
    QVERIFY(holds(image, tree.rectOf(tree.first), Qt::red));
    QVERIFY(holds(image, tree.rectOf(tree.second), Qt::green));
    QVERIFY(!holds(image, tree.rectOf(tree.second), Qt::red));
}

void ViewsTest::treeHotTracking() {
    Tree tree;
    tree.view.expandAll();
    const auto pictureUnderTheMouse = [&] {
        const QRect rect = tree.rectOf(tree.first);
        QTest::mouseMove(tree.view.viewport(), tree.rectOf(tree.second).center());
        QTest::mouseMove(tree.view.viewport(), rect.center());
        return tree.view.viewport()->grab(rect).toImage();
    };
    const QImage plain = pictureUnderTheMouse();
    tree.view.setHotTracking(true);
    QVERIFY(pictureUnderTheMouse() != plain);
    tree.view.setHotTracking(false);
    QCOMPARE(pictureUnderTheMouse(), plain);
}

void ViewsTest::contextMenus() {
    Tree tree;
    ListItems items;
    ListView list;
    list.setItems(&items);
    list.show();
    QSignalSpy treeWanted(&tree.view, &TreeView::contextMenuWanted);
    QSignalSpy listWanted(&list, &ListView::contextMenuWanted);
    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(&tree.view), static_cast<QAbstractItemView*>(&list)}) {
        QTest::mousePress(view->viewport(), Qt::RightButton, {}, QPoint(20, 20));
        QContextMenuEvent byMouse(QContextMenuEvent::Mouse, QPoint(20, 20), QPoint(20, 20));
        QCoreApplication::sendEvent(view->viewport(), &byMouse);
        QCOMPARE(treeWanted.count() + listWanted.count(), 0);
        QTest::mouseRelease(view->viewport(), Qt::RightButton, {}, QPoint(20, 20));
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(20, 20), QPoint(20, 20));
        QCoreApplication::sendEvent(view->viewport(), &byKey);
        QCOMPARE((view == &list ? listWanted : treeWanted).count(), 2);
        treeWanted.clear();
        listWanted.clear();
    }
}

QTEST_MAIN(ViewsTest)
#include "test_views.moc"

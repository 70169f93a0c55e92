#include "platform/controls/gridrows.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/caption.h"
#include "platform/desktop/datagrid.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/menukey.h"
#include "platform/desktop/pickbox.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/treeview.h"
#include "platform/showntext.h"
#include "support/table.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <functional>
#include <memory>

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
    void viewsShowFocus_data();
    void viewsShowFocus();
    void cutNamesShowAsTips();
    void shownTexts_data();
    void shownTexts();
    void namesAreShown_data();
    void namesAreShown();
    void treeOpensBranches();
    void pictures();
    void treeHotTracking();
    void contextMenus();
};

void ViewsTest::viewsShowFocus_data() {
    const testsupport::Table<bool, int, bool> row("tree", "rows", "selected");
    row("empty list", false, 0, false);
    row("row that is not selected", false, 2, false);
    row("selected row", false, 2, true);
    row("node that is not selected", true, 2, false);
    row("selected node", true, 2, true);
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
    items.addHeader(QStringLiteral("Name"));
    for (int row = 0; row < rows; ++row)
        items.addItem(QStringLiteral("row"));
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

void ViewsTest::shownTexts_data() {
    const testsupport::Table<QString, QString, QString> row("text", "line", "lines");
    const auto same = [&](const char* name, const QString& text) { row(name, text, text, text); };
    same("markup", QStringLiteral(" <b>a</b> & b"));
    same("right to left, joined, outside the basic plane",
         QStringLiteral("\u05d0\u0628 a\u200db \U0001F600"));
    row("line ends", "a\r\nb\tc\n \r\n", QStringLiteral("a⟨CR⟩⟨LF⟩b⟨TAB⟩c⟨LF⟩ ⟨CR⟩⟨LF⟩"), "a\nb\tc");
    const auto signs = QStringLiteral("⟨ESC⟩[⟨U+007F⟩ ⟨U+0085⟩⟨U+061C⟩⟨U+200F⟩⟨U+2028⟩⟨U+202E⟩⟨U+2066⟩");
    row("obeyed", QStringLiteral("\u001b[\u007f \u0085\u061c\u200f\u2028\u202e\u2066"), signs, signs);
    const QString halves = QStringLiteral("⟨U+DC00⟩a⟨U+D800⟩");
    row("half pairs", QString(QChar(0xdc00)) + u'a' + QChar(0xd800), halves, halves);
    row("long", QString(200'000, u'x'), QString(1000, u'x') + u'\u2026', QString(65'535, u'x') + u'\u2026');
    const QString pairs = QStringLiteral("\U0001F600").repeated(999);
    row("cut beside a pair", u'a' + pairs, u'a' + pairs.left(998) + u'\u2026', u'a' + pairs);
}

void ViewsTest::shownTexts() {
    QFETCH(QString, text);
    QTEST(platform::shownLine(text), "line");
    QTEST(platform::shownLines(text), "lines");
}

void ViewsTest::namesAreShown_data() {
    using Widget = std::unique_ptr<QWidget>;
    const testsupport::Table<std::function<Widget(const QString&)>> row("shownBy");
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

void ViewsTest::pictures() {
    ListItems items;
    ListView list;
    items.addHeader(QStringLiteral("Name"));
    for (const int icon : {0, 1, 2})
        items.addItem(QStringLiteral("row"), icon);
    list.setPictures({plainIcon(Qt::red), plainIcon(Qt::green)});
    list.setItems(&items);
    list.resize(400, 300);
    list.selectRow(1);
    const QImage rows = list.viewport()->grab().toImage();
    const auto shows = [&](int row, const QColor& color) {
        return holds(rows, list.visualRect(items.index(row, 0)), color);
    };
    QVERIFY(!shows(0, Qt::red) && !shows(0, Qt::green));
    QVERIFY(shows(1, Qt::red));
    QVERIFY(shows(2, Qt::green));

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
    desktop::installMenuKey(*qApp);
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
        view->setFocus();
        view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view));
        QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE((view == &list ? listWanted : treeWanted).count(), 3);
        treeWanted.clear();
        listWanted.clear();
    }
}

QTEST_MAIN(ViewsTest)
#include "test_views.moc"

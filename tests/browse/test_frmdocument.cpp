#include "desk.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/treeview.h"
#include "support/answers.h"
#include "support/table.h"

#include <QLabel>
#include <QTest>

namespace {

/// A tree as a filled one looks: key, text, and the node below it.
void fillTree(Desk& desk) {
    controls::Nodes& nodes = desk.document->tvDBNodes();
    nodes.clear();
    controls::Node& root = nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("DB1"), 1, 1);
    controls::Node& sales = nodes.add(&root, QStringLiteral("Sales"), QStringLiteral("Sales"), 2, 2);
    nodes.add(&sales, QStringLiteral("SalesOrders"), QStringLiteral("Orders"), 3, 3);
    controls::Node& closed = nodes.add(&root, QStringLiteral("Closed"), QStringLiteral("Closed"), 2, 2);
    nodes.add(&closed, QStringLiteral("Closed<No Permission>"), QStringLiteral("<No Permission>"), 3, 3);
    desk.document->tvDB().expandAll();
}

QPoint placeOf(Desk& desk, const QString& key) {
    desktop::TreeView& tree = desk.document->tvDB();
    return tree.visualRect(desk.document->tvDBNodes().indexOf(*desk.document->tvDBNodes().find(key)))
        .center();
}

QString title(Desk& desk, int index) {
    return desk.document->findChild<QLabel*>(QStringLiteral("lblTitle%1").arg(index))->text();
}

}  // namespace

class TestFrmDocument : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void opens();
    void choosesNode_data();
    void choosesNode();
    void popsUpMenus();
    void leavesTheProgramOnce_data();
    void leavesTheProgramOnce();
};

void TestFrmDocument::opens() {
    Desk desk;
    desk.state.options.MouseHotTracking = 1;
    desk.openDocument();
    tw::frmDocument& document = *desk.document;
    QCOMPARE(document.windowTitle(), QStringLiteral("Not Connected"));
    QVERIFY(!document.isConnected());
    const controls::Node* root = document.tvDBNodes().find(QStringLiteral("R"));
    QVERIFY(root != nullptr);
    QCOMPARE(root->text, QStringLiteral("Server"));
    QCOMPARE(root->children.size(), std::size_t(1));
    QCOMPARE(root->children[0]->key, QStringLiteral("D1"));
    QCOMPARE(root->children[0]->text, QStringLiteral("<No Connection>"));
    QVERIFY(document.tvDB().isExpanded(document.tvDBNodes().indexOf(*root)));
    QVERIFY(document.tvDB().hotTracking());
    QCOMPARE(document.lvTblDefItems().header(3), QStringLiteral("Foreign"));
    QCOMPARE(document.lvTblDataItems().headerCount(), 3);
    QCOMPARE(title(desk, 0), QStringLiteral("Databases"));
    QCOMPARE(title(desk, 2), QStringLiteral("Sample Data"));
    QCOMPARE(desk.state.documents.find(QStringLiteral("2")), static_cast<tw::Document*>(&document));
}

void TestFrmDocument::choosesNode_data() {
    const testsupport::Table<int, QString, QString, QString, QString, bool> row(
        "clickOption", "action", "key", "firstTitle", "secondTitle", "cleared");
    constexpr auto Tables = "Table Definition:";
    row("server", 0, "double", "R", "Databases", "before", false);
    row("database, click that does not open", 0, "single", "Sales", "Database: Sales", "before", false);
    row("database, double click", 0, "double", "Sales", "Database: Sales", Tables, true);
    row("database, click that opens", 1, "single", "Sales", "Database: Sales", Tables, true);
    row("database, Enter", 0, "enter", "Closed", "Database: Closed", Tables, true);
    row("table, click that does not open", 0, "single", "SalesOrders", "Databases", "before", false);
    row("table, double click", 0, "double", "SalesOrders", "Database: Sales", "Table Definition: Orders",
        true);
    row("table, click that opens", 1, "single", "SalesOrders", "Database: Sales", "Table Definition: Orders",
        true);
    row("table, Enter", 1, "enter", "SalesOrders", "Database: Sales", "Table Definition: Orders", true);
}

void TestFrmDocument::choosesNode() {
    QFETCH(int, clickOption);
    QFETCH(QString, action);
    QFETCH(QString, key);
    QFETCH(bool, cleared);
    Desk desk;
    desk.state.options.MouseClickOption = static_cast<qint16>(clickOption);
    fillTree(desk);
    desk.document->lvTblDefItems().addItem(u"column");
    desk.document->findChild<QLabel*>(QStringLiteral("lblTitle1"))->setText(QStringLiteral("before"));
    desk.document->show();
    // Nothing is behind the tree: a table's routines report that, under the hourglass.
    testsupport::Answers answers;
    answers.allowLeftovers();
    answers.whileOpen([](const auto&) { QVERIFY(QGuiApplication::overrideCursor() != nullptr); });

    desktop::TreeView& tree = desk.document->tvDB();
    if (action == QStringLiteral("enter")) {
        tree.setCurrentIndex(desk.document->tvDBNodes().indexOf(*desk.document->tvDBNodes().find(key)));
        QTest::keyClick(&tree, Qt::Key_Return);
    } else {
        const QPoint place = placeOf(desk, key);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place);
        if (action == QStringLiteral("double")) {
            QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, place);
        }
    }
    QTEST(title(desk, 0), "firstTitle");
    QTEST(title(desk, 1), "secondTitle");
    QCOMPARE(desk.document->lvTblDefItems().count(), cleared ? 0 : 1);
    // Once for the columns and once for the rows.
    QCOMPARE(answers.boxes(), cleared && key == QStringLiteral("SalesOrders") ? 2 : 0);
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
}

void TestFrmDocument::popsUpMenus() {
    Desk desk;
    fillTree(desk);
    desk.document->show();
    QWidget* tree = desk.document->tvDB().viewport();
    QWidget* list = desk.document->lvTblDef().viewport();
    const auto rightClick = [](QWidget* widget, const QPoint& place) {
        QTest::mouseClick(widget, Qt::RightButton, {}, place);
        QCoreApplication::processEvents();
    };
    rightClick(tree, placeOf(desk, QStringLiteral("Sales")));
    rightClick(list, {20, 5});
    QCOMPARE(desk.frame.connectMenus + desk.frame.exportMenus, 0);
    rightClick(tree, placeOf(desk, QStringLiteral("R")));
    QCOMPARE(desk.frame.connectMenus, 1);
    desk.document->lvTblDefItems().addItem(u"column");
    rightClick(list, {20, 5});
    QCOMPARE(desk.frame.exportMenus, 1);
    QCOMPARE(desk.frame.connectMenus, 1);
}

void TestFrmDocument::leavesTheProgramOnce_data() {
    const testsupport::Table<bool, bool> row("closed", "connected");
    row("closed, then destroyed", true, true);
    row("only destroyed", false, true);
    row("not connected", true, false);
}

void TestFrmDocument::leavesTheProgramOnce() {
    QFETCH(bool, closed);
    QFETCH(bool, connected);
    Desk desk;
    desk.state.openDocuments = 5;
    desk.state.connectedDocuments = 3;
    desk.document->setConnected(connected);
    if (closed) {
        desk.document->close();
        QCOMPARE(desk.state.openDocuments, 4);
        desk.document->close();
    }
    desk.document.reset();
    QVERIFY(desk.state.documents.all().empty());
    QCOMPARE(desk.state.openDocuments, 4);
    QCOMPARE(desk.frame.connectedCounts, std::vector<qint32>{connected ? 2 : 3});
}

QTEST_MAIN(TestFrmDocument)
#include "test_frmdocument.moc"

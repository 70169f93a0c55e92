#include "platform/controls/nodes.h"
#include "platform/runtimeerror.h"

#include <QAbstractItemModelTester>
#include <QTest>

using controls::Node;
using controls::Nodes;

class NodesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void keepsTheTree();
    void refusesTakenKeys();
    void addsBatches();
    void clears();
};

void NodesTest::keepsTheTree() {
    Nodes nodes;
    QAbstractItemModelTester tester(&nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Node& root = nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 1, 2);
    Node& first = nodes.add(&root, QStringLiteral("D1"), QStringLiteral("pubs"), 3, 4);
    nodes.add(&root, QStringLiteral("D2"), QStringLiteral("north"), 3, 4);
    Node& table = nodes.add(&first, QStringLiteral("T1"), QStringLiteral("authors"), 5, 5);

    const QModelIndex index = nodes.indexOf(table);
    QCOMPARE(index.data().toString(), QStringLiteral("authors"));
    QCOMPARE(index.parent().data().toString(), QStringLiteral("pubs"));
    QCOMPARE(index.parent().data(Nodes::SelectedImageRole).toInt(), 4);
    QCOMPARE(index.parent().parent().data(Nodes::ImageRole).toInt(), 1);
    QVERIFY(!index.parent().parent().parent().isValid());
    QCOMPARE(nodes.rowCount(nodes.indexOf(root)), 2);
    QCOMPARE(nodes.node(nodes.index(1, 0, nodes.indexOf(root)))->key, QStringLiteral("D2"));
    QCOMPARE(nodes.find(QStringLiteral("T1")), &table);
    QCOMPARE(nodes.count(), 4);
}

void NodesTest::refusesTakenKeys() {
    Nodes nodes;
    Node& root = nodes.add(nullptr, QStringLiteral("key"), QStringLiteral("one"), 0, 0);
    nodes.add(&root, QStringLiteral("KEY"), QStringLiteral("another case"), 0, 0);
    nodes.add(&root, QStringLiteral("key "), QStringLiteral("a blank more"), 0, 0);
    try {
        nodes.add(&root, QStringLiteral("key"), QStringLiteral("again, deeper"), 0, 0);
        QFAIL("the key was taken");
    } catch (const platform::RuntimeError& error) {
        QCOMPARE(error.number(), 35602);
        QCOMPARE(error.description(), QStringLiteral("Key is not unique in collection"));
    }
    QCOMPARE(nodes.count(), 3);
    QCOMPARE(root.children.size(), size_t(2));
    QCOMPARE(nodes.find(QStringLiteral("key")), &root);
}

void NodesTest::addsBatches() {
    Nodes nodes;
    QAbstractItemModelTester tester(&nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Node& root = nodes.add(nullptr, QStringLiteral("R"), QStringLiteral("Server"), 1, 1);
    nodes.add(&root, QStringLiteral("0"), QStringLiteral("zero"), 1, 1);
    int announced = 0;
    connect(&nodes, &Nodes::rowsInserted, this, [&] { ++announced; });
    {
        Nodes::Batch batch(nodes, root);
        batch.add(QStringLiteral("1"), QStringLiteral("one"), 1, 1);
        try {
            batch.add(QStringLiteral("0"), QStringLiteral("taken"), 1, 1);
            QFAIL("the key was taken");
        } catch (const platform::RuntimeError& error) {
            QCOMPARE(error.number(), 35602);
        }
        batch.add(QStringLiteral("2"), QStringLiteral("two"), 1, 1);
        QCOMPARE(nodes.rowCount(nodes.indexOf(root)), 1);
    }
    QCOMPARE(announced, 1);
    QCOMPARE(nodes.rowCount(nodes.indexOf(root)), 3);
    QCOMPARE(nodes.indexOf(*nodes.find(QStringLiteral("2"))).row(), 2);
    { const Nodes::Batch nothing(nodes, root); }
    QCOMPARE(announced, 1);
}

void NodesTest::clears() {
    Nodes nodes;
    QAbstractItemModelTester tester(&nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
    nodes.add(&nodes.add(nullptr, QStringLiteral("R"), {}, 0, 0), QStringLiteral("D1"), {}, 0, 0);
    nodes.clear();
    QCOMPARE(nodes.count(), 0);
    QCOMPARE(nodes.rowCount(), 0);
    QVERIFY(!nodes.find(QStringLiteral("D1")));
    nodes.add(nullptr, QStringLiteral("D1"), QStringLiteral("free again"), 0, 0);
    QCOMPARE(nodes.index(0, 0).data().toString(), QStringLiteral("free again"));
}

QTEST_GUILESS_MAIN(NodesTest)
#include "test_nodes.moc"

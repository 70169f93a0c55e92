#include "platform/controls/comboitems.h"
#include "platform/controls/keyedtexts.h"
#include "platform/runtimeerror.h"

#include <QAbstractItemModelTester>
#include <QTest>

class CollectionsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void comboItems();
    void comboItemsRefuseWrongIndexes();
    void keyedTexts();
};

void CollectionsTest::comboItems() {
    controls::ComboItems items;
    QAbstractItemModelTester tester(&items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    items.addItem(QStringLiteral("(local)"));
    items.addItem(QStringLiteral("Zürich"));
    items.setItemData(1, -7);
    QCOMPARE(items.text(1), QStringLiteral("Zürich"));
    QCOMPARE(items.itemData(0), 0);
    QCOMPARE(items.index(1).data(Qt::UserRole).toInt(), -7);
    QCOMPARE(items.index(1).data(Qt::EditRole).toString(), QStringLiteral("Zürich"));
    items.clear();
    QCOMPARE(items.rowCount(), 0);
}

void CollectionsTest::comboItemsRefuseWrongIndexes() {
    controls::ComboItems items;
    items.addItem(QStringLiteral("one"));
    QVERIFY_EXCEPTION_THROWN(items.text(-1), platform::RuntimeError);
    QVERIFY_EXCEPTION_THROWN(items.itemData(1), platform::RuntimeError);
    QVERIFY_EXCEPTION_THROWN(items.setItemData(1, 1), platform::RuntimeError);
}

void CollectionsTest::keyedTexts() {
    controls::KeyedTexts texts;
    texts.add(QStringLiteral("second by key"), QStringLiteral("b"));
    texts.add(QStringLiteral("first by key"), QStringLiteral("a"));
    texts.add(QStringLiteral("another case"), QStringLiteral("A"));
    QCOMPARE(texts.item(0), QStringLiteral("second by key"));
    QCOMPARE(texts.item(QStringLiteral("A")), QStringLiteral("another case"));
    QVERIFY(!texts.contains(QStringLiteral("c")));

    const auto numberOf = [](const auto& action) {
        try {
            action();
        } catch (const platform::RuntimeError& error) {
            return error.number();
        }
        return 0;
    };
    QCOMPARE(numberOf([&] { texts.add(QStringLiteral("x"), QStringLiteral("a")); }), 457);
    QCOMPARE(numberOf([&] { texts.item(QStringLiteral("c")); }), 5);
    QCOMPARE(texts.count(), 3);
    QCOMPARE(texts.item(QStringLiteral("a")), QStringLiteral("first by key"));
    texts.clear();
    QCOMPARE(texts.count(), 0);
    texts.add(QStringLiteral("again"), QStringLiteral("a"));
}

QTEST_GUILESS_MAIN(CollectionsTest)
#include "test_collections.moc"

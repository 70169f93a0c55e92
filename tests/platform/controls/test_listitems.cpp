#include "platform/controls/listitems.h"
#include "platform/runtimeerror.h"
#include "support/table.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using controls::ListItems;

class ListItemsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void textsComeBackToTheLetter_data();
    void textsComeBackToTheLetter();
    void changesInAnyOrder();
    void someItemsShow();
    void rowsAreAnnouncedInBatches();
    void changesOfShownRowsAreAnnouncedOnce();
    void clearingKeepsHeaders();
    void missingItem();
    void memoryStaysNearTheTexts();
};

void ListItemsTest::textsComeBackToTheLetter_data() {
    const testsupport::Table<QString> row("text");
    row("empty", "");
    row("Latin-1, 127 characters", QString(127, QChar(0xff)));
    row("Latin-1, 8192 characters", QString(8192, u'x'));
    row("one wide character", "price in €");
    row("outside the basic plane", "\U0001F600\U0001F601");
    row("half a pair", QString(QChar(0xd800)));
    row("null character, line ends", QStringLiteral("a\0b\r\n").append(QChar(0)));
}

void ListItemsTest::textsComeBackToTheLetter() {
    QFETCH(QString, text);
    ListItems items;
    items.addItem(text, 3);
    items.setSubItem(0, 3, text);
    items.addItem(u"next");
    QCOMPARE(items.text(0), text);
    QCOMPARE(items.subItem(0, 1), QString());
    QCOMPARE(items.subItem(0, 3), text);
    QCOMPARE(items.subItem(0, 4), QString());
    QCOMPARE(items.icon(0), 3);
    QCOMPARE(items.text(1), QStringLiteral("next"));
}

// Against a plain table, over several pages and with texts of every size.
void ListItemsTest::changesInAnyOrder() {
    QRandomGenerator random(7);
    ListItems items;
    std::vector<std::pair<int, QStringList>> expected;
    const auto someText = [&] {
        return QString(random.bounded(200), random.bounded(2) ? QChar(u'a') : QChar(u'Ж'));
    };
    for (int step = 0; step < 3000; ++step) {
        const int kind = random.bounded(5);
        if (kind == 0 || expected.empty()) {
            const QString text = someText();
            const int icon = random.bounded(-3, 300);
            QCOMPARE(items.addItem(text, icon), int(expected.size()));
            expected.emplace_back(icon, QStringList{text, {}, {}, {}});
            continue;
        }
        const int item = kind == 1 ? int(expected.size()) - 1 : random.bounded(int(expected.size()));
        auto& [icon, texts] = expected[size_t(item)];
        if (kind == 3) {
            icon = random.bounded(-100000, 100000);
            items.setIcon(item, icon);
        } else {
            const int column = random.bounded(4);
            const bool marker = kind == 4;
            texts[column] = marker ? QStringLiteral("<NULL>") : someText();
            if (marker)
                items.setMarker(item, column, texts.at(column));
            else
                items.setSubItem(item, column, texts.at(column));
        }
    }
    for (int column = 0; column < 4; ++column)
        items.addHeader({});
    items.notifyViews();
    QVERIFY(expected.size() > 200);
    for (int item = 0; item < int(expected.size()); ++item) {
        const auto& [icon, texts] = expected[size_t(item)];
        QCOMPARE(items.icon(item), icon);
        for (int column = 0; column < 4; ++column) {
            QCOMPARE(items.subItem(item, column), texts.at(column));
            const bool marker = texts.at(column).startsWith(u'<');
            QCOMPARE(items.index(item, column).data(controls::MarkerRole).toBool(), marker);
        }
    }
}

void ListItemsTest::someItemsShow() {
    ListItems items;
    QAbstractItemModelTester tester(&items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy heldBack(&items, &ListItems::itemsHeldBack);
    QSignalSpy inserted(&items, &ListItems::rowsInserted);
    items.addHeader(QStringLiteral("Name"));
    const auto add = [&](int count) {
        for (int i = 0; i < count; ++i)
            items.addItem(QString::number(items.count()));
        items.notifyViews();
    };
    const auto shown = [&] {
        QStringList texts;
        for (int row = 0; row < items.rowCount(); ++row)
            texts += items.index(row, 0).data().toString();
        return texts.join(u' ');
    };
    add(5);
    items.showOnly({1, 3});
    QCOMPARE(shown(), QStringLiteral("1 3"));
    QCOMPARE(items.rowOf(3), 1);
    QCOMPARE(items.rowOf(2), 1);
    QCOMPARE(items.rowOf(4), 2);
    QCOMPARE(items.itemOf(1), 3);
    inserted.clear();
    add(3);
    QCOMPARE(heldBack.size(), 1);
    items.showOnly({1, 3, 6});
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 2);  // rows at the front stay
    items.setSubItem(6, 0, u"six");
    QCOMPARE(shown(), QStringLiteral("1 3 six"));
    items.showOnly({2});
    QCOMPARE(shown(), QStringLiteral("2"));
    items.showAll();
    QCOMPARE(shown(), QStringLiteral("0 1 2 3 4 5 six 7"));
    items.showOnly({0});
    items.clearItems();
    add(1);
    QCOMPARE(shown(), QString());
    items.showAll();
    QCOMPARE(shown(), QStringLiteral("0"));
}

void ListItemsTest::rowsAreAnnouncedInBatches() {
    ListItems items;
    QAbstractItemModelTester tester(&items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&items, &ListItems::rowsInserted);
    items.addHeader(QStringLiteral("Name"));
    items.addHeader(QStringLiteral("Data Type"));
    for (int row = 0; row < 100; ++row) {
        items.addItem(QString::number(row));
        items.setSubItem(row, 1, u"int");
    }
    QCOMPARE(items.count(), 100);
    QCOMPARE(items.rowCount(), 0);
    QTRY_COMPARE(items.rowCount(), 100);
    QCOMPARE(inserted.count(), 1);

    items.addItem(u"100");
    items.notifyViews();
    QCOMPARE(items.rowCount(), 101);
    QCOMPARE(items.index(100, 0).data().toString(), QStringLiteral("100"));
    QCOMPARE(items.index(99, 1).data().toString(), QStringLiteral("int"));
    QCOMPARE(items.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Data Type"));
    QCoreApplication::processEvents();
    QCOMPARE(inserted.count(), 2);
}

void ListItemsTest::changesOfShownRowsAreAnnouncedOnce() {
    ListItems items;
    QAbstractItemModelTester tester(&items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    items.addHeader(QStringLiteral("Name"));
    for (int row = 0; row < 10; ++row) {
        items.addItem(u"x");
    }
    items.notifyViews();
    QSignalSpy changed(&items, &ListItems::dataChanged);
    items.setIcon(7, 2);
    items.setSubItem(3, 0, u"y");
    items.setIcon(items.addItem(u"not shown yet"), 5);
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex().row(), 3);
    QCOMPARE(changed.at(0).at(1).toModelIndex().row(), 7);
    QCOMPARE(items.index(7, 0).data(ListItems::IconRole).toInt(), 2);
    QCOMPARE(items.rowCount(), 11);
}

void ListItemsTest::clearingKeepsHeaders() {
    ListItems items;
    QAbstractItemModelTester tester(&items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    items.addHeader(QStringLiteral("Name"));
    items.addItem(u"shown");
    items.notifyViews();
    items.setIcon(0, 1);
    items.addItem(u"not shown");
    items.clearItems();
    QCOMPARE(items.count(), 0);
    QCOMPARE(items.rowCount(), 0);
    QCOMPARE(items.headerCount(), 1);
    items.addItem(u"again");
    QCoreApplication::processEvents();
    QCOMPARE(items.rowCount(), 1);
    items.clearHeaders();
    QCOMPARE(items.columnCount(), 0);
    QCOMPARE(items.text(0), QStringLiteral("again"));
}

void ListItemsTest::missingItem() {
    ListItems items;
    items.addItem(u"one");
    QVERIFY_EXCEPTION_THROWN(items.text(1), platform::RuntimeError);
    QVERIFY_EXCEPTION_THROWN(items.setSubItem(-1, 1, u"x"), platform::RuntimeError);
    QVERIFY(!items.data(items.index(5, 0), Qt::DisplayRole).isValid());
}

// The heap in use, where the system tells; the sanitizers' own heap does not.
static size_t heapBytes() {
#ifdef __GLIBC__
    return mallinfo2().uordblks + mallinfo2().hblkhd;
#else
    return 0;
#endif
}

void ListItemsTest::memoryStaysNearTheTexts() {
    constexpr int Rows = 100000;
    const QString value = QStringLiteral("some value");
    const size_t before = heapBytes();
    ListItems items;
    size_t textBytes = 0;
    for (int row = 0; row < Rows; ++row) {
        items.addItem(value);
        for (int column = 1; column < 8; ++column) {
            items.setSubItem(row, column, value);
        }
        textBytes += size_t(value.size()) * sizeof(QChar) * 8;
    }
    QCOMPARE(items.subItem(Rows - 1, 7), value);
    if (heapBytes() == 0) QSKIP("the heap cannot be measured here");
    const size_t used = heapBytes() - before;
    QVERIFY2(used < textBytes * 2,
             qPrintable(QStringLiteral("%1 bytes for %2 of texts").arg(used).arg(textBytes)));
}

QTEST_GUILESS_MAIN(ListItemsTest)
#include "test_listitems.moc"

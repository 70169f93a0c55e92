#include "expectations.h"
#include "platform/ado/celltext.h"
#include "support/table.h"

#include <QTest>

#include <cmath>

using namespace ado;

class CellTextTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void floats_data();
    void floats();
    void integers_data();
    void integers();
    void exactNumbersHaveAZeroBeforeThePoint();
};

template <typename T>
static Cell cellOf(const T& value) {
    return {reinterpret_cast<const std::byte*>(&value), sizeof value};
}

void CellTextTest::floats_data() {
    const testsupport::TextTable<double, bool> row("text", "value", "single");
    row("0.1", 0.1, false);
    row("0.1", double(0.1F), true);
    row("0", -0.0, false);
    row("100000", 100000, false);
    row("0.3333333333333333", 1.0 / 3, false);
    row("0.33333334", double(1.0F / 3), true);
    row("123456789012345", 123456789012345, false);
    row("1E+15", 1e15, false);
    row("0.00001", 0.00001, false);
    row("1.2E-06", 0.0000012, false);
    row("-1.7976931348623157E+308", -1.7976931348623157e308, false);
    row("5E-324", 5e-324, false);
    row("3.4028235E+38", double(3.4028235e38F), true);
}

void CellTextTest::floats() {
    QFETCH(double, value);
    QFETCH(bool, single);
    QFETCH(QString, text);
    TextRoom room;
    const float asSingle = static_cast<float>(value);
    const Column column{{}, single ? FieldType::Real : FieldType::Float};
    const QStringView made = cellText(column, single ? cellOf(asSingle) : cellOf(value), room);
    QCOMPARE(made.toString(), text);
    if (single)
        QVERIFY(static_cast<float>(made.toString().toDouble()) == asSingle);
    else
        QVERIFY(made.toString().toDouble() == value);
}

void CellTextTest::integers_data() {
    const testsupport::TextTable<bool, qint64> row("text", "isNumber", "number");
    row("42", true, 42);
    row(" -42 ", true, -42);
    row("9223372036854775807", true, 9223372036854775807);
    row("2.5", true, 2);
    row("3.5", true, 4);
    row("-0.0001", true, 0);
    row("1e3", true, 1000);
    row("9223372036854775808", false, 0);
    row("", false, 0);
    row("4 2", false, 0);
    row("4\xD9\xA2", false, 0);
    row("nan", false, 0);
}

void CellTextTest::integers() {
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    const Cell cell{reinterpret_cast<const std::byte*>(text.utf16()), text.size() * 2};
    const Column column{{}, FieldType::Text, 50};
    if (isNumber)
        QTEST(cellInteger(column, cell), "number");
    else
        QCOMPARE(numberOf([&] { cellInteger(column, cell); }), 13);
}

void CellTextTest::exactNumbersHaveAZeroBeforeThePoint() {
    TextRoom room;
    for (const auto& [given, text] : {std::pair{".5000", "0.5000"}, std::pair{"-.5", "-0.5"},
                                      std::pair{"-10.5", "-10.5"}, std::pair{"0", "0"}}) {
        const QString digits = QString::fromLatin1(given);
        const Cell cell{reinterpret_cast<const std::byte*>(digits.utf16()), digits.size() * 2};
        QCOMPARE(cellText({{}, FieldType::Exact, 48}, cell, room).toString(), QString::fromLatin1(text));
    }
}

QTEST_GUILESS_MAIN(CellTextTest)
#include "test_celltext.moc"

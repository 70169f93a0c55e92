#include "expectations.h"
#include "platform/ado/celltext.h"

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
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("single");
    QTest::addColumn<QString>("text");
    const auto row = [](double value, bool single, const char* text) {
        QTest::newRow(text) << value << single << QString::fromLatin1(text);
    };
    row(0.1, false, "0.1");
    row(double(0.1F), true, "0.1");
    row(-0.0, false, "0");
    row(100000, false, "100000");
    row(1.0 / 3, false, "0.3333333333333333");
    row(double(1.0F / 3), true, "0.33333334");
    row(123456789012345, false, "123456789012345");
    row(1e15, false, "1E+15");
    row(0.00001, false, "0.00001");
    row(0.0000012, false, "1.2E-06");
    row(-1.7976931348623157e308, false, "-1.7976931348623157E+308");
    row(5e-324, false, "5E-324");
    row(double(3.4028235e38F), true, "3.4028235E+38");
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
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<qint64>("number");
    const auto row = [](const char* text, bool isNumber, qint64 number) {
        QTest::newRow(text) << QString::fromUtf8(text) << isNumber << number;
    };
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

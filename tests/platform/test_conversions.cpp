#include "platform/conversions.h"
#include "platform/runtimeerror.h"
#include "support/table.h"

#include <QTest>

#include <functional>

using namespace platform;

class ConversionsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void wholeNumbers_data();
    void wholeNumbers();
    void typedNumbers_data();
    void typedNumbers();
    void singles_data();
    void singles();
    void sizes_data();
    void sizes();
};

static QString resultOf(const std::function<QString()>& step) {
    try {
        return step();
    } catch (const RuntimeError& error) {
        return QStringLiteral("error %1").arg(error.number());
    }
}

void ConversionsTest::wholeNumbers_data() {
    const testsupport::TextTable<QString, QString> row("text", "asInteger", "asLong");
    row("50", "50", "50");
    row("  50\t", "50", "50");
    row("+7", "7", "7");
    row("-1", "-1", "-1");
    row("0.5", "0", "0");
    row("1.5", "2", "2");
    row("-2.5", "-2", "-2");
    row(".5", "0", "0");
    row("1e3", "1000", "1000");
    row("32767.4", "32767", "32767");
    row("32767.5", "error 6", "32768");
    row("-32768", "-32768", "-32768");
    row("2147483648", "error 6", "error 6");
    row("1e999", "error 6", "error 6");
    row("1e-999", "0", "0");
    for (const char* refused : {"", " ", "-", "+-1", ".", "1,5", "50x", "inf", "0x10", "\xD9\xA2"})
        row(refused, "error 13", "error 13");
}

void ConversionsTest::wholeNumbers() {
    QFETCH(QString, text);
    QTEST(resultOf([&] { return QString::number(toInteger(text)); }), "asInteger");
    QTEST(resultOf([&] { return QString::number(toLong(text)); }), "asLong");
}

void ConversionsTest::typedNumbers_data() {
    const testsupport::TextTable<int> row("text", "number");  // -1: refused
    row("0", 0);
    row(" 0050\t", 50);
    row("2147483647", 2147483647);
    for (const char* refused : {"", " ", "2147483648", "4294967296", "99999999999999999999", "-1", "-0", "+1",
                                "1.0", "1e3", "1 2", "0x10", "ten", "\u0661"})
        row(refused, -1);
}

void ConversionsTest::typedNumbers() {
    QFETCH(QString, text);
    QTEST(wholeNumber(text).value_or(-1), "number");
}

void ConversionsTest::singles_data() {
    const testsupport::TextTable<QString> row("text", "result");
    row("9525", "9525");
    row(" 0.1 ", "0.1");
    row("16777217", "16777216");
    row("999999930368", "999999930368");
    row("1e12", "1e+12");
    row("-0", "0");
    row("1e-10", "0.0000000001");
    row("3.4028235e38", "3.4028235e+38");
    row("3.5e38", "error 6");
    row("nan", "error 13");
    row("", "error 13");
}

void ConversionsTest::singles() {
    QFETCH(QString, text);
    QTEST(resultOf([&] { return singleText(toSingle(text)); }), "result");
}

void ConversionsTest::sizes_data() {
    const testsupport::Table<double, QString> row("value", "result");
    row("half to even, down", 0.5, "0");
    row("half to even, up", 1.5, "2");
    row("largest", 2147483647.4, "2147483647");
    row("too large", 2147483647.5, "error 6");
    row("smallest", -2147483648.5, "-2147483648");
    row("no number", std::nan(""), "error 6");
}

void ConversionsTest::sizes() {
    QFETCH(double, value);
    QTEST(resultOf([&] { return QString::number(roundToLong(value)); }), "result");
}

QTEST_GUILESS_MAIN(ConversionsTest)
#include "test_conversions.moc"

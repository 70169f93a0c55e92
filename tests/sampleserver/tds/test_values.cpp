#include "support/table.h"
#include "tds/columnformat.h"
#include "tds/rowencoder.h"

#include <QTest>

using engine::SqlType;
using engine::TypeId;
using engine::Value;
using tds::TdsVersion;

Q_DECLARE_METATYPE(SqlType)
Q_DECLARE_METATYPE(Value)
Q_DECLARE_METATYPE(TdsVersion)

namespace {

const Value kNull;

Value text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

Value bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

Value whole(qint64 number) {
    return number;
}

SqlType decimal(int precision, int scale) {
    return {TypeId::Decimal, 0, precision, scale};
}

}  // namespace

/// Columns and values as bytes.
class TestValues : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void columns_data();
    void columns();
    void values_data();
    void values();
    void misfits_data();
    void misfits();
};

void TestValues::columns_data() {
    // In the end the type where there are no nulls, if it is another.
    const testsupport::Table<SqlType, TdsVersion, QByteArray, QByteArray> table("type", "version", "expected",
                                                                                "fixed");
    const auto row = [&](const char* name, SqlType type, const char* hex, const char* fixed = "") {
        table(name, type, TdsVersion::V71, hex, fixed);
    };
    row("bit", {TypeId::Bit}, "0000 0100 6801", "32");
    row("tinyint", {TypeId::TinyInt}, "0000 0100 2601", "30");
    row("smallint", {TypeId::SmallInt}, "0000 0100 2602", "34");
    row("int", {TypeId::Int}, "0000 0100 2604", "38");
    row("decimal(9, 2)", decimal(9, 2), "0000 0100 6a 05 09 02");
    row("decimal(19, 0)", decimal(19, 0), "0000 0100 6a 09 13 00");
    row("decimal(28, 4)", decimal(28, 4), "0000 0100 6a 0d 1c 04");
    row("numeric(38, 38)", {TypeId::Numeric, 0, 38, 38}, "0000 0100 6c 11 26 26");
    row("money", {TypeId::Money}, "0000 0100 6e08", "3c");
    row("smallmoney", {TypeId::SmallMoney}, "0000 0100 6e04", "7a");
    row("float", {TypeId::Float}, "0000 0100 6d08", "3e");
    row("real", {TypeId::Real}, "0000 0100 6d04", "3b");
    row("datetime", {TypeId::DateTime}, "0000 0100 6f08", "3d");
    row("smalldatetime", {TypeId::SmallDateTime}, "0000 0100 6f04", "3a");
    row("char(10)", {TypeId::Char, 10}, "0000 0100 af 0a00 0904d00034");
    row("varchar(8000)", {TypeId::VarChar, 8000}, "0000 0100 a7 401f 0904d00034");
    row("varchar(0)", {TypeId::VarChar, 0}, "0000 0100 a7 0100 0904d00034");
    row("nchar(10)", {TypeId::NChar, 10}, "0000 0100 ef 1400 0904d00034");
    row("nvarchar(128)", {TypeId::NVarChar, 128}, "0000 0100 e7 0001 0904d00034");
    row("binary(4)", {TypeId::Binary, 4}, "0000 0100 ad 0400");
    row("varbinary(4)", {TypeId::VarBinary, 4}, "0000 0100 a5 0400");
    row("timestamp", {TypeId::Timestamp}, "5000 0100 ad 0800");
    row("uniqueidentifier", {TypeId::UniqueIdentifier}, "0000 0100 2410");
    row("text", {TypeId::Text}, "0000 0100 23 ffffff7f 0904d00034 0000");
    row("ntext", {TypeId::NText}, "0000 0100 63 feffff7f 0904d00034 0000");
    row("image", {TypeId::Image}, "0000 0100 22 ffffff7f 0000");

    const SqlType longText{TypeId::Text};
    table("text in 7.0", longText, TdsVersion::V70, "0000 0100 23 ffffff7f 0000", "");
    table("text in 7.4", longText, TdsVersion::V74, "00000000 0100 23 ffffff7f 0904d00034 01 0000", "");
    table("char in 7.0", {TypeId::Char, 2}, TdsVersion::V70, "0000 0100 af 0200", "");
    table("timestamp in 7.2", {TypeId::Timestamp}, TdsVersion::V72, "50000000 0100 ad 0800", "");
}

void TestValues::columns() {
    QFETCH(SqlType, type);
    QFETCH(TdsVersion, version);
    QFETCH(QByteArray, expected);
    QFETCH(QByteArray, fixed);
    QByteArray out;
    tds::appendColumns(out, {{QStringLiteral("\u00e4b"), type, true}, {QString(), type, false, true}},
                       version);

    const QByteArray nullable = QByteArray::fromHex(expected);
    QByteArray plain = nullable;
    const qsizetype flags = version >= TdsVersion::V72 ? 4 : 2;
    plain[flags] = 0x10;  // an identity
    if (!fixed.isEmpty()) plain = plain.left(flags + 2) + QByteArray::fromHex(fixed);
    QCOMPARE(out.toHex(), (QByteArray::fromHex("81 0200") + nullable + QByteArray::fromHex("02 e4006200") +
                           plain + QByteArray::fromHex("00"))
                              .toHex());
}

void TestValues::values_data() {
    const testsupport::Table<SqlType, Value, QByteArray> row("type", "value", "expected");
    const QByteArray pointer = "10" + QByteArray(48, '0');
    const auto longRow = [&](const char* name, SqlType type, const Value& value, const char* hex) {
        row(name, type, value, pointer + hex);
    };

    row("null int", {TypeId::Int}, kNull, "00");
    row("null decimal", decimal(9, 2), kNull, "00");
    row("null guid", {TypeId::UniqueIdentifier}, kNull, "00");
    row("null varchar", {TypeId::VarChar, 9}, kNull, "ffff");
    row("null nchar", {TypeId::NChar, 9}, kNull, "ffff");
    row("null binary", {TypeId::Binary, 9}, kNull, "ffff");
    row("null timestamp", {TypeId::Timestamp}, kNull, "ffff");
    row("null text", {TypeId::Text}, kNull, "00");
    row("null image", {TypeId::Image}, kNull, "00");

    row("bit", {TypeId::Bit}, whole(1), "01 01");
    row("tinyint", {TypeId::TinyInt}, whole(255), "01 ff");
    row("smallint", {TypeId::SmallInt}, whole(-2), "02 feff");
    row("int", {TypeId::Int}, whole(-2147483648LL), "04 00000080");
    row("money", {TypeId::Money}, whole(10000), "08 00000000 10270000");
    row("negative money", {TypeId::Money}, whole(-1), "08 ffffffff ffffffff");
    row("large money", {TypeId::Money}, whole(9223372036854775807LL), "08 ffffff7f ffffffff");
    row("smallmoney", {TypeId::SmallMoney}, whole(-10000), "04 f0d8ffff");
    row("float", {TypeId::Float}, 1.5, "08 000000000000f83f");
    row("real", {TypeId::Real}, -2.0, "04 000000c0");

    row("decimal, 4 bytes", decimal(9, 2), text("-0.50"), "05 00 32000000");
    row("decimal, 8 bytes", decimal(19, 0), text("9999999999999999999"), "09 01 ffffe789 0423c78a");
    row("decimal, 12 bytes", decimal(28, 0), text("4294967296"), "0d 01 00000000 01000000 00000000");
    row("decimal, 16 bytes", decimal(38, 0), text("99999999999999999999999999999999999999"),
        "11 01 ffffffff 3f228a09 7ac4865a a84c3b4b");
    row("decimal without digits before the point", decimal(2, 2), text(".25"), "05 01 19000000");

    row("datetime, first day", {TypeId::DateTime}, whole(0), "08 00000000 00000000");
    row("datetime, last tick before it", {TypeId::DateTime}, whole(-1), "08 ffffffff ff818b01");
    row("datetime, noon of day 2", {TypeId::DateTime}, whole(25920000LL * 3 / 2), "08 01000000 00c1c500");
    row("datetime, 9999", {TypeId::DateTime}, whole(25920000LL * 2958463), "08 7f242d00 00000000");
    row("smalldatetime", {TypeId::SmallDateTime}, whole(25920000LL * 65535 + 1439 * 18000), "04 ffff 9f05");

    row("char, code page", {TypeId::Char, 6}, text("A\u00e4\u20ac\u0153 \u0178"), "0600 41e4809c209f");
    row("varchar, outside of it", {TypeId::VarChar, 5}, text("\u0416\u0080\u0081\U0001F600"),
        "0500 3f3f813f3f");
    row("varchar, empty", {TypeId::VarChar, 5}, text(""), "0000");
    row("nvarchar, beyond the first plane", {TypeId::NVarChar, 5}, text("a\U0001F600"),
        "0600 6100 3dd8 00de");
    row("binary", {TypeId::Binary, 3}, bytes("0000ff"), "0300 0000ff");
    row("varbinary, empty", {TypeId::VarBinary, 3}, bytes(""), "0000");
    row("timestamp", {TypeId::Timestamp}, bytes("0000000000000101"), "0800 0000000000000101");
    row("uniqueidentifier", {TypeId::UniqueIdentifier}, bytes("00112233445566778899aabbccddeeff"),
        "10 00112233445566778899aabbccddeeff");
    longRow("text", {TypeId::Text}, text("\u20acx"), "02000000 8078");
    longRow("text, empty", {TypeId::Text}, text(""), "00000000");
    longRow("ntext", {TypeId::NText}, text("\U0001F600"), "04000000 3dd800de");
    longRow("image", {TypeId::Image}, bytes("00ff"), "02000000 00ff");
}

void TestValues::values() {
    QFETCH(SqlType, type);
    QFETCH(Value, value);
    QFETCH(QByteArray, expected);
    const std::vector<engine::ResultColumn> columns{{QStringLiteral("c"), type, true}};
    QByteArray out = "before";
    const Value row[]{value};
    QVERIFY(tds::RowEncoder(columns).append(out, row));
    QCOMPARE(out.toHex(), ("before" + QByteArray::fromHex("d1" + expected)).toHex());
    if (!tds::formatOf(type, false).fixed) return;
    // Where there are no nulls the same bytes stand without their length, and a null is refused.
    const tds::RowEncoder strict({{QStringLiteral("c"), type, false}});
    out.clear();
    QCOMPARE(strict.append(out, row), value != kNull);
    if (value != kNull) QCOMPARE(out.toHex(), QByteArray::fromHex("d1" + expected).remove(1, 1).toHex());
}

void TestValues::misfits_data() {
    const testsupport::Table<SqlType, Value> row("type", "value");
    row("int too large", {TypeId::Int}, whole(2147483648LL));
    row("tinyint below zero", {TypeId::TinyInt}, whole(-1));
    row("smallmoney too large", {TypeId::SmallMoney}, whole(2147483648LL));
    row("smalldatetime before 1900", {TypeId::SmallDateTime}, whole(-1));
    row("text for an int", {TypeId::Int}, text("1"));
    row("int for a text", {TypeId::VarChar, 5}, whole(1));
    row("char too long", {TypeId::Char, 2}, text("abc"));
    row("nvarchar too long", {TypeId::NVarChar, 2}, text("abc"));
    row("binary too long", {TypeId::Binary, 1}, bytes("0102"));
    row("guid too short", {TypeId::UniqueIdentifier}, bytes("0102"));
    row("decimal with other scale", decimal(9, 2), text("1.5"));
    row("decimal with too many digits", decimal(3, 0), text("1000"));
    row("decimal beyond 128 bits", decimal(38, 0), text("999999999999999999999999999999999999999"));
    row("no decimal", decimal(9, 0), text("1e3"));
    row("empty decimal", decimal(9, 0), text(""));
}

// The wire must not lie about such a value, nor may half a row stay behind.
void TestValues::misfits() {
    QFETCH(SqlType, type);
    QFETCH(Value, value);
    const SqlType good{TypeId::Int};
    const std::vector<engine::ResultColumn> columns{{QStringLiteral("a"), good, true},
                                                    {QStringLiteral("b"), type, true}};
    QByteArray out = "before";
    const Value row[]{whole(1), value};
    QVERIFY(!tds::RowEncoder(columns).append(out, row));
    QCOMPARE(out, QByteArray("before"));
}

QTEST_GUILESS_MAIN(TestValues)
#include "test_values.moc"

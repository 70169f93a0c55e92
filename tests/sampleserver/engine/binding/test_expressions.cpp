#include "recordingsink.h"
#include "shopworld.h"
#include "support/table.h"

#include <QTest>

/// Values and types of expressions without tables, worked out by the rules of SQL Server.
class ExpressionsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() {
        m_world = shopWorld();
        m_session = shopSession(m_world);
    }
    void arithmetic_data();
    void arithmetic() { check(); }
    void conversions_data();
    void conversions() { check(); }
    void dates_data();
    void dates() { check(); }
    void texts_data();
    void texts() { check(); }
    void conditions_data();
    void conditions();
    void failures_data();
    void failures();

  private:
    using Rows = testsupport::TextTable<QString, QString>;
    void check();

    std::shared_ptr<const engine::World> m_world;
    std::unique_ptr<engine::Session> m_session;
};

void ExpressionsTest::check() {
    QFETCH(QString, expression);
    QFETCH(QString, type);
    QFETCH(QString, value);
    RecordingSink sink;
    m_session->execute(QStringLiteral("SELECT ") + expression, sink);
    if (!sink.errors.empty()) QFAIL(qPrintable(sink.errors[0].text));
    QCOMPARE(sink.rows, QStringList{value});
    QCOMPARE(sink.types, QStringList{type});
}

void ExpressionsTest::arithmetic_data() {
    const Rows row("expression", "type", "value");
    // Whole numbers stay whole and divide towards zero.
    row("7 / 2", "int", "3");
    row("-7 / 2", "int", "-3");
    row("-7 % 3", "int", "-1");
    row("2 + 3 * 4 - -1", "int", "15");
    row("(2 + 3) * 4", "int", "20");
    row("12 & 10", "int", "8");
    row("12 | 3", "int", "15");
    row("12 ^ 10", "int", "6");
    row("~5", "int", "-6");
    row("CAST(200 AS tinyint) + CAST(50 AS smallint)", "smallint", "250");
    row("~CAST(5 AS tinyint)", "tinyint", "250");
    row("0x800 & 2048", "int", "2048");
    row("-2147483648", "numeric(10,0)", "-2147483648");
    // Decimals: precision and scale of the result follow from those of the operands.
    row("1.5 + 2.25", "numeric(4,2)", "3.75");
    row("1.5 * 2.25", "numeric(6,3)", "3.375");
    row("1.0 / 3", "numeric(7,6)", "0.333333");
    row("2 / 3.0", "numeric(8,6)", "0.666666");
    row("10.5 + 1", "numeric(4,1)", "11.5");
    row("CAST(1 AS decimal(10,2)) + CAST(2 AS int)", "numeric(13,2)", "3.00");
    row("12345678901234567890 + 1", "numeric(21,0)", "12345678901234567891");
    row("99999999999.99 * 99999999999.99", "numeric(27,4)", "9999999999998000000000.0001");
    row("-(12345678901234567890.5)", "numeric(21,1)", "-12345678901234567890.5");
    row("-0.5 + 0.5", "numeric(2,1)", "0.0");
    row("-.05", "numeric(2,2)", "-0.05");
    // Money has four digits behind the point, floats what they have.
    row("$10 / 3", "money", "3.3333");
    row("$1.50 * 2", "money", "3.0000");
    row("$1 + 0.00001", "numeric(21,5)", "1.00001");
    row("1e0 / 3", "float", "0.333333333333333");
    row("CAST(1 AS real) / 3", "real", "0.333333343267441");
    row("1 + 1e0", "float", "2");
    row("'5' + 1", "int", "6");
    row("'1.5' + 1.0", "numeric(3,1)", "2.5");
    // Functions of numbers.
    row("ABS(-5)", "int", "5");
    row("ABS(-2.50)", "numeric(3,2)", "2.50");
    row("CEILING(-2.5)", "numeric(2,0)", "-2");
    row("FLOOR(-2.5)", "numeric(2,0)", "-3");
    row("CEILING($2.01)", "money", "3.0000");
    row("ROUND(123.456, 2)", "numeric(6,3)", "123.460");
    row("ROUND(123.456, -1)", "numeric(6,3)", "120.000");
    row("ROUND(-2.5, 0)", "numeric(2,1)", "-3.0");
    row("ROUND(150, -2)", "int", "200");
    row("ROUND(1.99, 1, 1)", "numeric(3,2)", "1.90");
    row("POWER(2, 10)", "int", "1024");
    row("POWER(2.0, 0.5)", "numeric(2,1)", "1.4");
    row("SQRT(2)", "float", "1.4142135623731");
    row("SIGN(-2.5)", "numeric(2,1)", "-1.0");
    row("SQUARE(3)", "float", "9");
    row("ISNUMERIC('-') + ISNUMERIC(' $ ') * 10 + ISNUMERIC('--') * 100", "int", "11");
    row("ISNUMERIC('1e5') + ISNUMERIC('$1,000') * 10 + ISNUMERIC('x') * 100", "int", "11");
    // Null spreads.
    row("1 + NULL", "int", "NULL");
    row("NULL", "int", "NULL");
    row("ISNULL(NULL, 5)", "int", "5");
    row("ISNULL(CAST(NULL AS char(3)), 'abcdef')", "char(3)", "abc");
    row("COALESCE(NULL, 1, 2.5)", "numeric(11,1)", "1.0");
    row("NULLIF(5, 5)", "int", "NULL");
    row("CASE 2 WHEN 1 THEN 'a' WHEN 2 THEN 'bcd' END", "varchar(3)", "bcd");
    row("CASE WHEN 1 = 2 THEN 1 ELSE 2.5 END", "numeric(11,1)", "2.5");
    row("CASE WHEN 1 = 1 THEN 1 ELSE 'abc' END", "int", "1");
    row("CASE WHEN 1 = 1 THEN 1 ELSE 1 / 0 END", "int", "1");
}

void ExpressionsTest::conversions_data() {
    const Rows row("expression", "type", "value");
    row("CONVERT(int, ' 42 ')", "int", "42");
    row("CONVERT(int, '')", "int", "0");
    row("CONVERT(int, 2.9)", "int", "2");
    row("CONVERT(int, -2.9e0)", "int", "-2");
    row("CONVERT(int, $2.5)", "int", "3");
    row("CONVERT(int, 0x0100)", "int", "256");
    row("CONVERT(bit, 5)", "bit", "1");
    row("CONVERT(tinyint, 255)", "tinyint", "255");
    row("CONVERT(decimal(5,1), 2.25)", "decimal(5,1)", "2.3");
    row("CONVERT(decimal(5,1), '-2.25')", "decimal(5,1)", "-2.3");
    row("CONVERT(decimal, 7.5)", "decimal(18,0)", "8");
    row("CONVERT(numeric(38,2), 1e20)", "numeric(38,2)", "100000000000000000000.00");
    row("CONVERT(money, '$1,234.56789')", "money", "1234.5679");
    row("CONVERT(float, '1e3')", "float", "1000");
    row("CONVERT(varchar(10), 12)", "varchar(10)", "12");
    row("CONVERT(varchar(2), 123)", "varchar(2)", "*");
    row("CONVERT(char(5), 'ab')", "char(5)", "ab   ");
    row("CONVERT(varchar(2), 'abc')", "varchar(2)", "ab");
    row("CONVERT(varchar, 1.50)", "varchar(30)", "1.50");
    row("CONVERT(varchar(20), 1234567.5e0)", "varchar(20)", "1.23457e+006");
    row("CONVERT(varchar(20), $1234567.891)", "varchar(20)", "1234567.89");
    row("CONVERT(varchar(20), $-1234567.891, 1)", "varchar(20)", "-1,234,567.89");
    row("CONVERT(varchar(20), $1234.5, 2)", "varchar(20)", "1234.5000");
    row("CONVERT(varchar(10), N'a\xE6\x97\xA5\xE2\x82\xAC')", "varchar(10)", "a?\xE2\x82\xAC");
    row("CONVERT(sysname, 'abc')", "nvarchar(128)", "abc");
    row("CAST('abc' AS binary(5))", "binary(5)", "0x6162630000");
    row("CAST(1 AS binary(6))", "binary(6)", "0x000000000001");
    row("CAST(N'a' AS varbinary(10))", "varbinary(10)", "0x6100");
    row("CAST(0x414243 AS varchar(3))", "varchar(3)", "ABC");
    row("CONVERT(varchar(40), CONVERT(uniqueidentifier, '6f9619ff-8b86-d011-b42d-00c04fc964ff'))",
        "varchar(40)", "6F9619FF-8B86-D011-B42D-00C04FC964FF");
    row("CAST(CONVERT(uniqueidentifier, '6F9619FF-8B86-D011-B42D-00C04FC964FF') AS binary(16))", "binary(16)",
        "0xff19966f868b11d0b42d00c04fc964ff");
}

void ExpressionsTest::dates_data() {
    const Rows row("expression", "type", "value");
    static constexpr auto at = "CONVERT(datetime, '2001-02-03 16:05:06.789')";
    const auto styled = [&](int style, const char* expected) {
        const QString expression =
            QStringLiteral("CONVERT(varchar(30), %1, %2)").arg(QLatin1String(at)).arg(style);
        row(qUtf8Printable(expression), "varchar(30)", expected);
    };
    styled(0, "Feb  3 2001  4:05PM");
    styled(100, "Feb  3 2001  4:05PM");
    styled(1, "02/03/01");
    styled(101, "02/03/2001");
    styled(103, "03/02/2001");
    styled(104, "03.02.2001");
    styled(8, "16:05:06");
    styled(9, "Feb  3 2001  4:05:06:790PM");
    styled(112, "20010203");
    styled(120, "2001-02-03 16:05:06");
    styled(121, "2001-02-03 16:05:06.790");
    styled(126, "2001-02-03T16:05:06.790");
    row("CONVERT(datetime, '2/3/49')", "datetime", "Feb  3 2049 12:00AM");
    row("CONVERT(datetime, '2-3-50 1pm')", "datetime", "Feb  3 1950  1:00PM");
    row("CONVERT(datetime, '20010203 04:05')", "datetime", "Feb  3 2001  4:05AM");
    row("CONVERT(datetime, 'Feb 3, 2001 12:30AM')", "datetime", "Feb  3 2001 12:30AM");
    row("CONVERT(datetime, '3 February 2001')", "datetime", "Feb  3 2001 12:00AM");
    row("CONVERT(datetime, '2001-02-03T04:05:06')", "datetime", "Feb  3 2001  4:05AM");
    row("CONVERT(datetime, '13:45')", "datetime", "Jan  1 1900  1:45PM");
    row("CONVERT(datetime, '')", "datetime", "Jan  1 1900 12:00AM");
    row("CONVERT(datetime, '3/2/2001', 103)", "datetime", "Feb  3 2001 12:00AM");
    row("CONVERT(datetime, '01.02.03', 2)", "datetime", "Feb  3 2001 12:00AM");
    row("CONVERT(datetime, '2001-02-03 04:05', 120)", "datetime", "Feb  3 2001  4:05AM");
    row("CONVERT(datetime, 'Feb 3 2001', 103)", "datetime", "Feb  3 2001 12:00AM");
    row("CONVERT(varchar(23), CONVERT(datetime, '2001-01-01 00:00:00.999'), 121)", "varchar(23)",
        "2001-01-01 00:00:01.000");
    row("CONVERT(smalldatetime, '2001-01-01 10:00:30')", "smalldatetime", "Jan  1 2001 10:01AM");
    row("CONVERT(int, CONVERT(datetime, '1900-01-02 12:00'))", "int", "2");
    row("CONVERT(datetime, '2001-01-31') + 1.5", "datetime", "Feb  1 2001 12:00PM");
    row("DATEADD(month, 1, '2001-01-31')", "datetime", "Feb 28 2001 12:00AM");
    row("DATEADD(yy, -1, '2000-02-29')", "datetime", "Feb 28 1999 12:00AM");
    row("DATEADD(hh, 25, CONVERT(smalldatetime, '2001-01-01'))", "smalldatetime", "Jan  2 2001  1:00AM");
    row("DATEDIFF(year, '1999-12-31 23:59', '2000-01-01')", "int", "1");
    row("DATEDIFF(week, '2001-02-03', '2001-02-04')", "int", "1");
    row("DATEDIFF(day, '2001-03-01', '2001-02-01')", "int", "-28");
    row("DATEDIFF(mi, '2001-01-01 00:00:59', '2001-01-01 00:01:00')", "int", "1");
    row("DATEPART(dw, '2001-02-03')", "int", "7");
    row("DATEPART(wk, '2001-01-07')", "int", "2");
    row("DATEPART(quarter, '2001-12-01')", "int", "4");
    row("DATENAME(month, '2001-02-03') + ' ' + DATENAME(weekday, '2001-02-03')", "nvarchar(61)",
        "February Saturday");
    row("YEAR('2001-02-03') * 10000 + MONTH('2001-02-03') * 100 + DAY('2001-02-03')", "int", "20010203");
    row("ISDATE('2001-02-30') + ISDATE('2000-02-29') * 10", "int", "10");
    row("DATEDIFF(day, GETDATE(), GETDATE())", "int", "0");
}

void ExpressionsTest::texts_data() {
    const Rows row("expression", "type", "value");
    row("'a' + 'bc'", "varchar(3)", "abc");
    row("'a' + N'bc'", "nvarchar(3)", "abc");
    row("'a' + NULL", "varchar(1)", "NULL");
    row("LEN('ab  ')", "int", "2");
    row("DATALENGTH(N'ab ')", "int", "6");
    row("DATALENGTH(1.5)", "int", "5");
    row("UPPER('a\xC3\xA4\xC3\x9F') + LOWER('B')", "varchar(4)",
        "A\xC3\x84\xC3\x9F"
        "b");
    row("'[' + LTRIM(RTRIM('  a ')) + ']'", "varchar(6)", "[a]");
    row("LEFT('abc', 2) + RIGHT('abc', 1)", "varchar(3)", "abc");
    row("SUBSTRING('abcdef', 3, 2)", "varchar(2)", "cd");
    row("SUBSTRING('abc', 0, 2)", "varchar(2)", "a");
    row("SUBSTRING(0x010203, 2, 5)", "varbinary(3)", "0x0203");
    row("CHARINDEX('B', 'abcb')", "int", "2");
    row("CHARINDEX('b', 'abcb', 3)", "int", "4");
    row("PATINDEX('%[0-9]_%', 'ab12')", "int", "3");
    row("REPLACE('aAb', 'a', 'xy')", "varchar(8000)", "xyxyb");
    row("REPLICATE('ab', 3)", "varchar(6)", "ababab");
    row("STUFF('abcdef', 2, 3, 'X')", "varchar(7)", "aXef");
    row("REVERSE('abc')", "varchar(3)", "cba");
    row("STR(123.456, 8, 2)", "varchar(8)", "  123.46");
    row("STR(12345, 3)", "varchar(3)", "***");
    row("ASCII('A') + ASCII(CHAR(128))", "int", "193");
    row("UNICODE(NCHAR(8364))", "int", "8364");
    row("QUOTENAME('a]b')", "nvarchar(258)", "[a]]b]");
    row("USER + '/' + SYSTEM_USER + '/' + HOST_NAME() + '/' + APP_NAME()", "nvarchar(515)",
        "dbo/sa/desk/test");
    row("DB_NAME() + DB_NAME(1)", "nvarchar(256)", "shopmaster");
    row("OBJECT_NAME(OBJECT_ID('shop..[orders]'))", "nvarchar(128)", "orders");
    row("COL_NAME(OBJECT_ID('dbo.orders'), 2)", "nvarchar(128)", "cust");
    row("INDEX_COL('orders', 1, 2)", "nvarchar(128)", "cust");
    row("INDEX_COL('orders', 1, 3)", "nvarchar(128)", "NULL");
    row("OBJECT_ID('nothing')", "int", "NULL");
}

void ExpressionsTest::conditions_data() {
    const testsupport::TextTable<bool> row("condition", "holds");
    row("'ABC ' = 'abc'", true);
    row("N'\xC3\x84' = '\xC3\xA4'", true);
    row("'a' < 'B'", true);
    row("'a_' < 'a1' AND 'a{' < 'a1' AND 'a1' < 'aa'", true);
    row("N'\xC3\xA9' > 'Ez' OR N'\xC3\xA9' < 'e'", false);
    row("N'\xC3\xA9x' < N'ey' AND N'\xC3\xB8' < 'p' AND N'Z' < N'\xCE\xB1'", true);
    row("N'\xC3\xA9' LIKE '[e-f]' AND N'\xC3\xA9' NOT LIKE '[a-e]'", true);
    row("'abc' LIKE 'A%'", true);
    row("'abc' LIKE '_b[a-d]'", true);
    row("'abc' LIKE 'ab[^c]'", false);
    row("'abc   ' LIKE 'abc'", true);
    row("N'abc   ' LIKE N'abc'", false);
    row("'10%' LIKE '10!%' ESCAPE '!'", true);
    row("'100' LIKE '10!%' ESCAPE '!'", false);
    row("'aXbXc' LIKE '%x%c'", true);
    row("'a_b' LIKE 'a[_]b'", true);
    row("NULL = NULL", false);
    row("NOT (NULL = 1)", false);
    row("NULL IS NULL", true);
    row("1 NOT IN (2, NULL)", false);
    row("1 IN (2, NULL, 1)", true);
    row("5 BETWEEN 1 AND 5", true);
    row("5 NOT BETWEEN 1 AND 5", false);
    row("1 !< 1", true);
    row("1 !> 0", false);
    row("1.50 = 1.5", true);
    row("12345678901234567890.10 = 12345678901234567890.1", true);
    row("9.0 < 12345678901234567890.1", true);
    row("$1.5 = 1.5", true);
    row("$1.5 < 1.50001", true);
    row("1 = '01'", true);
    row("'10' = 10.00", true);
    row("CONVERT(datetime, '2001-01-01') = '1/1/2001'", true);
    row("CONVERT(datetime, 1) = '1900-01-02'", true);
    row("CONVERT(uniqueidentifier, '00000000-0000-0000-0000-000000000002') > "
        "'FFFFFFFF-0000-0000-0000-000000000001'",
        true);
    row("EXISTS (SELECT * FROM orders WHERE qty > 6)", true);
    row("1 = 1 OR 1 = 2 AND 1 = 2", true);
    row("(1 = 1 OR 1 = 2) AND 1 = 2", false);
}

void ExpressionsTest::conditions() {
    QFETCH(QString, condition);
    QFETCH(bool, holds);
    RecordingSink sink;
    m_session->execute(QStringLiteral("SELECT 1 WHERE ") + condition, sink);
    if (!sink.errors.empty()) QFAIL(qPrintable(sink.errors[0].text));
    QCOMPARE(!sink.rows.isEmpty(), holds);
}

void ExpressionsTest::failures_data() {
    const testsupport::TextTable<int> row("expression", "number");
    row("1 / 0", 8134);
    row("1e0 / 0", 8134);
    row("1.0 / 0.0", 8134);
    row("$1 / 0", 8134);
    row("1 % 0", 8134);
    row("2147483647 + 1", 8115);
    row("CAST(255 AS tinyint) + CAST(1 AS tinyint)", 8115);
    row("POWER(2, 31)", 8115);
    row("CAST(1000 AS decimal(3,0))", 8115);
    row("$922337203685477.5807 + $1", 8115);
    row("1e308 * 10", 8115);
    row("SUM(x) FROM (SELECT 1e308 x UNION ALL SELECT 1e308) t", 8115);
    row("AVG(x) FROM (SELECT 2147483647 x UNION ALL SELECT 1) t", 8115);
    row("1e400", 168);
    row("99999999999999999999999999999999999999 + 1", 8115);
    row("CAST(300 AS tinyint)", 220);
    row("CAST('300' AS tinyint)", 244);
    row("CAST('99999999999' AS int)", 248);
    row("CAST('1.5' AS int)", 245);
    row("CAST('x' AS float)", 8114);
    row("CAST('x' AS decimal)", 8114);
    row("CAST('x' AS money)", 235);
    row("CAST('x' AS datetime)", 241);
    row("CAST('2001-02-29' AS datetime)", 242);
    row("CONVERT(datetime, '13/2/2001', 101)", 242);
    row("CONVERT(datetime, '3/2/01', 103)", 241);
    row("CONVERT(datetime, '3/2/2001', 99)", 281);
    row("CAST('1752-12-31' AS datetime)", 242);
    row("CAST('2100-01-01' AS smalldatetime)", 296);
    row("CAST('x' AS uniqueidentifier)", 8169);
    row("CAST(CAST('2001-01-01' AS datetime) AS uniqueidentifier)", 529);
    row("CAST(1 AS nosuchtype)", 243);
    row("1.5 & 1", 403);
    row("1.5 % 1", 403);
    row("'a' - 'b'", 403);
    row("GETDATE() * 2", 403);
    row("DATEADD(day, 9999999, GETDATE())", 517);
    row("DATEPART(nonsense, GETDATE())", 155);
    row("CONVERT(varchar(30), GETDATE(), 999)", 281);
    row("SQRT(-1)", 3623);
    row("LEFT('abc', -1)", 536);
    row("LEN()", 174);
    row("SUBSTRING('a', 1)", 174);
    row("CHARINDEX('a')", 189);
    row("nosuch(1)", 195);
    row("@nosuch", 137);
    row("@@nosuch", 137);
    row("nosuch", 207);
    row("a.nosuch", 107);
    row("CASE WHEN 1 = 1 THEN NULL END", 8133);
    row("999999999999999999999999999999999999999", 1007);
}

void ExpressionsTest::failures() {
    QFETCH(QString, expression);
    QFETCH(int, number);
    RecordingSink sink;
    m_session->execute(QStringLiteral("SELECT ") + expression, sink);
    QVERIFY2(sink.rows.isEmpty(), qPrintable(sink.rows.join(u'\n')));
    QCOMPARE(sink.errorNumbers(), QString::number(number));
}

QTEST_APPLESS_MAIN(ExpressionsTest)
#include "test_expressions.moc"

#include "dbaccess/dbconnection.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QMap>
#include <QTest>

/// How the list of a table's rows shows every type of SQL Server, from the server's wire to the list. The
/// texts stand here as the rules for cells make them.
class TestCellTexts : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void headers();
    void fullRows_data();
    void fullRows();
    void otherRows_data();
    void otherRows();

  private:
    QString difference(int item, int column, const QString& text) const;

    testsupport::RunningSampleServer m_server;
    controls::ListItems m_list;
};

namespace {

const QStringList Columns{
    "Id",           "What",         "ABit",       "ATinyInt", "ASmallInt",   "AnInt",    "ADecimal",
    "AWideDecimal", "AHugeDecimal", "ANumeric",   "AMoney",   "ASmallMoney", "AFloat",   "AReal",
    "ADateTime",    "ASmallDate",   "AChar",      "AVarChar", "AText",       "ANChar",   "ANVarChar",
    "ANText",       "ABinary",      "AVarBinary", "AnImage",  "AGuid",       "ASysname", "AStamp"};
const QString Unprintable = QStringLiteral("<UNPRINTABLE>");
/// Of the four rows in which every column has a value.
constexpr int FirstFull = 1;
/// By column; null where there is none.
using Texts = QMap<QString, QString>;

QString excerpt(const QString& text) {
    return text.size() <= 60 ? text : QStringLiteral("%1... (%2)").arg(text.left(60)).arg(text.size());
}

}  // namespace

QString TestCellTexts::difference(int item, int column, const QString& text) const {
    return QStringLiteral("%1 is \"%2\" instead of \"%3\"")
        .arg(Columns[column], excerpt(m_list.subItem(item, column)), excerpt(text));
}

void TestCellTexts::initTestCase() {
    tw::DBConnection connection;
    connection.setConnectionString(
        m_server.connectionString(QStringLiteral("clerk"), QStringLiteral("clerk")));
    const testsupport::Answers answers;
    QCOMPARE(connection.FillLvTblData(m_list, QStringLiteral("TypeSamples"), QStringLiteral("AllTypes"), 0),
             QStringLiteral("Table: AllTypes.  Total rows: 12.  Selected rows: 12"));
}

void TestCellTexts::headers() {
    QCOMPARE(testsupport::headersOf(m_list), Columns);
}

void TestCellTexts::fullRows_data() {
    const testsupport::Table<QStringList> column("texts");
    const QString blanks(10, u' ');
    column("Id", {"2", "3", "4", "5"});
    column("What", {"least", "greatest", "empty", "smallest steps"});
    column("ABit", {"False", "True", "False", "True"});
    column("ATinyInt", {"0", "255", "0", "1"});
    column("ASmallInt", {"-32768", "32767", "0", "-1"});
    column("AnInt", {"-2147483648", "2147483647", "0", "-1"});
    column("ADecimal", {"-99999999999999.9999", "99999999999999.9999", "0.0000", "0.0001"});
    column("AWideDecimal", {"-9999999999999999999999999999.9999999999",
                            "9999999999999999999999999999.9999999999", "0.0000000000", "0.0000000001"});
    column("AHugeDecimal",
           {"-99999999999999999999999999999999999999", "99999999999999999999999999999999999999", "0", "1"});
    column("ANumeric", {"-9999999999999999999999999999", "9999999999999999999999999999", "0", "1"});
    column("AMoney", {"-922337203685477.5808", "922337203685477.5807", "0.0000", "0.0001"});
    column("ASmallMoney", {"-214748.3648", "214748.3647", "0.0000", "-0.0001"});
    column("AFloat", {"-1.79E+308", "1.79E+308", "0", "2.23E-308"});
    column("AReal", {"-3.4E+38", "3.4E+38", "0", "1.18E-38"});
    column("ADateTime", {"1753-01-01 00:00:00", "9999-12-31 23:59:59.997", "1900-01-01 00:00:00",
                         "1998-07-01 12:34:56.003"});
    column("ASmallDate",
           {"1900-01-01 00:00:00", "2079-06-06 23:59:00", "1900-01-01 00:00:00", "1998-07-01 12:34:00"});
    column("AChar", {"a         ", "zzzzzzzzzz", blanks, "ends in   "});
    column("AVarChar", {"a", QString(8000, u'z'), "", "ends in  "});
    column("AText", {"a", "z", "", "ends in  "});
    column("ANChar", {"a         ", "zzzzzzzzzz", blanks, "ends in   "});
    column("ANVarChar", {"a", QString(4000, u'\u03A9'), "", "ends in  "});
    column("ANText", {"a", "z", "", "ends in  "});
    for (const char* name : {"ABinary", "AVarBinary", "AnImage"})
        column(name, {Unprintable, Unprintable, Unprintable, Unprintable});
    column("AGuid", {"{00000000-0000-0000-0000-000000000000}", "{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}",
                     "{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "{01234567-89AB-CDEF-0123-456789ABCDEF}"});
    column("ASysname", {"a", "z", "", "x"});
    column("AStamp", {Unprintable, Unprintable, Unprintable, Unprintable});
}

void TestCellTexts::fullRows() {
    QFETCH(QStringList, texts);
    const qsizetype column = Columns.indexOf(QString::fromLatin1(QTest::currentDataTag()));
    for (int i = 0; i < texts.size(); ++i)
        QVERIFY2(m_list.subItem(FirstFull + i, static_cast<int>(column)) == texts[i],
                 qUtf8Printable(difference(FirstFull + i, static_cast<int>(column), texts[i])));
}

void TestCellTexts::otherRows_data() {
    QTest::addColumn<int>("item");
    QTest::addColumn<Texts>("texts");
    const auto row = [](int item, const char* what, Texts texts) {
        texts.insert("Id", QString::number(item + 1));
        texts.insert("What", QString::fromLatin1(what));
        texts.insert("AStamp", Unprintable);  // of all columns the one that cannot be null
        QTest::newRow(what) << item << texts;
    };
    row(0, "null", {});
    row(5, "beyond the first plane",
        {{"AnInt", "65536"},
         {"AChar", "caf\u00E9      "},
         {"AVarChar", "na\u00EFve \u2013 \u201C\u20AC\u201D"},
         {"AText", "line one\r\nline two\ttab"},
         {"ANChar", "\U0001F6B2\U0001F527      "},
         {"ANVarChar", "\U0001D11E clef, \U0001F6B2 bicycle, \u00E9 as e\u0301"},
         {"ANText",
          "\U0002070E\U00020731 rare characters, \u0627\u0644\u0639\u0631\u0628\u064A\u0629, "
          "\u05E2\u05D1\u05E8\u05D9\u05EA, \u0E44\u0E17\u0E22"}});
    row(6, "long",
        {{"AVarChar", QString(8000, u'\u20AC')},
         {"ANVarChar", QStringLiteral("\U0001F6B2").repeated(2000)},
         {"AText", QStringLiteral("0123456789abcdef").repeated(8192)},
         {"ANText", QStringLiteral("L\u00E4nge \u00FCber alles \U0001F6B2 ").repeated(5000)},
         {"AnImage", Unprintable}});
    const auto numbers = [&](int item, const char* what, const char* wide, const char* single,
                             const char* date, const char* smallDate) {
        row(item, what,
            {{"AFloat", wide}, {"AReal", single}, {"ADateTime", date}, {"ASmallDate", smallDate}});
    };
    numbers(7, "floats' ends", "1.7976931348623157E+308", "3.4028235E+38", "1998-07-01 12:34:56",
            "1998-07-01 23:59:00");
    numbers(8, "floats' other ends", "-1.7976931348623157E+308", "-3.4028235E+38", "1998-07-01 00:00:00.997",
            "2000-02-29 00:00:00");
    numbers(9, "digits", "0.30000000000000004", "0.1", "1998-07-01 23:59:59.007", "1998-07-01 00:01:00");
    numbers(10, "more digits", "123456789.12345679", "16777216", "2000-02-29 12:00:00.500",
            "1999-12-31 00:00:00");
    numbers(11, "round", "1E+15", "100000", "1900-01-01 00:00:00", "1900-01-02 00:00:00");
}

void TestCellTexts::otherRows() {
    QFETCH(int, item);
    QFETCH(Texts, texts);
    for (int column = 0; column < Columns.size(); ++column) {
        const QString text = texts.value(Columns[column], QStringLiteral("<NULL>"));
        QVERIFY2(m_list.subItem(item, column) == text, qUtf8Printable(difference(item, column, text)));
    }
}

QTEST_GUILESS_MAIN(TestCellTexts)
#include "test_celltexts.moc"

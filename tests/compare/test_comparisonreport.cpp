#include "compare/comparisonreport.h"
#include "platform/controls/listitems.h"
#include "platform/runtimeerror.h"
#include "support/table.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using controls::ListItems;
using tw::Comparison;
using tw::ReportFormat;

namespace {

/// A name with all that a format may trip over.
const QString Odd = QStringLiteral("a,\"b\"\r\n<c>&amp;]]>\u0001\ufffe é");

void add(ListItems& list, int icon, const QStringList& texts) {
    const int item = list.addItem(texts[0], icon);
    for (int column = 1; column < texts.size(); ++column)
        list.setSubItem(item, column, texts[column]);
}

/// Two systems of one equal table, one that differs and one of system 2 alone.
struct Compared {
    explicit Compared(bool differencesOnly) {
        for (ListItems* list : {&results1, &results2}) {
            for (int i = 0; i < 5; ++i)
                list->addHeader(QStringLiteral("Names"));
            add(*list, Comparison::Table, {"Table: Same", "Data type"});
            add(*list, Comparison::Matched, {"Id", "Integer"});
            add(*list, Comparison::Table, {"Table: " + Odd, "Data type"});
            add(*list, Comparison::Matched, {"Same", "Bit"});
        }
        add(results1, Comparison::Unmatched, {Odd, "Integer"});
        add(results2, Comparison::Unmatched, {"Other", "Integer", "Yes"});
        add(results2, Comparison::Table, {"Table: Alone", "Data type"});
        add(results2, Comparison::Unmatched, {"Id", "Integer"});
        report.systems[0] = {"one", "Db1", "(All Tables)", &results1};
        report.systems[1] = {"two", "Db2", "(All Tables)", &results2};
        report.begun = QDateTime({2026, 1, 2}, {3, 4, 5}, Qt::UTC);
        report.milliseconds = 1500;
        report.matched = 2;
        report.unmatched = 3;
        report.completeness = tw::Completeness::PartsUnread;
        report.unread = QStringList{"System 1: Table: " + Odd};
        report.differencesOnly = differencesOnly;
    }

    QByteArray written(ReportFormat format) const {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        tw::writeReport(report, format, buffer);
        return buffer.data();
    }

    ListItems results1;
    ListItems results2;
    tw::ComparisonReport report;
};

/// Elements and texts of a document, "<" and attributes first; the reader's error when it is none.
QStringList elementsOf(const QByteArray& document) {
    QStringList all;
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            all += u'<' + xml.name().toString();
            for (const QXmlStreamAttribute& attribute : xml.attributes())
                all.last() += QStringLiteral(" %1=%2").arg(attribute.name(), attribute.value());
        } else if (xml.isCharacters() && !xml.isWhitespace()) {
            all += xml.text().toString();
        }
    }
    if (xml.hasError()) all += xml.errorString();
    return all;
}

}  // namespace

class TestComparisonReport : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void writesTexts_data();
    void writesTexts();
    void writesJson();
    void writesMarkup();
    void savesWhollyOrNotAtAll();
};

void TestComparisonReport::writesTexts_data() {
    const testsupport::Table<ReportFormat, bool, QByteArray> row("format", "differencesOnly", "expected");
    const QByteArray record = "\"Table: a,\"\"b\"\"\r\n<c>&amp;]]>\x01\xef\xbf\xbe \xc3\xa9\"";
    row("csv", ReportFormat::Csv, true,
        "System,Heading,Mark,Name,Attribute 1,Attribute 2,Attribute 3,Attribute 4\r\n"
        ",,summary,System 1,one - Db1 - (All Tables),,,\r\n"
        ",,summary,System 2,two - Db2 - (All Tables),,,\r\n"
        ",,summary,Compared,tables and columns,,,\r\n"
        ",,summary,Begun,2026-01-02T03:04:05Z,,,\r\n"
        ",,summary,Seconds,1.5,,,\r\n"
        ",,summary,Matched,2,,,\r\n"
        ",,summary,Unmatched,3,,,\r\n"
        ",,summary,Completeness,Not complete: something could not be read,,,\r\n"
        ",,summary,Not read,\"System 1: " +
            record.sliced(1) +
            ",,,\r\n"
            ",,summary,Rows,differences only,,,\r\n"
            "1," +
            record + ",heading,Data type,,,,\r\n1," + record + ",unmatched,\"" + record.sliced(8) +
            ",Integer,,,\r\n2," + record + ",heading,Data type,,,,\r\n2," + record +
            ",unmatched,Other,Integer,Yes,,\r\n"
            "2,Table: Alone,heading,Data type,,,,\r\n"
            "2,Table: Alone,unmatched,Id,Integer,,,\r\n");
    row("text", ReportFormat::Text, false,
        "System 1:     one - Db1 - (All Tables)\n"
        "System 2:     two - Db2 - (All Tables)\n"
        "Compared:     tables and columns\n"
        "Begun:        2026-01-02T03:04:05Z\n"
        "Seconds:      1.5\n"
        "Matched:      2\n"
        "Unmatched:    3\n"
        "Completeness: Not complete: something could not be read\n"
        "Not read:     System 1: Table: a,\"b\"⟨CR⟩⟨LF⟩<c>&amp;]]>⟨SOH⟩\ufffd é\n"
        "\n"
        "Table: Same                     Data type\n"
        "  System 1\n"
        "    matched    Id                              Integer\n"
        "  System 2\n"
        "    matched    Id                              Integer\n"
        "\n"
        "Table: a,\"b\"⟨CR⟩⟨LF⟩<c>&amp;]]>⟨SOH⟩\ufffd é  Data type\n"
        "  System 1\n"
        "    matched    Same                            Bit\n"
        "    unmatched  a,\"b\"⟨CR⟩⟨LF⟩<c>&amp;]]>⟨SOH⟩\ufffd é  Integer\n"
        "  System 2\n"
        "    matched    Same                            Bit\n"
        "    unmatched  Other                           Integer               Yes\n"
        "\n"
        "Table: Alone                    Data type\n"
        "  System 1: not there\n"
        "  System 2\n"
        "    unmatched  Id                              Integer\n");
}

void TestComparisonReport::writesTexts() {
    QFETCH(const ReportFormat, format);
    QFETCH(const bool, differencesOnly);
    QTEST(Compared(differencesOnly).written(format), "expected");
}

void TestComparisonReport::writesJson() {
    const QJsonObject all = QJsonDocument::fromJson(Compared(false).written(ReportFormat::Json)).object();
    QCOMPARE(all[QStringLiteral("unmatched")].toInt(), 3);
    QCOMPARE(all[QStringLiteral("complete")], QJsonValue(false));
    QCOMPARE(all[QStringLiteral("notRead")].toArray()[0].toString(), "System 1: Table: " + Odd);
    const QJsonArray sections = all[QStringLiteral("sections")].toArray();
    QCOMPARE(sections.size(), 3);
    QCOMPARE(sections[1][QStringLiteral("heading")].toString(), "Table: " + Odd);
    const QJsonValue odd = sections[1][QStringLiteral("system1")].toArray()[1];
    QCOMPARE(odd, QJsonValue(QJsonObject{
                      {"mark", "unmatched"}, {"name", Odd}, {"attributes", QJsonArray{"Integer"}}}));
    QVERIFY(sections[2][QStringLiteral("system1")].isNull());
    const QJsonObject few = QJsonDocument::fromJson(Compared(true).written(ReportFormat::Json)).object();
    QCOMPARE(few[QStringLiteral("sections")].toArray().size(), 2);
}

/// Pages are well-formed, so that their markup can be read like that of test results.
void TestComparisonReport::writesMarkup() {
    const QString shown = QStringLiteral("a,\"b\"⟨CR⟩⟨LF⟩<c>&amp;]]>⟨SOH⟩\ufffd é");
    const QStringList page = elementsOf(Compared(false).written(ReportFormat::Html));
    QVERIFY2(page.contains("Table: " + shown), qPrintable(page.join(u'\n')));
    const qsizetype odd = page.indexOf(QStringLiteral("<tr class=unmatched"));
    QCOMPARE(page.sliced(odd, 7),
             (QStringList{"<tr class=unmatched", "<td", "unmatched", "<td", shown, "<td", "Integer"}));
    QVERIFY(page.contains(QStringLiteral("System 1: not there")));

    const QStringList results = elementsOf(Compared(false).written(ReportFormat::JUnit));
    const QString suite = QStringLiteral(
        "<testsuite name=one - Db1 - (All Tables) / two - Db2 - (All Tables) "
        "tests=4 failures=2 errors=1 timestamp=2026-01-02T03:04:05 time=1.500");
    QVERIFY2(results.contains(suite), qPrintable(results.join(u'\n')));
    const qsizetype first =
        results.indexOf(QStringLiteral("<testcase classname=comparison name=Table: Same"));
    QCOMPARE(results.sliced(first + 1),
             (QStringList{"<testcase classname=comparison name=Table: " + shown,
                          "<failure type=difference message=2 unmatched",
                          "System 1: " + shown + ", Integer\nSystem 2: Other, Integer, Yes\n",
                          "<testcase classname=comparison name=Table: Alone",
                          "<failure type=difference message=1 unmatched",
                          "System 1: not there\nSystem 2: Id, Integer\n",
                          "<testcase classname=reading name=System 1: Table: " + shown,
                          "<error message=System 1: Table: " + shown}));
}

void TestComparisonReport::savesWhollyOrNotAtAll() {
    const Compared compared(false);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("result.json"));
    QCOMPARE(tw::reportFormatOf(path), ReportFormat::Json);
    tw::saveReport(compared.report, ReportFormat::Json, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), compared.written(ReportFormat::Json));
    QVERIFY_EXCEPTION_THROWN(tw::saveReport(compared.report, ReportFormat::Text, folder.path()),
                             platform::RuntimeError);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"result.json"});
}

QTEST_GUILESS_MAIN(TestComparisonReport)
#include "test_comparisonreport.moc"

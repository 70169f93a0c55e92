// Reports as one page that needs nothing beside it.
#include "compare/reportformats.h"

#include <QXmlStreamWriter>

namespace tw {

namespace {

// Written as characters, so without what markup would escape. Marks are words first; their colour is not all.
const QString Style = QStringLiteral(R"(
body { font: 11pt sans-serif; color: #1a1a1a; background: #fff; margin: 2em; }
h1 { font-size: 1.4em; } h2 { font-size: 1.1em; margin: 1.5em 0 .3em; break-after: avoid; }
dl { display: grid; grid-template-columns: max-content auto; gap: .2em 1em; }
dt { font-weight: bold; } dd { margin: 0; overflow-wrap: anywhere; }
.sides { display: grid; grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 1em; align-items: start; }
table { border-collapse: collapse; width: 100%; }
caption { text-align: left; font-style: italic; }
th, td { border: 1px solid #bbb; padding: .2em .4em; text-align: left; vertical-align: top; overflow-wrap: anywhere; }
th { background: #eee; overflow-wrap: normal; } td:first-child { white-space: nowrap; } tr { break-inside: avoid; } .unmatched td { background: #fde8e4; font-weight: bold; }
@media print { body { margin: 0; font-size: 8pt; } thead { display: table-header-group; }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; } }
)");

class Page {
  public:
    explicit Page(QIODevice& device) : m_xml(&device) {}

    void write(const ComparisonReport& report);

  private:
    /// An element is closed by a tag of its own even where it is empty: a page is no XML.
    void element(const QString& name, const QString& text) {
        m_xml.writeStartElement(name);
        m_xml.writeCharacters(pageText(text));
        m_xml.writeEndElement();
    }
    void row(const QString& kind, const QStringList& texts, qsizetype columns);
    void section(const ComparisonReport& report, const ReportSection& section);
    void side(const ComparisonReport& report, const ReportSection& section, size_t side);

    QXmlStreamWriter m_xml;
};

void Page::write(const ComparisonReport& report) {
    const QString title = QStringLiteral("Comparison of ") + report.systems[0].title() +
                          QStringLiteral(" with ") + report.systems[1].title();
    m_xml.writeDTD(QStringLiteral("<!DOCTYPE html>\n"));
    m_xml.writeStartElement(QStringLiteral("html"));
    m_xml.writeAttribute(QStringLiteral("lang"), QStringLiteral("en"));
    m_xml.writeStartElement(QStringLiteral("head"));
    m_xml.writeEmptyElement(QStringLiteral("meta"));
    m_xml.writeAttribute(QStringLiteral("charset"), QStringLiteral("utf-8"));
    element(QStringLiteral("title"), title);
    m_xml.writeTextElement(QStringLiteral("style"), Style);
    m_xml.writeEndElement();
    m_xml.writeStartElement(QStringLiteral("body"));
    element(QStringLiteral("h1"), title);
    m_xml.writeStartElement(QStringLiteral("dl"));
    for (const auto& [caption, value] : summaryOf(report)) {
        element(QStringLiteral("dt"), caption);
        element(QStringLiteral("dd"), value);
    }
    m_xml.writeEndElement();
    for (const ReportSection& each : sectionsOf(report))
        section(report, each);
    m_xml.writeEndDocument();
}

void Page::section(const ComparisonReport& report, const ReportSection& section) {
    m_xml.writeCharacters(QStringLiteral("\n"));
    element(QStringLiteral("h2"), headingOf(report, section)[0]);
    m_xml.writeStartElement(QStringLiteral("div"));
    m_xml.writeAttribute(QStringLiteral("class"), QStringLiteral("sides"));
    for (const size_t number : {0, 1})
        side(report, section, number);
    m_xml.writeEndElement();
}

void Page::side(const ComparisonReport& report, const ReportSection& section, size_t side) {
    const QString system = QStringLiteral("System %1").arg(side + 1);
    if (section.sides[side].heading < 0)
        return element(QStringLiteral("p"), system + QStringLiteral(": not there"));
    const QStringList captions = headingOf(report, section).sliced(1);
    m_xml.writeStartElement(QStringLiteral("table"));
    element(QStringLiteral("caption"), system);
    m_xml.writeStartElement(QStringLiteral("thead"));
    row(QStringLiteral("th"), QStringList{QStringLiteral("Mark"), QStringLiteral("Name")} + captions,
        captions.size() + 2);
    m_xml.writeEndElement();
    m_xml.writeStartElement(QStringLiteral("tbody"));
    forEachRow(report, section, side, [&](const ReportRow& each) {
        row(each.mark, QStringList{each.mark} + each.texts, captions.size() + 2);
    });
    m_xml.writeEndElement();
    m_xml.writeEndElement();
}

/// Of headers where `kind` is "th", else of cells in a row of that class.
void Page::row(const QString& kind, const QStringList& texts, qsizetype columns) {
    const bool header = kind == QStringLiteral("th");
    m_xml.writeStartElement(QStringLiteral("tr"));
    if (!header) m_xml.writeAttribute(QStringLiteral("class"), kind);
    for (qsizetype i = 0; i < columns; ++i)
        element(header ? kind : QStringLiteral("td"), texts.value(i));
    m_xml.writeEndElement();
    m_xml.writeCharacters(QStringLiteral("\n"));
}

}  // namespace

void writeHtmlReport(const ComparisonReport& report, QIODevice& device) {
    Page(device).write(report);
}

}  // namespace tw

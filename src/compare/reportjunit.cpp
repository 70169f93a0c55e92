// Reports as the test results that continuous integration reads: a test case for each table and kind.
#include "compare/reportformats.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace tw {

namespace {

/// What kept the comparison from its end, each a test case in error.
QStringList errorsOf(const ComparisonReport& report) {
    QStringList errors = report.unread;
    if (report.completeness == Completeness::LineLost || report.completeness == Completeness::Cancelled)
        errors += completenessText(report.completeness);
    return errors;
}

void writeAttribute(QXmlStreamWriter& xml, const char* name, const QString& text) {
    xml.writeAttribute(QLatin1String(name), pageText(text));
}

void writeSection(const ComparisonReport& report, const ReportSection& section, QXmlStreamWriter& xml) {
    if (section.differences() == 0) return;
    xml.writeStartElement(QStringLiteral("failure"));
    writeAttribute(xml, "type", QStringLiteral("difference"));
    writeAttribute(xml, "message", QStringLiteral("%1 unmatched").arg(section.differences()));
    for (const size_t side : {0, 1}) {
        if (section.sides[side].heading < 0)
            xml.writeCharacters(QStringLiteral("System %1: not there\n").arg(side + 1));
        forEachRow(report, section, side, [&](const ReportRow& row) {
            if (row.differs)
                xml.writeCharacters(
                    QStringLiteral("System %1: %2\n")
                        .arg(QString::number(side + 1), pageText(row.texts.join(QStringLiteral(", ")))));
        });
    }
    xml.writeEndElement();
}

void beginCase(QXmlStreamWriter& xml, const char* suite, const QString& name) {
    xml.writeStartElement(QStringLiteral("testcase"));
    writeAttribute(xml, "classname", QLatin1String(suite));
    writeAttribute(xml, "name", name);
}

}  // namespace

void writeJUnitReport(const ComparisonReport& report, QIODevice& device) {
    const std::vector<ReportSection> sections = sectionsOf(report);
    const QStringList errors = errorsOf(report);
    const auto failures =
        std::ranges::count_if(sections, [](const ReportSection& each) { return each.differences() > 0; });
    QXmlStreamWriter xml(&device);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    xml.writeStartElement(QStringLiteral("testsuite"));
    writeAttribute(xml, "name",
                   report.systems[0].title() + QStringLiteral(" / ") + report.systems[1].title());
    writeAttribute(xml, "tests", QString::number(qsizetype(sections.size()) + errors.size()));
    writeAttribute(xml, "failures", QString::number(failures));
    writeAttribute(xml, "errors", QString::number(errors.size()));
    writeAttribute(xml, "timestamp", report.begun.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    writeAttribute(xml, "time", QString::number(double(report.milliseconds) / 1000, 'f', 3));
    xml.writeStartElement(QStringLiteral("properties"));
    for (const auto& [caption, value] : summaryOf(report)) {
        xml.writeEmptyElement(QStringLiteral("property"));
        writeAttribute(xml, "name", caption);
        writeAttribute(xml, "value", value);
    }
    xml.writeEndElement();
    for (const ReportSection& section : sections) {
        beginCase(xml, "comparison", headingOf(report, section)[0]);
        writeSection(report, section, xml);
        xml.writeEndElement();
    }
    for (const QString& error : errors) {
        beginCase(xml, "reading", error);
        xml.writeEmptyElement(QStringLiteral("error"));
        writeAttribute(xml, "message", error);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}

}  // namespace tw

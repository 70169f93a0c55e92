// Reports as plain text and as CSV.
#include "compare/reportformats.h"
#include "platform/controls/listitems.h"
#include "platform/csv.h"

#include <QTextStream>

namespace tw {

namespace {

/// Texts side by side, in columns as wide as most of them need.
QString inColumns(const QStringList& texts) {
    constexpr int Widths[] = {30, 20, 20, 20};
    QString line;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        line += pageText(texts[i]);
        if (i + 1 == texts.size()) break;
        line =
            line.leftJustified(line.size() - pageText(texts[i]).size() + Widths[std::min<qsizetype>(i, 3)]);
        line += QStringLiteral("  ");
    }
    return line;
}

}  // namespace

void writeTextReport(const ComparisonReport& report, QIODevice& device) {
    constexpr int CaptionWidth = 14;
    constexpr int MarkWidth = 11;
    QTextStream out(&device);
    for (const auto& [caption, value] : summaryOf(report))
        out << (caption + u':').leftJustified(CaptionWidth) << pageText(value) << '\n';
    for (const ReportSection& section : sectionsOf(report)) {
        const QStringList heading = headingOf(report, section);
        out << '\n' << inColumns(heading) << '\n';
        for (const size_t side : {0, 1}) {
            out << "  System " << side + 1;
            out << (section.sides[side].heading < 0 ? ": not there\n" : "\n");
            forEachRow(report, section, side, [&](const ReportRow& row) {
                out << "    " << row.mark.leftJustified(MarkWidth) << inColumns(row.texts) << '\n';
            });
        }
    }
}

void writeCsvReport(const ComparisonReport& report, QIODevice& device) {
    constexpr qsizetype NameColumn = 3;
    const QStringList columns{QStringLiteral("System"),      QStringLiteral("Heading"),
                              QStringLiteral("Mark"),        QStringLiteral("Name"),
                              QStringLiteral("Attribute 1"), QStringLiteral("Attribute 2"),
                              QStringLiteral("Attribute 3"), QStringLiteral("Attribute 4")};
    QTextStream out(&device);
    const auto write = [&](QStringList fields, const QStringList& texts) {
        fields += texts;
        fields.resize(columns.size());
        platform::writeCsvRecord(out, fields);
    };
    write(columns.first(NameColumn), columns.sliced(NameColumn));
    for (const auto& [caption, value] : summaryOf(report))
        write({{}, {}, QStringLiteral("summary")}, {caption, value});
    for (const ReportSection& section : sectionsOf(report)) {
        for (const size_t side : {0, 1}) {
            if (section.sides[side].heading < 0) continue;
            const QString number = QString::number(side + 1);
            const QString heading = report.systems[side].results->text(section.sides[side].heading);
            write({number, heading, QStringLiteral("heading")}, headingOf(report, section).sliced(1));
            forEachRow(report, section, side, [&](const ReportRow& row) {
                write({number, heading, row.mark}, row.texts);
            });
        }
    }
}

}  // namespace tw

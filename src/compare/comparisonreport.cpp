#include "compare/comparisonreport.h"

#include "compare/reportformats.h"
#include "platform/filewriting.h"

#include <QFileInfo>
#include <QSaveFile>

namespace tw {

namespace {

QStringList comparedKinds(const ComparedKinds& kinds) {
    QStringList names{QStringLiteral("tables and columns")};
    if (kinds.indexes) names += QStringLiteral("indexes");
    if (kinds.constraints) names += QStringLiteral("check constraints");
    if (kinds.foreignKeys) names += QStringLiteral("foreign keys");
    return names;
}

}  // namespace

QString ComparisonReport::System::title() const {
    return QStringList{server, database, table}.join(QStringLiteral(" - "));
}

std::optional<ReportFormat> reportFormat(const QString& name) {
    const std::pair<QStringView, ReportFormat> formats[] = {{u"text", ReportFormat::Text},
                                                            {u"csv", ReportFormat::Csv},
                                                            {u"json", ReportFormat::Json},
                                                            {u"html", ReportFormat::Html},
                                                            {u"junit", ReportFormat::JUnit}};
    for (const auto& [known, format] : formats)
        if (name == known) return format;
    return std::nullopt;
}

ReportFormat reportFormatOf(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QStringLiteral("htm")) return ReportFormat::Html;
    if (suffix == QStringLiteral("xml")) return ReportFormat::JUnit;
    return reportFormat(suffix).value_or(ReportFormat::Text);
}

std::vector<std::pair<QString, QString>> summaryOf(const ComparisonReport& report) {
    std::vector<std::pair<QString, QString>> summary{
        {QStringLiteral("System 1"), report.systems[0].title()},
        {QStringLiteral("System 2"), report.systems[1].title()},
        {QStringLiteral("Compared"), comparedKinds(report.kinds).join(QStringLiteral(", "))},
        {QStringLiteral("Begun"), report.begun.toString(Qt::ISODate)},
        {QStringLiteral("Seconds"), QString::number(double(report.milliseconds) / 1000, 'f', 1)},
        {QStringLiteral("Matched"), QString::number(report.matched)},
        {QStringLiteral("Unmatched"), QString::number(report.unmatched)},
        {QStringLiteral("Completeness"), completenessText(report.completeness)}};
    for (const QString& unread : report.unread)
        summary.emplace_back(QStringLiteral("Not read"), unread);
    if (report.differencesOnly)
        summary.emplace_back(QStringLiteral("Rows"), QStringLiteral("differences only"));
    return summary;
}

void writeReport(const ComparisonReport& report, ReportFormat format, QIODevice& device) {
    switch (format) {
        case ReportFormat::Text:
            return writeTextReport(report, device);
        case ReportFormat::Csv:
            return writeCsvReport(report, device);
        case ReportFormat::Json:
            return writeJsonReport(report, device);
        case ReportFormat::Html:
            return writeHtmlReport(report, device);
        case ReportFormat::JUnit:
            return writeJUnitReport(report, device);
    }
}

void saveReport(const ComparisonReport& report, ReportFormat format, const QString& path) {
    platform::saveFile(path, [&](QIODevice& file) { writeReport(report, format, file); });
}

}  // namespace tw

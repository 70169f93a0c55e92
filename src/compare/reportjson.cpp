// Reports as JSON: one object, whose rows are written one by one.
#include "compare/reportformats.h"
#include "platform/controls/listitems.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tw {

namespace {

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// An object that is still open: more members may follow.
QByteArray opened(const QJsonObject& object) {
    QByteArray text = compact(object);
    text.chop(1);
    return text;
}

QJsonObject headOf(const ComparisonReport& report) {
    QJsonArray systems;
    for (const ComparisonReport::System& system : report.systems)
        systems.append(QJsonObject{{QStringLiteral("server"), system.server},
                                   {QStringLiteral("database"), system.database},
                                   {QStringLiteral("table"), system.table}});
    return {{QStringLiteral("systems"), systems},
            {QStringLiteral("indexes"), report.kinds.indexes},
            {QStringLiteral("constraints"), report.kinds.constraints},
            {QStringLiteral("foreignKeys"), report.kinds.foreignKeys},
            {QStringLiteral("begun"), report.begun.toString(Qt::ISODate)},
            {QStringLiteral("milliseconds"), report.milliseconds},
            {QStringLiteral("matched"), report.matched},
            {QStringLiteral("unmatched"), report.unmatched},
            {QStringLiteral("complete"), report.completeness == Completeness::Complete},
            {QStringLiteral("completeness"), completenessText(report.completeness)},
            {QStringLiteral("notRead"), QJsonArray::fromStringList(report.unread)},
            {QStringLiteral("differencesOnly"), report.differencesOnly}};
}

QString kindOf(const ComparisonReport& report, const ReportSection& section) {
    const size_t side = section.headedSide();
    switch (report.systems[side].results->icon(section.sides[side].heading)) {
        case Comparison::Constraint:
            return QStringLiteral("constraints");
        case Comparison::Index:
            return QStringLiteral("indexes");
        case Comparison::ForeignKey:
            return QStringLiteral("foreignKeys");
        default:
            return QStringLiteral("table");
    }
}

void writeSection(const ComparisonReport& report, const ReportSection& section, QIODevice& device) {
    const QStringList heading = headingOf(report, section);
    device.write(opened({{QStringLiteral("kind"), kindOf(report, section)},
                         {QStringLiteral("heading"), heading[0]},
                         {QStringLiteral("captions"), QJsonArray::fromStringList(heading.sliced(1))}}));
    for (const size_t side : {0, 1}) {
        device.write(side == 0 ? ",\"system1\":" : ",\"system2\":");
        if (section.sides[side].heading < 0) {
            device.write("null");
            continue;
        }
        const char* before = "[\n";
        forEachRow(report, section, side, [&](const ReportRow& row) {
            device.write(before);
            device.write(
                compact({{QStringLiteral("mark"), row.mark},
                         {QStringLiteral("name"), row.texts[0]},
                         {QStringLiteral("attributes"), QJsonArray::fromStringList(row.texts.sliced(1))}}));
            before = ",\n";
        });
        device.write(*before == '[' ? "[]" : "]");
    }
    device.write("}");
}

}  // namespace

void writeJsonReport(const ComparisonReport& report, QIODevice& device) {
    device.write(opened(headOf(report)));
    device.write(",\"sections\":[");
    const char* before = "\n";
    for (const ReportSection& section : sectionsOf(report)) {
        device.write(before);
        writeSection(report, section, device);
        before = ",\n";
    }
    device.write("]}\n");
}

}  // namespace tw

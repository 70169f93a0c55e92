#include "report.h"

#include "figures.h"
#include "growth.h"

#include <QDateTime>
#include <QJsonArray>
#include <QSysInfo>
#include <QThread>

namespace bench {

namespace {

QString number(double value, int digits) {
    return QString::number(value, 'f', digits);
}

/// With about three digits that count.
QString milliseconds(double seconds) {
    const double value = seconds * 1000;
    return number(value, value < 10 ? 2 : value < 100 ? 1 : 0);
}

QString mebibytes(double bytes) {
    return bytes > 0 ? number(bytes / 1024 / 1024, 1) : QString();
}

QStringList ratioRow(const Result& result) {
    const Spread ratio = spreadOf(result.ratios());
    QStringList row{
        result.name,
        result.complete ? result.scale : result.scale + QStringLiteral(" (NOT COMPLETE)"),
        result.yardstick,
        result.delay > 0 ? QStringLiteral("%1 ms").arg(result.delay) : QString(),
        number(ratio.median, 2),
        number(ratio.minimum, 2),
        number(ratio.maximum, 2),
        result.processorRatios.empty() ? QString() : number(spreadOf(result.processorRatios).median, 2),
        milliseconds(spreadOf(result.ours).median),
        milliseconds(spreadOf(result.yardstickSeconds).median)};
    const Memory memory = result.memory.value_or(Memory());
    row += {mebibytes(memory.peak), mebibytes(memory.texts)};
    if (const auto& trips = result.roundTrips) {
        row +=
            {QString::number(trips->ours), QString::number(trips->yardstick), QString::number(trips->least)};
    } else {
        row += {QString(), QString(), QString()};
    }
    return row;
}

Table figureTable(const std::vector<Result>& results) {
    Table table{.heading = {QStringLiteral("case"), QStringLiteral("scale"), QStringLiteral("figure"),
                            QStringLiteral("number"), QStringLiteral("unit")},
                .textColumns = 3};
    for (const Result& result : results) {
        const QString scale =
            result.delay > 0 ? result.scale + QStringLiteral(", %1 ms away").arg(result.delay) : result.scale;
        if (result.ours.empty() && !result.complete)
            table.rows += {result.name, scale, QStringLiteral("NOT COMPLETE"), QString(), QString()};
        for (const Figure& figure : result.figures)
            table.rows += {result.name, scale, figure.name, number(figure.number, 1), figure.unit};
    }
    return table;
}

QString listed(const std::vector<double>& measures) {
    QStringList texts;
    for (const double measure : measures)
        texts += number(measure, 0);
    return texts.join(QStringLiteral(", "));
}

Table growthTable(const std::vector<Result>& results) {
    Table table{.heading = {QStringLiteral("case"), QStringLiteral("scales"),
                            QStringLiteral("ours, all scales"), QStringLiteral("yardstick, all scales"),
                            QStringLiteral("ours, two largest"), QStringLiteral("yardstick, two largest")},
                .textColumns = 2};
    for (const Growth& growth : growthOf(results)) {
        table.rows += {growth.name,
                       listed(growth.measures),
                       number(growth.ours, 2),
                       number(growth.yardstick, 2),
                       number(growth.oursAtLarge, 2),
                       number(growth.yardstickAtLarge, 2)};
    }
    return table;
}

}  // namespace

Report reportOf(const std::vector<Result>& results) {
    Report report;
    report.ratios = {
        .heading = {QStringLiteral("case"), QStringLiteral("scale"), QStringLiteral("yardstick"),
                    QStringLiteral("delay"), QStringLiteral("ratio"), QStringLiteral("min"),
                    QStringLiteral("max"), QStringLiteral("cpu"), QStringLiteral("ours ms"),
                    QStringLiteral("theirs ms"), QStringLiteral("peak MiB"), QStringLiteral("texts MiB"),
                    QStringLiteral("trips"), QStringLiteral("theirs"), QStringLiteral("least")},
        .textColumns = 3};
    for (const Result& result : results) {
        if (!result.ours.empty()) report.ratios.rows += ratioRow(result);
    }
    report.growth = growthTable(results);
    report.figures = figureTable(results);
    return report;
}

QString written(const Report& report, QString (*form)(const Table& table)) {
    QStringList texts;
    for (const Table* table : {&report.ratios, &report.growth, &report.figures}) {
        if (!table->rows.isEmpty()) texts += form(*table);
    }
    return texts.join(u'\n');
}

QJsonObject jsonOf(const std::vector<Result>& results) {
    QJsonArray cases;
    for (const Result& result : results)
        cases.append(toJson(result));
    QJsonArray growths;
    for (const Growth& growth : growthOf(results)) {
        growths.append(QJsonObject{{QStringLiteral("case"), growth.name},
                                   {QStringLiteral("scales"), listed(growth.measures)},
                                   {QStringLiteral("oursAllScales"), growth.ours},
                                   {QStringLiteral("yardstickAllScales"), growth.yardstick},
                                   {QStringLiteral("oursTwoLargest"), growth.oursAtLarge},
                                   {QStringLiteral("yardstickTwoLargest"), growth.yardstickAtLarge}});
    }
    return {{QStringLiteral("measured"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
            {QStringLiteral("system"), QSysInfo::prettyProductName()},
            {QStringLiteral("kernel"), QSysInfo::kernelVersion()},
            {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
            {QStringLiteral("processors"), QThread::idealThreadCount()},
            {QStringLiteral("cases"), cases},
            {QStringLiteral("growth"), growths}};
}

}  // namespace bench

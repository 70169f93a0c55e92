#include "runner.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTextStream>

namespace bench {

namespace {

QByteArray written(const Request& request) {
    QJsonArray measures;
    for (const qint64 measure : request.measures)
        measures.append(measure);
    return QJsonDocument(QJsonObject{{QStringLiteral("case"), request.name},
                                     {QStringLiteral("measures"), measures},
                                     {QStringLiteral("delay"), request.delay},
                                     {QStringLiteral("runs"), request.runs}})
        .toJson(QJsonDocument::Compact);
}

Request requestFrom(const QString& text) {
    const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
    Request request{.name = object[QStringLiteral("case")].toString(),
                    .delay = object[QStringLiteral("delay")].toInt(),
                    .runs = object[QStringLiteral("runs")].toInt()};
    for (const QJsonValue& measure : object[QStringLiteral("measures")].toArray())
        request.measures.push_back(measure.toInteger());
    return request;
}

}  // namespace

std::optional<Result> measureApart(const Request& request) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--measure"), QString::fromUtf8(written(request))});
    process.waitForFinished(-1);
    const QJsonDocument line = QJsonDocument::fromJson(process.readAllStandardOutput());
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 || !line.isObject())
        return std::nullopt;
    return resultFromJson(line.object());
}

bool measuresOnScreen(const QString& argument) {
    return caseNamed(requestFrom(argument).name).onScreen;
}

int runMeasuringProcess(const QString& argument) {
    const Result result = measure(requestFrom(argument));
    QTextStream(stdout) << QJsonDocument(toJson(result)).toJson(QJsonDocument::Compact) << '\n';
    return 0;
}

}  // namespace bench

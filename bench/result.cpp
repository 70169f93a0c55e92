#include "result.h"

#include <QJsonArray>

namespace bench {

namespace {

QJsonArray toArray(const std::vector<double>& numbers) {
    QJsonArray array;
    for (const double number : numbers)
        array.append(number);
    return array;
}

std::vector<double> fromArray(const QJsonValue& value) {
    std::vector<double> numbers;
    for (const QJsonValue& number : value.toArray())
        numbers.push_back(number.toDouble());
    return numbers;
}

QJsonArray toArray(const std::vector<Figure>& figures) {
    QJsonArray array;
    for (const Figure& figure : figures) {
        array.append(QJsonObject{{QStringLiteral("name"), figure.name},
                                 {QStringLiteral("number"), figure.number},
                                 {QStringLiteral("unit"), figure.unit}});
    }
    return array;
}

}  // namespace

std::vector<double> Result::ratios() const {
    std::vector<double> ratios;
    for (size_t i = 0; i < ours.size(); ++i)
        ratios.push_back(ours[i] / yardstickSeconds[i]);
    return ratios;
}

QJsonObject toJson(const Result& result) {
    QJsonObject object{{QStringLiteral("case"), result.name},
                       {QStringLiteral("scale"), result.scale},
                       {QStringLiteral("measure"), result.measure},
                       {QStringLiteral("delayMilliseconds"), result.delay},
                       {QStringLiteral("yardstick"), result.yardstick},
                       {QStringLiteral("complete"), result.complete},
                       {QStringLiteral("repeats"), result.repeats},
                       {QStringLiteral("ours"), toArray(result.ours)},
                       {QStringLiteral("yardstickSeconds"), toArray(result.yardstickSeconds)},
                       {QStringLiteral("ratios"), toArray(result.ratios())},
                       {QStringLiteral("processorRatios"), toArray(result.processorRatios)},
                       {QStringLiteral("figures"), toArray(result.figures)}};
    if (result.memory) {
        object[QStringLiteral("memory")] = QJsonObject{{QStringLiteral("peak"), result.memory->peak},
                                                       {QStringLiteral("kept"), result.memory->kept},
                                                       {QStringLiteral("texts"), result.memory->texts}};
    }
    if (result.roundTrips) {
        object[QStringLiteral("roundTrips")] =
            QJsonObject{{QStringLiteral("ours"), result.roundTrips->ours},
                        {QStringLiteral("yardstick"), result.roundTrips->yardstick},
                        {QStringLiteral("least"), result.roundTrips->least}};
    }
    return object;
}

Result resultFromJson(const QJsonObject& object) {
    Result result;
    result.name = object[QStringLiteral("case")].toString();
    result.scale = object[QStringLiteral("scale")].toString();
    result.measure = object[QStringLiteral("measure")].toDouble();
    result.delay = object[QStringLiteral("delayMilliseconds")].toInt();
    result.yardstick = object[QStringLiteral("yardstick")].toString();
    result.complete = object[QStringLiteral("complete")].toBool();
    result.repeats = object[QStringLiteral("repeats")].toInt();
    result.ours = fromArray(object[QStringLiteral("ours")]);
    result.yardstickSeconds = fromArray(object[QStringLiteral("yardstickSeconds")]);
    result.processorRatios = fromArray(object[QStringLiteral("processorRatios")]);
    for (const QJsonValue& value : object[QStringLiteral("figures")].toArray()) {
        result.figures.push_back({value[QStringLiteral("name")].toString(),
                                  value[QStringLiteral("number")].toDouble(),
                                  value[QStringLiteral("unit")].toString()});
    }
    if (const QJsonValue memory = object[QStringLiteral("memory")]; memory.isObject()) {
        result.memory =
            Memory{memory[QStringLiteral("peak")].toDouble(), memory[QStringLiteral("kept")].toDouble(),
                   memory[QStringLiteral("texts")].toDouble()};
    }
    if (const QJsonValue trips = object[QStringLiteral("roundTrips")]; trips.isObject()) {
        result.roundTrips = RoundTrips{trips[QStringLiteral("ours")].toInteger(),
                                       trips[QStringLiteral("yardstick")].toInteger(),
                                       trips[QStringLiteral("least")].toInteger()};
    }
    return result;
}

}  // namespace bench

#include "randomschemas.h"

namespace {

QString oneOf(QRandomGenerator& random, const QStringList& texts) {
    return texts.at(random.bounded(static_cast<int>(texts.size())));
}

QString someName(QRandomGenerator& random) {
    return oneOf(random, {"a", "A", "b", "B", "ab", "a ", "\u00e4"});
}

QString someType(QRandomGenerator& random) {
    return oneOf(random, {"Integer", "integer", "Char(2)"});
}

/// A text that is missing now and then.
QString mostly(QRandomGenerator& random, const QString& text, int missingInTen) {
    return random.bounded(10) < missingInTen ? QString() : text;
}

FakeSchema::DetailRow randomDetails(QRandomGenerator& random) {
    FakeSchema::DetailRow row;
    for (QString& text : row)
        text = someName(random);
    row[0] = mostly(random, row[0], 1);
    row[3] = mostly(random, row[3], 5);
    row[4] = mostly(random, row[4], 5);
    row[5] = mostly(random, row[5], 1);
    row[6] = mostly(random, row[6], 1);
    return row;
}

}  // namespace

FakeSchema randomSchema(QRandomGenerator& random) {
    FakeSchema schema;
    for (int rows = random.bounded(12); rows > 0; --rows)
        schema.details.push_back(randomDetails(random));
    for (int tables = random.bounded(5); tables > 0; --tables) {
        FakeSchema::FakeTable table{someName(random), {}};
        for (int columns = random.bounded(6); columns > 0; --columns) {
            table.columns.push_back({someName(random), someType(random), oneOf(random, {"", "Yes"}),
                                     oneOf(random, {"", "", "Yes"})});
        }
        schema.tables.push_back(table);
    }
    return schema;
}

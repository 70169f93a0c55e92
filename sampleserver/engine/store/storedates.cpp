#include "engine/store/storecall.h"
#include "engine/store/storefunctions.h"
#include "engine/values/dateparts.h"
#include "engine/values/datetime.h"

#include <QUuid>

namespace engine {

namespace {

DatePart partOf(const StoreCall& c) {
    return static_cast<DatePart>(c.integer(0));
}

void add(StoreCall& c) {
    c.result(dateAdd(partOf(c), c.integer(1), c.integer(2)));
}

void difference(StoreCall& c) {
    c.result(dateDiff(partOf(c), c.integer(1), c.integer(2)));
}

void part(StoreCall& c) {
    c.result(qint64(datePartValue(partOf(c), c.integer(1))));
}

void name(StoreCall& c) {
    const int value = datePartValue(partOf(c), c.integer(1));
    switch (partOf(c)) {
        case DatePart::Month:
            return c.result(monthName(value));
        case DatePart::Weekday:
            return c.result(weekdayName(value - 1));
        default:
            c.result(QString::number(value));
    }
}

void isDate(StoreCall& c) {
    if (c.isNull(0)) return c.result(qint64(0));
    const QString text = c.text(0);
    qint64 ticks = 0;
    const DateForm form = dateForm(static_cast<int>(c.integer(1))).value_or(DateForm());
    const bool valid = !text.trimmed().isEmpty() && parseDateTime(text, &ticks, form) == DateParse::Done;
    c.result(qint64(valid ? 1 : 0));
}

void newId(StoreCall& c) {
    c.result(QUuid::createUuid().toRfc4122());
}

/// SQL Server orders uniqueidentifiers by their last group first; within the first three groups the bytes
/// count from the right, as they lie.
void guidKey(StoreCall& c) {
    const QByteArray bytes = c.bytes(0);
    c.result(bytes.mid(10, 6) + bytes.mid(8, 2) + bytes.mid(6, 2) + bytes.mid(4, 2) + bytes.mid(0, 4));
}

constexpr StoreFunction functions[] = {
    {"ts_dateadd", 3, add},     {"ts_datediff", 3, difference}, {"ts_datepart", 2, part},
    {"ts_datename", 2, name},   {"ts_isdate", 2, isDate, true}, {"ts_newid", 0, newId, true, true},
    {"ts_guidkey", 1, guidKey},
};

}  // namespace

void registerDateFunctions(sqlite3* store) {
    for (const StoreFunction& function : functions)
        registerStoreFunction(store, function);
}

}  // namespace engine

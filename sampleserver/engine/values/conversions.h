#pragma once

#include "engine/values/convert.h"
#include "engine/values/decimal.h"
#include "engine/values/sqlerror.h"

#include <QString>

namespace engine {

/// One conversion at work; the pieces of convertValue and of CONVERT with a style.
struct Conversion {
    const SqlType& from;
    const SqlType& to;
    bool assigning = false;
    int style = 0;

    /// 529 between types that no conversion joins.
    [[noreturn]] void failNotAllowed() const;
    /// 8115.
    [[noreturn]] void failOverflow() const;
    [[noreturn]] void failStyle() const;
    /// 242 and 296.
    [[noreturn]] void failDateRange() const;
    /// 8114.
    [[noreturn]] void failConverting() const;

    Value toText(const Value& value) const;
    Value toBinary(const Value& value) const;
    Value toUniqueIdentifier(const Value& value) const;
    Value toDateTime(const Value& value) const;
    Value toInteger(const Value& value) const;
    Value toMoney(const Value& value) const;
    Value toDecimal(const Value& value) const;
    Value toFloat(const Value& value) const;
    Value run(const Value& value) const;

  private:
    QString unsizedText(const Value& value) const;
    Value sized(QString text) const;
    qint64 integerOfText(const QString& text) const;
    QByteArray bytesOf(const Value& value) const;
    qint64 ticksOf(const Value& value) const;
    Decimal decimalOf(const Value& value, int scale) const;
};

/// True when SQL Server converts between the types without CONVERT.
bool convertsImplicitly(TypeId from, TypeId to);

}  // namespace engine

#include "engine/binding/bound.h"

#include "engine/values/typeinfo.h"

namespace engine {

void addUses(Bound& whole, const Bound& part) {
    whole.hasAggregate = whole.hasAggregate || part.hasAggregate;
    whole.hasQuery = whole.hasQuery || part.hasQuery;
    whole.uses.insert(whole.uses.end(), part.uses.begin(), part.uses.end());
}

Bound boundConstant(const Value& value, const SqlType& type, Emission& emission) {
    Bound bound;
    bound.sql = emission.constant(value, type);
    bound.type = type;
    bound.nullable = std::holds_alternative<std::monostate>(value);
    bound.literal = value;
    return bound;
}

Bound boundWhole(const QString& sql, const SqlType& type, std::initializer_list<const Bound*> parts) {
    Bound whole;
    whole.sql = sql;
    whole.type = type;
    whole.nullable = false;
    for (const Bound* part : parts) {
        addUses(whole, *part);
        whole.nullable = whole.nullable || part->nullable;
    }
    return whole;
}

QString collationOf(const SqlType& type) {
    if (isText(type.id)) return QStringLiteral(" COLLATE tsql");
    if (isDecimal(type.id) && !isNarrowDecimal(type)) return QStringLiteral(" COLLATE tsqldecimal");
    return {};
}

QString collated(const Bound& bound) {
    return bound.isColumn ? bound.sql : bound.sql + collationOf(bound.type);
}

}  // namespace engine

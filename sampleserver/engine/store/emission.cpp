#include "engine/store/emission.h"

#include "engine/values/typeinfo.h"

#include <algorithm>

namespace engine {

QString schemaName(const Database& database) {
    return u'd' + QString::number(database.dbid);
}

QString Emission::constant(const Value& value, const SqlType& type) {
    if (std::holds_alternative<std::monostate>(value)) return QStringLiteral("NULL");
    if (const auto* whole = std::get_if<qint64>(&value); whole && *whole >= 0) return QString::number(*whole);
    const auto same = std::ranges::find_if(m_parameters, [&](const TypedValue& parameter) {
        return parameter.type == type && parameter.value == value;
    });
    const auto position = same - m_parameters.begin();
    if (same == m_parameters.end()) m_parameters.push_back({type, value});
    return u'?' + QString::number(position + 1);
}

QString Emission::schema(const Database& database) {
    if (std::ranges::find(m_databases, &database) == m_databases.end()) m_databases.push_back(&database);
    return schemaName(database);
}

}  // namespace engine

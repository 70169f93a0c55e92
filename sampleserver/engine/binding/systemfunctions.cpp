#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/productversion.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

const SqlType integerType{.id = TypeId::Int};
const SqlType nameType{.id = TypeId::NVarChar, .length = 128};

Bound nameValue(const FunctionCall& c, const QString& name) {
    return c.value(name, nameType);
}

Bound objectId(const FunctionCall& c) {
    return c.call("ts_object_id", integerType, {c.text(0), c.count() > 1 ? c.text(1) : nameValue(c, {})});
}

Bound objectProperty(const FunctionCall& c) {
    return c.call("ts_objectproperty", integerType, {c.integer(0), c.text(1)});
}

Bound columnLength(const FunctionCall& c) {
    return c.call("ts_col_length", {.id = TypeId::SmallInt}, {c.text(0), c.text(1)});
}

Bound userId(const FunctionCall& c) {
    return c.call("ts_user_id", {.id = TypeId::SmallInt}, {c.text(0)});
}

Bound objectName(const FunctionCall& c) {
    return c.call("ts_object_name", nameType, {c.integer(0)});
}

Bound columnName(const FunctionCall& c) {
    return c.call("ts_col_name", nameType, {c.integer(0), c.integer(1)});
}

Bound indexColumn(const FunctionCall& c) {
    return c.call("ts_index_col", nameType, {c.text(0), c.integer(1), c.integer(2)});
}

Bound databaseName(const FunctionCall& c) {
    if (c.count() == 0) return nameValue(c, c.facts.database->name);
    return c.call("ts_db_name", nameType, {c.integer(0)});
}

Bound databaseId(const FunctionCall& c) {
    if (c.count() == 0) return c.value(qint64(c.facts.database->dbid), {.id = TypeId::SmallInt});
    return c.call("ts_db_id", {.id = TypeId::SmallInt}, {c.text(0)});
}

Bound userName(const FunctionCall& c) {
    return nameValue(c, c.facts.user);
}

Bound loginName(const FunctionCall& c) {
    return nameValue(c, c.facts.login);
}

Bound hostName(const FunctionCall& c) {
    return nameValue(c, c.facts.host);
}

Bound applicationName(const FunctionCall& c) {
    return nameValue(c, c.facts.application);
}

Bound newId(const FunctionCall& c) {
    return c.call("ts_newid", {.id = TypeId::UniqueIdentifier}, {}, false);
}

QString versionText() {
    return QStringLiteral(
               "Microsoft SQL Server  %1.%2 - %1.%2.%3 (sample server)\n\tA subset for trying and testing, "
               "read-only to its clients\n")
        .arg(ProductVersion::major)
        .arg(ProductVersion::minor, 2, 10, QLatin1Char('0'))
        .arg(ProductVersion::build);
}

}  // namespace

const std::vector<FunctionEntry>& systemFunctions() {
    static const std::vector<FunctionEntry> entries{
        {"object_id", 1, 2, objectId},       {"object_name", 1, 1, objectName},
        {"user_id", 1, 1, userId},           {"objectproperty", 2, 2, objectProperty},
        {"col_length", 2, 2, columnLength},  {"newsequentialid", 0, 0, newId},
        {"col_name", 2, 2, columnName},      {"index_col", 3, 3, indexColumn},
        {"db_name", 0, 1, databaseName},     {"db_id", 0, 1, databaseId},
        {"user_name", 0, 0, userName},       {"user", 0, 0, userName},
        {"current_user", 0, 0, userName},    {"session_user", 0, 0, userName},
        {"suser_sname", 0, 0, loginName},    {"suser_name", 0, 0, loginName},
        {"system_user", 0, 0, loginName},    {"host_name", 0, 0, hostName},
        {"app_name", 0, 0, applicationName}, {"newid", 0, 0, newId},
    };
    return entries;
}

Bound globalVariable(const QString& name, const SessionFacts& facts, Emission& emission) {
    const QString key = name.mid(2).toLower();
    const auto number = [&](qint64 value, TypeId id = TypeId::Int) {
        return boundConstant(value, {.id = id}, emission);
    };
    const auto text = [&](const QString& value) { return boundConstant(value, nameType, emission); };
    if (key == QLatin1String("version"))
        return boundConstant(versionText(), {.id = TypeId::NVarChar, .length = 300}, emission);
    if (key == QLatin1String("servername")) return text(facts.world->serverName());
    if (key == QLatin1String("servicename")) return text(QStringLiteral("MSSQLServer"));
    if (key == QLatin1String("language")) return text(QStringLiteral("us_english"));
    if (key == QLatin1String("langid")) return number(0, TypeId::SmallInt);
    if (key == QLatin1String("spid")) return number(facts.spid, TypeId::SmallInt);
    if (key == QLatin1String("connections")) return number(facts.world->connectionCount().load());
    if (key == QLatin1String("rowcount")) return number(facts.rowCount);
    if (key == QLatin1String("error")) return number(facts.error);
    if (key == QLatin1String("trancount")) return number(facts.transactions);
    if (key == QLatin1String("textsize")) return number(facts.textSize);
    if (key == QLatin1String("max_precision")) return number(38, TypeId::TinyInt);
    if (key == QLatin1String("max_connections")) return number(32767);
    if (key == QLatin1String("datefirst")) return number(7, TypeId::TinyInt);
    if (key == QLatin1String("microsoftversion"))
        return number(ProductVersion::major << 24 | ProductVersion::minor << 16 | ProductVersion::build);
    if (key == QLatin1String("nestlevel")) return number(0);
    if (key == QLatin1String("fetch_status")) return number(0);
    throw SqlError(137, 15, QStringLiteral("Must declare the variable '%1'.").arg(name));
}

}  // namespace engine

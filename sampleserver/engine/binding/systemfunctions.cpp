#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/productversion.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

constexpr SqlType smallType{.id = TypeId::SmallInt};

Bound nameValue(const FunctionCall& c, const QString& name) {
    return c.value(name, nameType);
}

Bound objectId(const FunctionCall& c) {
    return c.call(integerType, {c.text(0), c.count() > 1 ? c.text(1) : nameValue(c, {})});
}

Bound databaseName(const FunctionCall& c) {
    if (c.count() == 0) return nameValue(c, c.facts.database->name);
    return c.call(nameType, {c.integer(0)});
}

Bound databaseId(const FunctionCall& c) {
    if (c.count() == 0) return c.value(qint64(c.facts.database->dbid), smallType);
    return c.call(smallType, {c.text(0)});
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
    return c.call(QStringLiteral("ts_newid"), {.id = TypeId::UniqueIdentifier}, {}, false);
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
        {"object_id", 1, 2, objectId},
        {"object_name", "i", nameType},
        {"objectproperty", "it", integerType},
        {"col_name", "ii", nameType},
        {"col_length", "tt", smallType},
        {"index_col", "tii", nameType},
        {"db_name", 0, 1, databaseName},
        {"db_id", 0, 1, databaseId},
        {"user_id", "t", smallType},
        {"user_name", 0, 0, userName},
        {"user", 0, 0, userName},
        {"current_user", 0, 0, userName},
        {"session_user", 0, 0, userName},
        {"suser_sname", 0, 0, loginName},
        {"suser_name", 0, 0, loginName},
        {"system_user", 0, 0, loginName},
        {"host_name", 0, 0, hostName},
        {"app_name", 0, 0, applicationName},
        {"newid", 0, 0, newId},
        {"newsequentialid", 0, 0, newId},
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
    failVariable(name);
}

}  // namespace engine

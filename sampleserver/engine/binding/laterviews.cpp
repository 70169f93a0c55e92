#include "engine/binding/laterviews.h"

#include <QHash>

namespace engine {

namespace {

constexpr char objects[] =
    "SELECT name, id AS object_id, uid AS schema_id, parent_obj AS parent_object_id, RTRIM(xtype) AS type, "
    "crdate AS create_date FROM %1sysobjects";

/// Of the objects, those that a view of their own shows.
constexpr std::pair<const char*, const char*> kinds[] = {
    {"sys.objects", ""},       {"sys.all_objects", ""},        {"sys.tables", "U"},
    {"sys.views", "V"},        {"sys.procedures", "P"},        {"sys.triggers", "TR"},
    {"sys.foreign_keys", "F"}, {"sys.check_constraints", "C"}, {"sys.default_constraints", "D"},
    {"sys.synonyms", "SN"},    {"sys.key_constraints", "PK"},
};

constexpr std::pair<const char*, const char*> others[] = {
    {"sys.databases", "SELECT name, dbid AS database_id FROM master..sysdatabases"},
    {"sys.schemas", "SELECT name, uid AS schema_id FROM %1sysusers"},
    {"sys.database_principals", "SELECT name, uid AS principal_id FROM %1sysusers"},
    {"sys.columns", "SELECT name, id AS object_id, colid AS column_id FROM %1syscolumns"},
    {"sys.indexes", "SELECT name, id AS object_id, indid AS index_id FROM %1sysindexes"},
    {"sys.types", "SELECT name, xusertype AS user_type_id, uid AS schema_id FROM %1systypes"},
    {"information_schema.schemata", "SELECT name AS schema_name FROM %1sysusers"},
    {"information_schema.tables",
     "SELECT DB_NAME() AS table_catalog, u.name AS table_schema, o.name AS table_name, 'BASE TABLE' AS "
     "table_type FROM %1sysobjects o JOIN %1sysusers u ON u.uid = o.uid WHERE o.xtype = 'U'"},
    {"information_schema.columns",
     "SELECT u.name AS table_schema, o.name AS table_name, c.name AS column_name FROM %1syscolumns c JOIN "
     "%1sysobjects o ON o.id = c.id JOIN %1sysusers u ON u.uid = o.uid"},
    {"information_schema.table_constraints",
     "SELECT c.name AS constraint_name, t.name AS table_name FROM %1sysobjects c JOIN %1sysobjects t ON t.id "
     "= c.parent_obj"},
    {"information_schema.routines", "SELECT name AS routine_name FROM %1sysobjects WHERE xtype = 'P'"},
};

QHash<QString, QString> views() {
    QHash<QString, QString> result;
    for (const auto& [name, query] : others)
        result.insert(QLatin1String(name), QLatin1String(query));
    for (const auto& [name, type] : kinds) {
        QString query = QLatin1String(objects);
        if (*type != '\0')
            query += QStringLiteral(" WHERE xtype = '%2'").replace(QLatin1String("%2"), QLatin1String(type));
        result.insert(QLatin1String(name), query);
    }
    return result;
}

}  // namespace

QString laterView(const QString& database, const QString& owner, const QString& name) {
    static const QHash<QString, QString> known = views();
    QString query = known.value(owner.toLower() + u'.' + name.toLower());
    QString quoted = database;
    return query.replace(QLatin1String("%1"),
                         u'[' + quoted.replace(u']', QLatin1String("]]")) + QLatin1String("].."));
}

}  // namespace engine

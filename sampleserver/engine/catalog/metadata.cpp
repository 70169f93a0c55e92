#include "engine/catalog/metadata.h"

#include "engine/store/storecall.h"
#include "engine/values/typeinfo.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>

namespace engine {

namespace {

/// Names of a database's objects by number, gathered when first asked for.
struct ObjectNames {
    const Database* database = nullptr;
    size_t count = 0;  ///< of its tables, which grow while scripts are read
    QHash<int, QString> names;
    QHash<int, const Table*> tables;
};

struct Context {
    const SessionFacts* facts;
    mutable ObjectNames objects;
};

using Body = void (*)(StoreCall&, const Context&);

struct MetadataFunction {
    const char* name;
    int arguments;
    Body run;
};

struct Binding {
    Body run;
    std::shared_ptr<Context> context;
};

struct Named {
    const Database* database = nullptr;
    const Table* table = nullptr;
    QString object;
};

Named find(const SessionFacts& facts, const QString& text) {
    const std::vector<QString> parts = nameParts(text);
    Named named;
    if (parts.empty() || parts.size() > 3) return named;
    named.object = parts.back();
    named.database =
        parts.size() == 3 && !parts[0].isEmpty() ? facts.world->findDatabase(parts[0]) : facts.database;
    const QString owner = parts.size() > 1 ? parts[parts.size() - 2] : QString();
    if (named.database) named.table = named.database->findTable(owner, named.object, facts.user);
    return named;
}

/// Tells `visit` the number and name of every object of a table: itself and its constraints.
template <class Visit>
void visitObjects(const Table& table, Visit visit) {
    visit(table.id, table.name);
    for (const Check& check : table.checks)
        visit(check.id, check.name);
    for (const ForeignKey& key : table.foreignKeys)
        visit(key.id, key.name);
    for (const Index& index : table.indexes)
        visit(index.id, index.name);
    for (const Column& column : table.columns)
        visit(column.defaultId, column.defaultName);
}

/// The number of a constraint; 0 when there is none.
int constraintId(const Database& database, const QString& name) {
    int found = 0;
    for (const auto& table : database.tables) {
        visitObjects(*table, [&](int id, const QString& object) {
            if (id != 0 && object.compare(name, Qt::CaseInsensitive) == 0) found = id;
        });
    }
    return found;
}

void numberOrNull(StoreCall& c, qint64 number) {
    if (number <= 0) return c.resultNull();
    c.result(number);
}

/// ts_object_id(name, type): of a table only where the type is U, S or empty, of a constraint where it is
/// not.
void objectId(StoreCall& c, const Context& context) {
    const Named named = find(*context.facts, c.text(0));
    const QString type = c.text(1).trimmed().toUpper();
    const bool table = type == QLatin1String("U") || type == QLatin1String("S");
    if (named.table) return numberOrNull(c, type.isEmpty() || table ? named.table->id : 0);
    numberOrNull(c, named.database && !table ? constraintId(*named.database, named.object) : 0);
}

void columnLength(StoreCall& c, const Context& context) {
    const Named named = find(*context.facts, c.text(0));
    const int column = named.table ? named.table->columnIndex(c.text(1)) : -1;
    numberOrNull(c, column < 0 ? 0 : typeBytes(named.table->columns[size_t(column)].type));
}

void userId(StoreCall& c, const Context& context) {
    numberOrNull(c, context.facts->database->userId(c.text(0)));
}

const ObjectNames& objectsOf(const Context& context) {
    const Database* database = context.facts->database;
    ObjectNames& objects = context.objects;
    if (objects.database == database && objects.count == database->tables.size()) return objects;
    objects = {.database = database, .count = database->tables.size(), .names = {}, .tables = {}};
    for (const auto& table : database->tables) {
        visitObjects(*table, [&](int id, const QString& name) { objects.names.insert(id, name); });
        objects.tables.insert(table->id, table.get());
    }
    objects.names.remove(0);
    return objects;
}

void nameOrNull(StoreCall& c, const QString& name) {
    if (name.isEmpty()) {
        c.resultNull();
    } else {
        c.result(name);
    }
}

void objectName(StoreCall& c, const Context& context) {
    nameOrNull(c, objectsOf(context).names.value(static_cast<int>(c.integer(0))));
}

void columnName(StoreCall& c, const Context& context) {
    const Table* table = objectsOf(context).tables.value(static_cast<int>(c.integer(0)));
    const qint64 number = c.integer(1);
    if (!table || number < 1 || number > static_cast<qint64>(table->columns.size())) return c.resultNull();
    c.result(table->columns[static_cast<size_t>(number - 1)].name);
}

void indexColumn(StoreCall& c, const Context& context) {
    const Named named = find(*context.facts, c.text(0));
    if (!named.table) return c.resultNull();
    const auto index = std::ranges::find(named.table->indexes, static_cast<int>(c.integer(1)), &Index::indid);
    const qint64 key = c.integer(2);
    if (index == named.table->indexes.end() || key < 1 || key > static_cast<qint64>(index->columns.size())) {
        return c.resultNull();
    }
    const int column = index->columns[static_cast<size_t>(key - 1)];
    c.result(named.table->columns[static_cast<size_t>(column)].name);
}

/// Of tables, the kinds that scripts ask for; nothing for any other object or property.
void objectProperty(StoreCall& c, const Context& context) {
    const Table* table = objectsOf(context).tables.value(static_cast<int>(c.integer(0)));
    const QString property = c.text(1).toLower();
    if (!table || !property.startsWith(QLatin1String("is"))) return c.resultNull();
    const bool user = property == QLatin1String("isusertable") && !table->system;
    const bool system = property == QLatin1String("issystemtable") && table->system;
    c.result(qint64(user || system || property == QLatin1String("istable") ? 1 : 0));
}

void databaseName(StoreCall& c, const Context& context) {
    const auto& databases = context.facts->world->databases();
    const auto found =
        std::ranges::find_if(databases, [&](const auto& d) { return d->dbid == c.integer(0); });
    nameOrNull(c, found == databases.end() ? QString() : (*found)->name);
}

void databaseId(StoreCall& c, const Context& context) {
    const Database* database = context.facts->world->findDatabase(c.text(0));
    numberOrNull(c, database ? database->dbid : 0);
}

constexpr MetadataFunction functions[] = {
    {"ts_object_id", 2, objectId},
    {"ts_object_name", 1, objectName},
    {"ts_col_name", 2, columnName},
    {"ts_col_length", 2, columnLength},
    {"ts_index_col", 3, indexColumn},
    {"ts_db_name", 1, databaseName},
    {"ts_db_id", 1, databaseId},
    {"ts_user_id", 1, userId},
    {"ts_objectproperty", 2, objectProperty},
};

void run(sqlite3_context* context, int count, sqlite3_value** arguments) {
    const auto* binding = static_cast<const Binding*>(sqlite3_user_data(context));
    StoreCall call(context, count, arguments);
    for (int i = 0; i < count; ++i) {
        if (call.isNull(i)) return call.resultNull();
    }
    binding->run(call, *binding->context);
}

}  // namespace

void registerMetadataFunctions(sqlite3* store, const SessionFacts& facts) {
    const auto context = std::make_shared<Context>(Context{.facts = &facts, .objects = {}});
    for (const MetadataFunction& function : functions) {
        // Within a statement the catalog stands still, so constant calls may be made once.
        auto binding = std::make_unique<Binding>(Binding{function.run, context});
        sqlite3_create_function_v2(store, function.name, function.arguments,
                                   SQLITE_UTF8 | SQLITE_DETERMINISTIC, binding.release(), run, nullptr,
                                   nullptr, [](void* data) { delete static_cast<Binding*>(data); });
    }
}

std::vector<QString> nameParts(const QString& name) {
    std::vector<QString> parts(1);
    QChar closing;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const QChar c = name[i];
        if (!closing.isNull()) {
            if (c != closing) {
                parts.back() += c;
            } else if (i + 1 < name.size() && name[i + 1] == closing) {
                parts.back() += name[i++];
            } else {
                closing = QChar();
            }
        } else if (parts.back().isEmpty() && (c == u'[' || c == u'"')) {
            closing = c == u'[' ? QChar(u']') : QChar(u'"');
        } else if (c == u'.') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

}  // namespace engine

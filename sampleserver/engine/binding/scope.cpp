#include "engine/binding/scope.h"

#include "engine/store/storage.h"
#include "engine/values/sqlerror.h"

namespace engine {

namespace {

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

}  // namespace

void failPrefix(const std::vector<QString>& prefix) {
    throw SqlError(
        107, 16,
        QStringLiteral("The column prefix '%1' does not match with a table name or alias name used "
                       "in the query.")
            .arg(QStringList(prefix.begin(), prefix.end()).join(u'.')));
}

int Source::columnCount() const {
    return static_cast<int>(table ? table->columns.size() : columns.size());
}

int Source::findColumn(const QString& name) const {
    if (table) return table->columnIndex(name);
    for (size_t i = 0; i < columns.size(); ++i) {
        if (sameName(columns[i].name, name)) return static_cast<int>(i);
    }
    return -1;
}

QString Source::columnName(int column) const {
    const auto i = static_cast<size_t>(column);
    return table ? table->columns[i].name : columns[i].name;
}

bool Source::matches(const std::vector<QString>& prefix) const {
    if (prefix.empty()) return true;
    if (!sameName(prefix.back(), exposedName())) return false;
    if (prefix.size() == 1) return true;
    if (!alias.isEmpty() || !table) return false;
    const QString& owner = prefix[prefix.size() - 2];
    if (!owner.isEmpty() && !table->system && !sameName(owner, table->owner)) return false;
    return prefix.size() == 2 || sameName(prefix[prefix.size() - 3], database->name);
}

Scope::Found Scope::findHere(const std::vector<QString>& prefix, const QString& name) const {
    Found found;
    for (size_t i = first; i < last; ++i) {
        const Source& source = sources[i];
        if (!source.matches(prefix)) continue;
        found.prefixKnown = true;
        const int column = source.findColumn(name);
        if (column < 0) continue;
        if (found.source) throw SqlError(209, 16, QStringLiteral("Ambiguous column name '%1'.").arg(name));
        found.source = &source;
        found.column = column;
    }
    return found;
}

Bound Scope::column(const Source& source, int column) const {
    Bound bound;
    const auto i = static_cast<size_t>(column);
    bound.isColumn = true;
    if (source.table) {
        const Column& definition = source.table->columns[i];
        bound.type = definition.type;
        bound.identity = definition.identity;
        bound.nullable = definition.nullable || source.outer;
        bound.sql = source.sqlName + u'.' + storageColumn(column);
    } else {
        const OutputColumn& definition = source.columns[i];
        bound.type = definition.type;
        bound.nullable = definition.nullable || source.outer;
        bound.sql = source.sqlName + QLatin1String(".r") + QString::number(column);
    }
    if (!inAggregate && !groups.contains(bound.sql)) {
        bound.uses.push_back({this, source.exposedName() + u'.' + source.columnName(column)});
    }
    return bound;
}

Bound Scope::resolve(const std::vector<QString>& path) {
    const std::vector<QString> prefix(path.begin(), path.end() - 1);
    bool prefixKnown = false;
    for (Scope* scope = this; scope; scope = scope->m_outer) {
        const Found found = scope->findHere(prefix, path.back());
        prefixKnown = prefixKnown || found.prefixKnown;
        if (!found.source) continue;
        Bound bound = scope->column(*found.source, found.column);
        for (Scope* inner = this; inner != scope; inner = inner->m_outer)
            inner->outerUses.insert(inner->outerUses.end(), bound.uses.begin(), bound.uses.end());
        return bound;
    }
    if (!prefix.empty() && !prefixKnown) failPrefix(prefix);
    throw SqlError(207, 16, QStringLiteral("Invalid column name '%1'.").arg(path.back()));
}

}  // namespace engine

#include "engine/catalog/systemtables.h"
#include "engine/store/keycolumns.h"

namespace engine {

namespace {

constexpr size_t maximumKeyColumns = 16;

void appendNumbers(std::vector<Value>& row, const std::vector<int>& columns) {
    for (size_t i = 0; i < maximumKeyColumns; ++i)
        row.emplace_back(i < columns.size() ? columns[i] + 1 : 0);
}

}  // namespace

void fillReferences(const Database& database) {
    SystemRows pairs(database, "sysforeignkeys");
    SystemRows references(database, "sysreferences");
    for (const auto& table : database.tables) {
        for (const ForeignKey& key : table->foreignKeys) {
            const Table& referenced = *database.findTable(key.referencedOwner, key.referencedTable, {});
            for (size_t i = 0; i < key.columns.size(); ++i) {
                pairs.append({key.id, table->id, referenced.id, key.columns[i] + 1, key.referenced[i] + 1,
                              static_cast<int>(i) + 1});
            }
            const Index* index = candidateKey(referenced, key.referenced);
            std::vector<Value> row{key.id, table->id, referenced.id, index == nullptr ? 0 : index->indid};
            row.insert(row.end(), {static_cast<int>(key.columns.size()), Value(), Value(), 0, 0});
            appendNumbers(row, key.columns);
            appendNumbers(row, key.referenced);
            references.append(row);
        }
    }
}

}  // namespace engine

#include "engine/catalog/systemtables.h"
#include "engine/store/keycolumns.h"
#include "engine/values/typeinfo.h"

#include <QtEndian>

#include <algorithm>

namespace engine {

namespace {

constexpr int longTextIndexId = 255;

enum IndexStatus {
    UniqueStatus = 0x2,
    ClusteredStatus = 0x10,
    StatisticsStatus = 0x60,
    PrimaryKeyStatus = 0x800,
    UniqueConstraintStatus = 0x1000,
    AutomaticStatus = 0x800000
};

int statusOf(const Index& index) {
    int status = 0;
    if (index.unique) status |= UniqueStatus;
    if (index.clustered) status |= ClusteredStatus;
    if (index.primaryKey) status |= PrimaryKeyStatus;
    if (index.uniqueConstraint) status |= UniqueConstraintStatus;
    if (index.statistics) status |= StatisticsStatus;
    if (index.statistics && index.name.startsWith(QLatin1String("_WA_Sys"))) status |= AutomaticStatus;
    return status;
}

int rowBytes(const Table& table) {
    int bytes = 0;
    for (const Column& column : table.columns)
        bytes += typeBytes(column.type);
    return std::min(bytes, 8060);
}

/// Rows of sysindexes for one table: its heap or clustered index, its other indexes, its long texts.
class IndexRows {
  public:
    IndexRows(SystemRows& rows, const Table& table, qint64 count)
        : m_rows(rows), m_table(table), m_count(count), m_bytes(rowBytes(table)) {}

    void append(const QString& name, int indid, int status, int keys) {
        const bool data = indid <= 1;
        QByteArray count(8, '\0');
        qToLittleEndian(data ? m_count : 0, count.data());
        const Value unknown;  // pages, and what lies in them
        m_rows.append({m_table.id, status,  unknown, indid,   unknown,
                       0,          keys,    1,       unknown, unknown,
                       unknown,    count,   0,       m_bytes, m_bytes,
                       0,          unknown, 0,       0,       0,
                       unknown,    name,    unknown, 8060,    indid == longTextIndexId ? 0 : m_count});
    }

  private:
    SystemRows& m_rows;
    const Table& m_table;
    qint64 m_count;
    int m_bytes;
};

void appendIndexes(const Table& table, qint64 rowCount, SystemRows& indexes, SystemRows& keys) {
    IndexRows rows(indexes, table, rowCount);
    if (clusteredIndex(table) == nullptr) rows.append(table.name, 0, 0, 0);
    for (const Index& index : table.indexes) {
        rows.append(index.name, index.indid, statusOf(index), static_cast<int>(index.columns.size()));
        int place = 0;
        for (const int column : index.columns)
            keys.append({table.id, index.indid, column + 1, ++place});
    }
    const bool longTexts = std::any_of(table.columns.begin(), table.columns.end(),
                                       [](const Column& column) { return isLong(column.type.id); });
    if (longTexts) rows.append(QLatin1Char('t') + table.name, longTextIndexId, 0, 0);
}

}  // namespace

void fillIndexes(const Database& database, const std::vector<qint64>& rowCounts) {
    SystemRows indexes(database, "sysindexes");
    SystemRows keys(database, "sysindexkeys");
    for (size_t i = 0; i < database.tables.size(); ++i) {
        appendIndexes(*database.tables[i], rowCounts[i], indexes, keys);
    }
}

}  // namespace engine

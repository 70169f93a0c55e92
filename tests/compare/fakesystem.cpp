#include "fakesystem.h"

#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"

#include <algorithm>

namespace {

template <class Texts>
void addRow(controls::ListItems& list, const Texts& texts) {
    const int row = list.addItem(texts[0]);
    for (size_t column = 1; column < texts.size(); ++column)
        list.setSubItem(row, static_cast<int>(column), texts[column]);
}

}  // namespace

std::vector<FakeSchema::Column> FakeSchema::columnsOf(const QString& table) const {
    const auto found = std::ranges::find(tables, table, &FakeTable::name);
    if (found == tables.end()) return {{QStringLiteral("<No Column Defined>")}};
    return found->columns;
}

bool FakeSystem::reads(const QString& what) {
    m_log += QStringLiteral("read %1 %2").arg(m_number).arg(what);
    if (m_readingsLeft >= 0) --m_readingsLeft;
    return m_readingsLeft >= 0;
}

bool FakeSystem::FillCbTable(controls::ComboItems& combo, const QString& database) {
    combo.clear();
    if (!reads(QStringLiteral("tables of ") + database)) return false;
    for (const FakeSchema::FakeTable& table : m_schema.tables)
        combo.addItem(table.name);
    return true;
}

void FakeSystem::FillLvTblDef(controls::ListItems& list, const QString&, const QString& table) {
    list.clearItems();
    if (!reads(QStringLiteral("table ") + table)) return;
    if (!m_followed) m_log += QStringLiteral("unfollowed");
    for (const FakeSchema::Column& column : m_schema.columnsOf(table))
        addRow(list, column);
}

QString FakeSystem::FillLvDBDetail(controls::ListItems& list, const QString& database) {
    list.clearHeaders();
    list.clearItems();
    if (!reads(QStringLiteral("details of ") + database)) return {};
    for (const FakeSchema::DetailRow& row : m_schema.details)
        addRow(list, row);
    return {};
}

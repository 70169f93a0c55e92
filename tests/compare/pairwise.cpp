#include "pairwise.h"

#include "support/rowtexts.h"

#include <cmath>

namespace {

using testsupport::rowText;

using Row = FakeSchema::DetailRow;
using Rows = std::vector<Row>;
using Column = FakeSchema::Column;
using Columns = std::vector<Column>;

class Pairwise {
  public:
    Pairwise(const FakeSchema& schema1, const FakeSchema& schema2) : m_schema1(schema1), m_schema2(schema2) {}

    Outcome outcome;

    void compare(const QString& table1, const QString& table2, tw::ComparedKinds kinds) {
        const bool all = table1.toUpper() == QStringLiteral("(ALL TABLES)");
        setUp(all, kinds.any());
        if (kinds.indexes) compareIndexes();
        if (kinds.constraints) compareConstraints();
        if (kinds.foreignKeys) compareForeignKeys();
        if (all) {
            compareTables();
        } else {
            compareTable(table1, table2);
        }
        update(9, QStringLiteral("Finished"));
        const QStringList headers{"Names", "Attribute", "Attribute", "Attribute", "Attribute"};
        outcome.headers = headers + headers;
    }

  private:
    void setUp(bool all, bool anyKind) {
        int details = 0;
        int tables = 0;
        if (anyKind) {
            outcome.log += {QStringLiteral("read 1 details of db1"), QStringLiteral("read 2 details of db2")};
            details = static_cast<int>(m_schema1.details.size());
        }
        if (all) {
            outcome.log += {QStringLiteral("read 1 tables of db1"), QStringLiteral("read 2 tables of db2")};
            tables = static_cast<int>(m_schema1.tables.size() + m_schema2.tables.size());
        }
        // nearbyint rounds a half to the even neighbour.
        const int need =
            3 * static_cast<int>(std::nearbyint(details / 2.0)) + (5 * tables == 0 ? 1 : 5 * tables);
        outcome.log += {QStringLiteral("begin"), QStringLiteral("need %1").arg(need),
                        QStringLiteral("captions one, two")};
    }

    void add1(int icon, const QStringList& texts) { outcome.rows1 += rowText(icon, texts); }
    void add2(int icon, const QStringList& texts) { outcome.rows2 += rowText(icon, texts); }
    void update(int state, const QString& item) {
        outcome.log += updateText(state, item, outcome.rows1.size(), outcome.rows2.size());
    }

    void found(bool onSide1, bool matched, const QStringList& texts, const QString& progress) {
        onSide1 ? add1(matched ? 5 : 6, texts) : add2(matched ? 5 : 6, texts);
        if (!matched) update(0, progress);
        if (matched) update(onSide1 ? 1 : 2, onSide1 ? progress : QString());
    }

    void compareConstraints() {
        const QStringList heading{"Constraints", "Constraint Table", "Constraint Check"};
        add1(1, heading);
        add2(1, heading);
        const auto walk = [&](const Rows& own, const Rows& others, bool onSide1) {
            for (const Row& r : own) {
                if (r[0].isEmpty()) return;
                bool matched = false;
                for (const Row& s : others) {
                    if (s[0].isEmpty()) break;
                    if (r[0] == s[0] && r[1] == s[1] && r[2] == s[2]) matched = true;
                }
                found(onSide1, matched, {r[1], r[0], r[2]}, QStringLiteral("Constraints"));
            }
        };
        walk(m_schema1.details, m_schema2.details, true);
        walk(m_schema2.details, m_schema1.details, false);
    }

    void compareIndexes() {
        const QStringList heading{"Indexes", "Index Table", "Index Column"};
        add1(2, heading);
        add2(2, heading);
        const auto walk = [&](const Rows& own, const Rows& others, bool onSide1) {
            QString table;
            QString name;
            for (const Row& r : own) {
                if (r[5].isEmpty()) return;
                if (!r[3].isEmpty()) table = r[3];
                if (!r[4].isEmpty()) name = r[4];
                bool matched = false;
                QString otherTable;
                for (const Row& s : others) {
                    if (s[5].isEmpty()) break;
                    if (!s[3].isEmpty()) otherTable = s[3];
                    if (table == otherTable && r[4] == s[4] && r[5] == s[5]) matched = true;
                }
                found(onSide1, matched, {name, table, r[5]}, QStringLiteral("Indexes"));
            }
        };
        walk(m_schema1.details, m_schema2.details, true);
        walk(m_schema2.details, m_schema1.details, false);
    }

    void compareForeignKeys() {
        const QStringList heading{"Foreign Keys", "Foreign Table", "Foreign Column", "Reference Table",
                                  "Reference Column"};
        add1(3, heading);
        add2(3, heading);
        const auto walk = [&](const Rows& own, const Rows& others, bool onSide1) {
            for (const Row& r : own) {
                if (r[6].isEmpty()) return;
                bool matched = false;
                for (const Row& s : others) {
                    if (s[6].isEmpty()) break;
                    if (r[6] == s[6] && r[7] == s[7] && r[8] == s[8] && r[9] == s[9] && r[10] == s[10])
                        matched = true;
                }
                found(onSide1, matched, {r[6], r[7], r[8], r[9], r[10]}, QStringLiteral("Foreign keys"));
            }
        };
        walk(m_schema1.details, m_schema2.details, true);
        walk(m_schema2.details, m_schema1.details, false);
    }

    void compareTables() {
        const QStringList none{"Table: None defined", "Data type", "Nullable", "Foreign key"};
        if (m_schema1.tables.empty()) add1(4, none);
        if (m_schema2.tables.empty()) add2(4, none);
        std::vector<bool> marks1(m_schema1.tables.size());
        std::vector<bool> marks2(m_schema2.tables.size());
        for (size_t i = 0; i < marks1.size(); ++i) {
            for (size_t j = 0; j < marks2.size(); ++j) {
                const QString name = m_schema1.tables[i].name;
                if (name != m_schema2.tables[j].name) continue;
                marks1[i] = true;
                marks2[j] = true;
                compareTable(name, name);
                break;
            }
        }
        for (size_t i = 0; i < marks1.size(); ++i)
            if (!marks1[i]) compareTable(m_schema1.tables[i].name, {});
        for (size_t j = 0; j < marks2.size(); ++j)
            if (!marks2[j]) compareTable({}, m_schema2.tables[j].name);
    }

    void compareTable(const QString& table1, const QString& table2) {
        const auto heading = [](const QString& table) {
            return QStringList{QStringLiteral("Table: ") + table, "Data type", "Nullable", "Foreign key"};
        };
        Columns columns1;
        Columns columns2;
        if (!table1.isEmpty()) {
            outcome.log += QStringLiteral("read 1 table ") + table1;
            columns1 = m_schema1.columnsOf(table1);
            add1(4, heading(table1));
        }
        if (!table2.isEmpty()) {
            outcome.log += QStringLiteral("read 2 table ") + table2;
            columns2 = m_schema2.columnsOf(table2);
            add2(4, heading(table2));
        }
        for (const Column& r : columns1) {
            bool matched = false;
            for (const Column& s : columns2) {
                if (r != s) continue;
                matched = true;
                add1(5, {r.begin(), r.end()});
                update(1, QStringLiteral("Tablew: ") + table1);
            }
            if (matched) continue;
            add1(6, {r.begin(), r.end()});
            update(0, QStringLiteral("Table: ") + table1);
        }
        for (const Column& s : columns2) {
            bool matched = false;
            for (const Column& r : columns1) {
                if (r != s) continue;
                matched = true;
                add2(5, {s.begin(), s.end()});
                update(2, QStringLiteral("Table: ") + table2);
            }
            if (matched) continue;
            add2(6, {s.begin(), s.end()});
            update(0, QStringLiteral("Table: ") + table2);
        }
    }

    const FakeSchema& m_schema1;
    const FakeSchema& m_schema2;
};

}  // namespace

QString updateText(int state, const QString& item, qsizetype rows1, qsizetype rows2) {
    return QStringLiteral("update %1 '%2' at %3, %4").arg(state).arg(item).arg(rows1).arg(rows2);
}

Outcome comparePairwise(const FakeSchema& schema1, const FakeSchema& schema2, const QString& table1,
                        const QString& table2, tw::ComparedKinds kinds) {
    Pairwise pairwise(schema1, schema2);
    pairwise.compare(table1, table2, kinds);
    return pairwise.outcome;
}

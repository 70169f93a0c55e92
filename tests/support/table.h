#pragma once

#include <QTest>

namespace testsupport {

/// The table that a test is run for: made with the names of its columns, called once for each row.
///     const Table<QString, int> row("text", "number");
///     row("no digit", "x", -1);
template <class... Types>
class Table {
  public:
    template <class... Names>
    explicit Table(Names... names) {
        (QTest::addColumn<Types>(names), ...);
    }
    void operator()(const char* name, const Types&... values) const {
        (QTest::newRow(name) << ... << values);
    }
};

/// One whose first column, a text, names the rows.
template <class... Types>
class TextTable {
  public:
    template <class... Names>
    explicit TextTable(Names... names) : m_table(names...) {}
    void operator()(const char* text, const Types&... values) const {
        m_table(text, QString::fromUtf8(text), values...);
    }

  private:
    Table<QString, Types...> m_table;
};

}  // namespace testsupport

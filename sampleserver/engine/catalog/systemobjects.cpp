#include "engine/catalog/systemtables.h"

namespace engine {

namespace {

/// Appends objects of a table's owner.
class ObjectRows {
  public:
    explicit ObjectRows(const Database& database)
        : m_database(database),
          m_rows(database, "sysobjects", "name id xtype uid parent_obj crdate type sysstat refdate") {}

    void append(const Table& table, const QString& name, int id, const char* xtype, const char* type) {
        const int parent = id == table.id ? 0 : table.id;
        const int kind = parent > 0 ? 0 : table.system ? 1 : 3;
        m_rows.append({name, id, padded(xtype), m_database.userId(table.owner), parent, m_database.created,
                       padded(type), kind, m_database.created});
    }

  private:
    static QString padded(const char* type) { return QString::fromLatin1(type).leftJustified(2); }

    const Database& m_database;
    SystemRows m_rows;
};

/// Texts longer than a row of syscomments go on in the next one. `column` is the number of a computed one.
void appendComment(SystemRows& rows, int id, const QString& text, int column = 0) {
    constexpr qsizetype rowLength = 4000;
    for (qsizetype begin = 0, part = 1; begin < text.size(); begin += rowLength, ++part) {
        rows.append({id, column, part, 2, text.mid(begin, rowLength)});
    }
}

void appendConstraints(const Table& table, ObjectRows& objects, SystemRows& comments) {
    for (const Index& index : table.indexes) {
        if (index.id != 0) objects.append(table, index.name, index.id, index.primaryKey ? "PK" : "UQ", "K");
    }
    for (const Column& column : table.columns) {
        if (column.defaultId == 0) continue;
        objects.append(table, column.defaultName, column.defaultId, "D", "D");
        appendComment(comments, column.defaultId, column.defaultText);
    }
    for (const Check& check : table.checks) {
        objects.append(table, check.name, check.id, "C", "C");
        appendComment(comments, check.id, check.text);
    }
    for (const ForeignKey& key : table.foreignKeys)
        objects.append(table, key.name, key.id, "F", "F");
}

}  // namespace

void fillObjects(const Database& database) {
    ObjectRows objects(database);
    SystemRows comments(database, "syscomments", "id number colid texttype text");
    for (const auto& table : database.tables) {
        const char* type = table->system ? "S" : "U";
        objects.append(*table, table->name, table->id, type, type);
        appendConstraints(*table, objects, comments);
        int position = 0;
        for (const Column& column : table->columns)
            appendComment(comments, table->id, column.computedText, ++position);
    }
}

}  // namespace engine

#include "engine/catalog/systemtables.h"

namespace engine {

namespace {

struct Object {
    QString name;
    int id;
    const char* xtype;
    const char* type;
    int parent = 0;
    int sysstat = 0;
};

QString padded(const char* type) {
    return QString::fromLatin1(type).leftJustified(2);
}

/// Appends an object of the table's owner; an object with a parent belongs to that table.
class ObjectRows {
  public:
    explicit ObjectRows(const Database& database) : m_database(database), m_rows(database, "sysobjects") {}

    void append(const Table& table, const Object& object) {
        const int owner = m_database.userId(table.owner);
        const qint64 created = m_database.created;
        m_rows.append({object.name,
                       object.id,
                       padded(object.xtype),
                       owner,
                       0,
                       0,
                       0,
                       0,
                       object.parent,
                       created,
                       0,
                       0,
                       0,
                       padded(object.type),
                       0,
                       object.sysstat,
                       0,
                       created,
                       0,
                       0,
                       0,
                       0,
                       0,
                       0,
                       0});
    }

  private:
    const Database& m_database;
    SystemRows m_rows;
};

/// Texts longer than a row of syscomments go on in the next one. `column` is the number of a computed one.
void appendComment(SystemRows& rows, int id, const QString& text, int column = 0) {
    constexpr qsizetype rowLength = 4000;
    for (qsizetype begin = 0, part = 1; begin < text.size(); begin += rowLength, ++part) {
        rows.append({id, column, part, 0, 2, 0, 0, 0, text.mid(begin, rowLength)});
    }
}

void appendConstraints(const Table& table, ObjectRows& objects, SystemRows& comments) {
    for (const Index& index : table.indexes) {
        if (index.id == 0) continue;
        objects.append(table, {.name = index.name,
                               .id = index.id,
                               .xtype = index.primaryKey ? "PK" : "UQ",
                               .type = "K",
                               .parent = table.id});
    }
    for (const Column& column : table.columns) {
        if (column.defaultId == 0) continue;
        objects.append(table, {.name = column.defaultName,
                               .id = column.defaultId,
                               .xtype = "D",
                               .type = "D",
                               .parent = table.id});
        appendComment(comments, column.defaultId, column.defaultText);
    }
    for (const Check& check : table.checks) {
        objects.append(table,
                       {.name = check.name, .id = check.id, .xtype = "C", .type = "C", .parent = table.id});
        appendComment(comments, check.id, check.text);
    }
    for (const ForeignKey& key : table.foreignKeys) {
        objects.append(table,
                       {.name = key.name, .id = key.id, .xtype = "F", .type = "F", .parent = table.id});
    }
}

}  // namespace

void fillObjects(const Database& database) {
    ObjectRows objects(database);
    SystemRows comments(database, "syscomments");
    for (const auto& table : database.tables) {
        const char* type = table->system ? "S" : "U";
        objects.append(*table, {.name = table->name,
                                .id = table->id,
                                .xtype = type,
                                .type = type,
                                .sysstat = table->system ? 1 : 3});
        appendConstraints(*table, objects, comments);
        int position = 0;
        for (const Column& column : table->columns)
            appendComment(comments, table->id, column.computedText, ++position);
    }
}

}  // namespace engine

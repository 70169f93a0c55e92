#pragma once

#include "engine/values/sqltype.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace engine {

/// Key of a name: names compare without regard to case.
QString nameKey(const QString& name);

struct Column {
    QString name;
    SqlType type;
    bool nullable = true;
    bool identity = false;
    qint64 identitySeed = 1;
    qint64 identityStep = 1;
    qint64 identityNext = 1;  ///< value of the next row that a script inserts
    QString defaultText;      ///< as written, in parentheses as the server keeps it; empty: none
    QString defaultName;      ///< name of the default's constraint
    int defaultId = 0;        ///< its object id
    QString computedText;     ///< what its values are computed by, in parentheses; empty: they are given
    QString userType;         ///< the name of the type, where a user made it
    bool sysname = false;     ///< declared as sysname, an nvarchar(128) with a name of its own
};

struct Index {
    QString name;
    int id = 0;     ///< object id of the constraint, 0 for a plain index
    int indid = 0;  ///< 1 clustered, 2.. others
    bool unique = false;
    bool clustered = false;
    bool primaryKey = false;
    bool uniqueConstraint = false;
    bool statistics = false;   ///< made by CREATE STATISTICS, no index at all
    std::vector<int> columns;  ///< positions in Table::columns, key order
};

struct Check {
    QString name;
    int id = 0;
    QString text;           ///< as written, in parentheses
    QString column;         ///< the column it was written at; empty: at the table
    bool disabled = false;  ///< by NOCHECK CONSTRAINT
};

struct ForeignKey {
    QString name;
    int id = 0;
    std::vector<int> columns;  ///< positions in the referencing table
    QString referencedOwner;
    QString referencedTable;
    std::vector<int> referenced;  ///< positions in the referenced table
    bool disabled = false;        ///< by NOCHECK CONSTRAINT
};

struct Table {
    QString owner;
    QString name;
    int id = 0;  ///< object id
    bool system = false;
    std::vector<Column> columns;  ///< colid is the position plus one
    std::vector<Index> indexes;
    std::vector<Check> checks;
    std::vector<ForeignKey> foreignKeys;
    QStringList deniedUsers;  ///< users who may not select from it
    QString storage;          ///< name of the SQLite table that holds its rows

    int columnIndex(const QString& columnName) const;  ///< -1 when there is none
};

}  // namespace engine

#pragma once

#include "engine/syntax/tokencursor.h"
#include "engine/values/sqltype.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace engine {

/// What the text of a CREATE TABLE, ALTER TABLE or CREATE INDEX statement says, before any name in it is
/// looked up. Names of constraints are empty where the server is to make one up.

struct DefaultDraft {
    QString name;
    QString text;    ///< in parentheses
    QString column;  ///< "DEFAULT x FOR column" of ALTER TABLE only
};

struct ColumnDraft {
    QString name;
    SqlType type;
    bool sysname = false;
    std::optional<bool> nullable;
    bool identity = false;
    qint64 identitySeed = 1;
    qint64 identityStep = 1;
    std::optional<DefaultDraft> defaultValue;
    QString computedText;     ///< of "name AS expression", in parentheses
    QString userType;         ///< a type name that is none of the server's own
    bool withValues = false;  ///< rows that exist get the default of a nullable column, too
};

struct KeyDraft {
    QString name;
    bool primary = false;
    std::optional<bool> clustered;
    QStringList columns;
};

struct CheckDraft {
    QString name;
    QString text;    ///< in parentheses
    QString column;  ///< the column it was written at; empty: at the table
};

struct ForeignKeyDraft {
    QString name;
    QStringList columns;
    ObjectName referenced;
    QStringList referencedColumns;  ///< empty: the primary key
    bool onColumn = false;
};

struct TableDraft {
    ObjectName name;
    std::vector<ColumnDraft> columns;
    std::vector<DefaultDraft> defaults;
    std::vector<KeyDraft> keys;
    std::vector<CheckDraft> checks;
    std::vector<ForeignKeyDraft> foreignKeys;
    bool checkExisting = true;   ///< ALTER TABLE without WITH NOCHECK
    std::optional<bool> enable;  ///< CHECK CONSTRAINT or NOCHECK CONSTRAINT
    QStringList constraints;     ///< of them; empty for all
    bool otherChange = false;    ///< ALTER TABLE with something else; its end was not looked for
};

struct IndexDraft {
    QString name;
    ObjectName table;
    bool unique = false;
    bool clustered = false;
    bool statistics = false;
    QStringList columns;
};

}  // namespace engine

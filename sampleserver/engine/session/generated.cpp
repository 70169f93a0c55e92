#include "engine/session/generated.h"

#include "engine/catalog/world.h"
#include "engine/session/scriptreader.h"
#include "engine/store/rowstore.h"
#include "engine/store/storage.h"

#include <QStringList>

#include <array>

namespace engine {

namespace {

/// Rows that are made one by one; longer tables repeat them under new keys.
constexpr qint64 distinctRows = 1024;

struct Family {
    const char* name;
    const char* declaration;
};

constexpr std::array<Family, 20> families{{
    {"Title", "nvarchar(40)"},  {"Amount", "money"},
    {"Stamp", "datetime"},      {"Code", "varchar(20)"},
    {"Rate", "decimal(12, 2)"}, {"Flag", "bit"},
    {"Weight", "float"},        {"Count", "int"},
    {"Kind", "char(8)"},        {"Guid", "uniqueidentifier"},
    {"Small", "smallint"},      {"Raw", "varbinary(16)"},
    {"Level", "tinyint"},       {"Ratio", "real"},
    {"Day", "smalldatetime"},   {"Mark", "nchar(6)"},
    {"Fee", "smallmoney"},      {"Share", "numeric(28, 6)"},
    {"Note", "ntext"},          {"Key", "binary(4)"},
}};

/// Scatters a number evenly over 64 bits, always the same way.
quint64 scattered(quint64 number) {
    number += 0x9e3779b97f4a7c15ULL;
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9ULL;
    number = (number ^ (number >> 27)) * 0x94d049bb133111ebULL;
    return number ^ (number >> 31);
}

QString decimalText(quint64 number, int scale) {
    QString digits = QString::number(number).rightJustified(scale + 1, QLatin1Char('0'));
    return digits.insert(digits.size() - scale, QLatin1Char('.'));
}

QByteArray scatteredBytes(quint64 number, int size) {
    QByteArray bytes;
    while (bytes.size() < size) {
        number = scattered(number);
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return bytes.left(size);
}

/// A value of the type, the same for the same number.
Value generatedValue(const SqlType& type, quint64 number) {
    constexpr qint64 firstDay = 90 * 365;  // days after 1900
    constexpr qint64 dayTicks = 24LL * 60 * 60 * 300;
    const auto below = [number](quint64 limit) { return static_cast<qint64>(number % limit); };
    switch (type.id) {
        case TypeId::Bit:
            return below(2);
        case TypeId::TinyInt:
            return below(256);
        case TypeId::SmallInt:
            return below(32768);
        case TypeId::Int:
            return below(1'000'000);
        case TypeId::Money:
        case TypeId::SmallMoney:
            return below(9'999'999) * 100;
        case TypeId::DateTime:
            return (firstDay + below(7300)) * dayTicks + static_cast<qint64>(number >> 32) % dayTicks;
        case TypeId::SmallDateTime:
            return (firstDay + below(7300)) * dayTicks;
        case TypeId::Decimal:
        case TypeId::Numeric:
            return decimalText(number % 1'000'000'000, type.scale);
        case TypeId::Float:
        case TypeId::Real:
            return static_cast<double>(below(1'000'000)) / 64.0;
        case TypeId::Char:
        case TypeId::NChar:
            return QString::number(below(100'000)).leftJustified(type.length);
        case TypeId::Binary:
        case TypeId::VarBinary:
            return scatteredBytes(number, type.length);
        case TypeId::UniqueIdentifier:
            return scatteredBytes(number, 16);
        default:
            return QStringLiteral("Text %1 größer").arg(below(1'000'000));
    }
}

QString tableName(int table) {
    return QStringLiteral("Table%1").arg(table + 1, 4, 10, QLatin1Char('0'));
}

/// Column 1 is the primary key, column 2 refers to the table before; every third table has an index, every
/// fourth a check.
QString tableScript(int table, int columns) {
    const QString name = tableName(table);
    QStringList lines{QStringLiteral("Id int NOT NULL CONSTRAINT PK_%1 PRIMARY KEY").arg(name)};
    if (columns > 1) {
        lines.append(table == 0 ? QStringLiteral("ParentId int NULL")
                                : QStringLiteral("ParentId int NULL CONSTRAINT FK_%1 REFERENCES %2 (Id)")
                                      .arg(name, tableName(table - 1)));
    }
    QString indexed;
    for (int column = 2; column < columns; ++column) {
        const Family& family = families[static_cast<size_t>(table + column) % families.size()];
        const QString columnName = QLatin1String(family.name) + QString::number(column + 1);
        lines.append(columnName + QLatin1Char(' ') + QLatin1String(family.declaration) +
                     (column % 3 == 0 ? QLatin1String(" NOT NULL") : QLatin1String(" NULL")));
        if (indexed.isEmpty() && QLatin1String(family.declaration) != QLatin1String("ntext"))
            indexed = columnName;
    }
    if (table % 4 == 0) lines.append(QStringLiteral("CONSTRAINT CK_%1 CHECK (Id > 0)").arg(name));
    QString script = QStringLiteral("CREATE TABLE %1 (%2)\n").arg(name, lines.join(QLatin1String(", ")));
    if (table % 3 == 0 && !indexed.isEmpty()) {
        script += QStringLiteral("CREATE INDEX IX_%1 ON %1 (%2, Id)\n").arg(name, indexed);
    }
    return script;
}

/// A table with its share of what is left to be given out.
QString detailsTableScript(int table, int& checks, int& indexRows, int& foreignKeys) {
    constexpr int columns = 10;
    constexpr int indexWidth = 4;
    const QString name = tableName(table);
    QStringList lines;
    for (int column = 1; column <= columns; ++column) {
        QString line = QStringLiteral("Part%1 int NOT NULL").arg(column);
        if (foreignKeys > 0) {
            line += QStringLiteral(" CONSTRAINT FK_%1_%2 REFERENCES %3 (Id)")
                        .arg(name, QString::number(column), tableName(0));
            --foreignKeys;
        }
        if (checks > 0) {
            line += QStringLiteral(" CONSTRAINT CK_%1_%2 CHECK (Part%2 >= 0)").arg(name).arg(column);
            --checks;
        }
        lines.append(line);
    }
    QString script = QStringLiteral("CREATE TABLE %1 (%2)\n").arg(name, lines.join(QLatin1String(", ")));
    for (int index = 1; index <= columns && indexRows > 0; ++index) {
        QStringList indexed;
        for (int i = 0; i < indexWidth && indexRows > 0; ++i, --indexRows)
            indexed.append(QStringLiteral("Part%1").arg((index + i) % columns + 1));
        script += QStringLiteral("CREATE INDEX IX_%1_%2 ON %1 (%3)\n")
                      .arg(name, QString::number(index), indexed.join(QLatin1String(", ")));
    }
    return script;
}

void appendDistinctRows(const Database& database, const Table& table, qint64 rows, quint64 seed) {
    RowAppender appender(database.keeper, table);
    std::vector<Value> row(table.columns.size());
    for (qint64 id = 1; id <= rows; ++id) {
        row[0] = id;
        for (size_t column = 1; column < row.size(); ++column) {
            const quint64 number = scattered(seed ^ (static_cast<quint64>(id) << 16) ^ column);
            const bool null = table.columns[column].nullable && number % 16 == 0;
            row[column] = null ? Value() : generatedValue(table.columns[column].type, number >> 8);
        }
        // A parent with a key that the table before surely has.
        if (row.size() > 1 && row[1].index() != 0) row[1] = 1 + std::get<qint64>(row[1]) % rows;
        appender.append(row);
    }
}

/// Fills a table by doubling what it holds, within the store: a million rows never pass through values.
void repeatRows(const Database& database, const Table& table, qint64 present, qint64 rows) {
    QByteArray others;
    for (size_t column = 1; column < table.columns.size(); ++column) {
        others += ", " + storageColumn(static_cast<int>(column)).toUtf8();
    }
    const QByteArray name = '"' + table.storage.toUtf8() + '"';
    while (present < rows) {
        executeStore(database.keeper, "INSERT INTO " + name + " SELECT c0 + " + QByteArray::number(present) +
                                          others + " FROM " + name + " WHERE c0 <= " +
                                          QByteArray::number(std::min(present, rows - present)));
        present = std::min(2 * present, rows);
    }
}

}  // namespace

void addLargeDatabase(World& world, const QString& name, int tables, int columns, qint64 rows) {
    Database& database = world.addDatabase(name);
    QString script =
        QStringLiteral("USE [%1]\n").arg(QString(name).replace(QLatin1Char(']'), QLatin1String("]]")));
    for (int table = 0; table < tables; ++table)
        script += tableScript(table, columns);
    runScript(world, script);

    StoreTransaction transaction(database.keeper);
    for (int i = 0; i < tables; ++i) {
        const Table& table = *database.findTable({}, tableName(i), QStringLiteral("dbo"));
        const qint64 made = std::min(rows, distinctRows);
        appendDistinctRows(database, table, made, static_cast<quint64>(i) << 48);
        repeatRows(database, table, made, rows);
    }
    transaction.commit();
}

void addDetailsDatabase(World& world, const QString& name, int checks, int indexRows, int foreignKeys) {
    world.addDatabase(name);
    const QString parent = tableName(0);
    QString script =
        QStringLiteral("USE [%1]\nCREATE TABLE %2 (Id int NOT NULL CONSTRAINT PK_%2 PRIMARY KEY)\n")
            .arg(name, parent);
    --indexRows;
    for (int table = 1; checks > 0 || indexRows > 0 || foreignKeys > 0; ++table)
        script += detailsTableScript(table, checks, indexRows, foreignKeys);
    runScript(world, script);
}

void addManyDatabases(World& world, int databases, int tables) {
    QString script;
    for (int i = 0; i < databases; ++i) {
        const QString name = QStringLiteral("Branch%1").arg(i + 1, 4, 10, QLatin1Char('0'));
        script += QStringLiteral("CREATE DATABASE %1\nGO\nUSE %1\nGO\n").arg(name);
        for (int table = 0; table < tables; ++table) {
            script +=
                QStringLiteral("CREATE TABLE %1 (Id int NOT NULL PRIMARY KEY, Title nvarchar(40) NULL)\n")
                    .arg(tableName(table));
        }
        script += QLatin1String("GO\n");
    }
    runScript(world, script);
}

}  // namespace engine

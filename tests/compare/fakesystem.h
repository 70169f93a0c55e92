#pragma once

#include "dbaccess/schemareader.h"

#include <QStringList>

#include <array>
#include <functional>
#include <vector>

/// A schema as the catalog routines list it.
struct FakeSchema {
    using Column = std::array<QString, 4>;
    using DetailRow = std::array<QString, 11>;
    struct FakeTable {
        QString name;
        std::vector<Column> columns;
    };

    std::vector<DetailRow> details;
    std::vector<FakeTable> tables;

    /// The columns of the first table of a name.
    std::vector<Column> columnsOf(const QString& table) const;
};

/// What happened to one side of a comparison or was told of it, in order.
using Log = QStringList;

/// A system whose schema is made up. Its readings are logged.
class FakeSystem : public tw::SchemaReader {
  public:
    FakeSystem(FakeSchema schema, QString table, int number, Log& log)
        : m_schema(std::move(schema)), m_table(std::move(table)), m_number(number), m_log(log) {}

    ~FakeSystem() override {
        if (m_followed) qFatal("The follower was not let go.");
    }

    /// After so many readings the connection is lost: each further one fails.
    void loseAfter(int readings) { m_readingsLeft = readings; }

    QString getDatabase() const override { return QStringLiteral("db%1").arg(m_number); }
    QString getTable() const override { return m_table; }
    void setTable(const QString& table) override { m_table = table; }
    bool FillCbTable(controls::ComboItems& combo, const QString& database) override;
    void FillLvTblDef(controls::ListItems& list, const QString& database, const QString& table) override;
    QString FillLvDBDetail(controls::ListItems& list, const QString& database) override;
    void setFollower(tw::RoutineFollower follower) override { m_followed = follower.goesOn != nullptr; }
    bool tellLostConnection() override { return m_readingsLeft < 0; }
    void expect(const QString&, const tw::ExpectedReading&) override {}
    void expectNothing() override {}

  private:
    bool reads(const QString& what);

    FakeSchema m_schema;
    QString m_table;
    int m_number;
    Log& m_log;
    int m_readingsLeft = 1000000;
    bool m_followed = false;
};

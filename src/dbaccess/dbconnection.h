#pragma once

#include "dbaccess/catalogreading.h"
#include "dbaccess/readahead.h"
#include "dbaccess/schemareader.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

#include <QString>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace controls {
class KeyedTexts;
class Nodes;
}  // namespace controls

namespace tw {

class ConnectionPool;

/// One server's connection settings, and every question that is put to its catalog.
///
/// It keeps no session for them: each routine opens its own connection on the stored connection string
/// (with ";Database=" and a name behind it where it works in one database), reads forward only, fills the
/// model it was given and lets the connection go; to the pool where there is one, whose connections are as
/// good as fresh. FillTvDB, which tries a login, always opens fresh ones and leaves none behind.
class DBConnection : public SchemaReader {
  public:
    explicit DBConnection(std::shared_ptr<ConnectionPool> pool = nullptr) : m_pool(std::move(pool)) {}

    void setServer(const QString& server) { m_server = server; }
    QString getServer() const { return m_server; }
    void setDatabase(const QString& database) { m_database = database; }
    QString getDatabase() const override { return m_database; }
    void setTable(const QString& table) override { m_table = table; }
    QString getTable() const override { return m_table; }
    void setUser(const QString& user) { m_user = user; }
    QString getUser() const { return m_user; }
    void setPassword(const QString& password) { m_password = password; }
    void setConnectionString(const QString& text) { m_connectionString = text; }
    QString getConnectionString() const { return m_connectionString; }
    void setDSN(bool usesDataSource) { m_dsn = usesDataSource; }
    bool getDSN() const { return m_dsn; }

    /// The connection object handed out to others: made, not opened, by the first call, the same afterwards.
    ado::Connection& getConnection();

    /// The first character in upper case, the rest unchanged.
    static QString Capitialize(const QString& text);
    static bool InCollection(const controls::KeyedTexts& collection, const QString& key);
    /// The text up to its first blank, in lower case: "int identity" gives "int".
    static QString GetTypeBaseName(const QString& text);
    static bool HasBlank(const QString& text);
    /// The name to show for the server behind an opened connection. A server on the user's own machine is
    /// its machine name with "(local)" behind it, however the string named it; a string without a server or
    /// a workstation gives the stored server name.
    QString GetServerName(const ado::Connection& connection) const;

    /// Fills `combo` with the user databases; true when the list is complete.
    bool FillCbDB(controls::ComboItems& combo);
    /// Fills `combo` with the user tables of a database; false when it could not be opened, which a message
    /// box has told when permission was lacking.
    bool FillCbTable(controls::ComboItems& combo, const QString& database) override;
    /// Fills `combo` with the columns of a table.
    void FillCbColumn(controls::ComboItems& combo, const QString& database, const QString& table);
    /// Rebuilds the tree of the server, its user databases and their user tables; false when the server
    /// could not be connected to.
    bool FillTvDB(controls::Nodes& tree);

    /// Fills `list` with the columns of a table: name, data type, whether it takes nulls, whether it refers
    /// to another table; picture 5 marks the columns of the primary key. The tree's marker texts leave it
    /// empty.
    void FillLvTblDef(controls::ListItems& list, const QString& database, const QString& table) override;
    /// Fills `keys` with the names of the table's primary-key columns, each under itself.
    bool FindTablePrimaryKey(const ado::Connection& connection, const QString& table,
                             controls::KeyedTexts& keys);
    /// Fills `keys` with "table.column" that a column refers to, under the column's name; a further reference
    /// of one column stands under the name with the row's number behind it.
    bool FindTableForeignKey(const ado::Connection& connection, const QString& table,
                             controls::KeyedTexts& keys);
    /// Fills `list` with the columns and the first rows of a table, at most `mostRows` (0: all), trying the
    /// database's users as owners when the bare name is refused. Gives the caption for the list, empty for
    /// the tree's marker texts and after a failure.
    QString FillLvTblData(controls::ListItems& list, const QString& database, const QString& table,
                          qint32 mostRows);
    /// Fills `list` with the check constraints, index columns and foreign keys of a database side by side.
    /// Gives the heading for the list, empty for the tree's marker text.
    QString FillLvDBDetail(controls::ListItems& list, const QString& database) override;

    bool tellLostConnection() override;
    void setFollower(RoutineFollower follower) override { m_follower = std::move(follower); }
    void expect(const QString& database, const ExpectedReading& expected) override;
    void expectNothing() override { m_ahead.reset(); }
    /// Reads ahead on at most so many connections at once; on none: it does not.
    void setMostReaders(int readers) { m_mostReaders = readers; }

    /// Runs a statement in a database, without a limit to rows or time, and hands out its rows, which keep
    /// their connection open; nothing when it failed, which has been reported with both texts.
    std::optional<ado::Recordset> ExecuteQuery(const QString& database, const QString& query);

  private:
    /// Runs the body of a routine; a failure is reported under the routine's name.
    void runRoutine(const QString& name, const std::function<void()>& body);
    /// For one statement on the server, or in one of its databases.
    CatalogReading reading(const QString& statement) const;
    CatalogReading reading(const QString& database, const QString& statement) const;
    CatalogReading reading(const ReadAhead::Request& request) const;
    static ReadAhead::Request definitionRequest(const QString& connectionString, const QString& table);
    static QStringList detailStatements();

    /// Whether the follower, if there is one, wants the rest of a routine; of one that has lost its
    /// connection, which has been told, he does not.
    bool goesOn() const { return !m_follower.goesOn || (!m_connectionLost && m_follower.goesOn()); }
    bool openUnlessRefused(CatalogReading& reading);

    std::shared_ptr<ConnectionPool> m_pool;
    int m_mostReaders = ReadAhead::MostReaders;
    std::unique_ptr<ReadAhead> m_ahead;
    RoutineFollower m_follower;
    bool m_connectionLost = false;    ///< by the last routine
    std::exception_ptr m_untoldLoss;  ///< what it kept to itself of that
    std::optional<ado::Connection> m_connection;
    bool m_dsn = false;
    QString m_user;
    QString m_table;
    QString m_server;
    QString m_password;
    QString m_database;
    QString m_connectionString;
};

}  // namespace tw

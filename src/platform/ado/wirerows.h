#pragma once

#include "platform/ado/driverconnection.h"
#include "platform/ado/rowsource.h"

#include <QStringList>

#include <memory>

namespace ado {

/// Rows of a statement's current result as they come from the server, some at a time.
class WireRows {
  public:
    explicit WireRows(odbc::SharedStatement statement) : m_statement(std::move(statement)) {}
    virtual ~WireRows() = default;

    /// Waits for the wire: gets the next rows, when those it got before have all been taken. Behind the last
    /// row the statement's further results are read for the errors in them. Throws Error; the statement is of
    /// no use then.
    virtual void fetch() = 0;
    /// Fills one cell per column with the next row that was fetched; what they point at stays until the next
    /// call. False when there is none left.
    virtual bool take(std::vector<Cell>& row) = 0;

    /// Whether no row will be fetched any more.
    bool isAtEnd() const { return m_atEnd; }
    const odbc::SharedStatement& sharedStatement() const { return m_statement; }

  protected:
    SQLHSTMT statement() const { return m_statement->get(); }
    const odbc::StatementHandle& handle() const { return *m_statement; }
    /// Reads the statement's further results. Throws the error of one.
    void finish();

  private:
    odbc::SharedStatement m_statement;
    bool m_atEnd = false;
};

/// The `count` columns of a statement's current result. Given names, in any case of letters: those with one
/// of them, the first of each, and the driver is asked for no column behind the last of them; all columns
/// when there are none of these names.
std::vector<Column> describeColumns(const odbc::StatementHandle& statement, int count,
                                    const QStringList& names = {});

/// The rows of a statement's current result: in blocks where every column is bounded in size, else each value
/// in pieces. `most` is the number of rows that can come, 0 when unknown.
std::unique_ptr<WireRows> makeWireRows(odbc::SharedStatement statement, const std::vector<Column>& columns,
                                       qint64 most);

/// Rows from the wire one after the other, each turn on it within `seconds` (0: without limit). Its end stops
/// a statement that is not read to the end by a cancel to the server.
class FetchedRows final : public RowSource {
  public:
    FetchedRows(std::shared_ptr<DriverConnection> link, int seconds, std::shared_ptr<WireRows> rows)
        : m_link(std::move(link)), m_seconds(seconds), m_rows(std::move(rows)) {}
    ~FetchedRows() override;
    bool next(std::vector<Cell>& row) override;

  private:
    std::shared_ptr<DriverConnection> m_link;
    int m_seconds;
    std::shared_ptr<WireRows> m_rows;
};

/// The driver's form of a column's values (SQL_C_...).
SQLSMALLINT wireType(FieldType type);

}  // namespace ado

#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace bench {

/// The environment that a program's ODBC connections share.
class BareEnvironment {
  public:
    BareEnvironment();
    ~BareEnvironment();
    BareEnvironment(const BareEnvironment&) = delete;
    BareEnvironment& operator=(const BareEnvironment&) = delete;

    void* handle() const { return m_handle; }

  private:
    void* m_handle = nullptr;
};

/// The yardstick: the ODBC calls that a C program would make for the same rows, texts made and nothing kept.
class BareConnection {
  public:
    /// Ends the program with the driver's words when the connection cannot be had.
    BareConnection(const BareEnvironment& environment, const QString& connectionString);
    ~BareConnection();
    BareConnection(const BareConnection&) = delete;
    BareConnection& operator=(const BareConnection&) = delete;

    /// Runs a statement and makes the text of its first column row by row; returns them when `keep` is set.
    /// `rows` is increased by the number of rows.
    QStringList firstColumn(const QString& statement, bool keep, qint64* rows);
    /// Runs a statement and makes the texts of these columns (from 1, ascending) row by row; returns how many
    /// rows there were. Texts end at 255 units.
    qint64 readColumns(const QString& statement, const std::vector<int>& columns);
    void* handle() const { return m_connection; }

  private:
    void* m_connection = nullptr;
};

}  // namespace bench

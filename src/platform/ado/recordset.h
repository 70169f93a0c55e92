#pragma once

#include "platform/ado/field.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace ado {

class Connection;
class RecordsetImpl;

enum class CursorType { ForwardOnly = 0 };
enum class LockType { Unspecified = -1, ReadOnly = 1 };
enum class CommandType { Text = 1, Table = 2 };

/// The rows of one statement, read forward only, a block at a time. It keeps its connection open. Calls that
/// need an open record set throw Error 3704 on a closed one.
class Recordset {
  public:
    Recordset();
    ~Recordset();
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;

    /// Rows the server may send; 0 for all. Applied by the server; must be set before Open().
    qint64 MaxRecords() const;
    void setMaxRecords(qint64 rows);

    /// Names of the fields that there will be, in any case of letters; the statement's other columns are
    /// passed over, which saves the driver their conversion. All when it is empty, or when the statement has
    /// none of them. Must be set before Open().
    void setFields(const QStringList& names);

    /// Runs a statement (or reads a table, named as in a FROM clause) and stands on its first row. A
    /// statement that returns no columns leaves a record set without fields, at its end; of several results
    /// the first with columns counts. Throws Error.
    ///
    /// Another record set that is still being read on the same connection is read to its end into memory
    /// first, since the wire carries one result at a time.
    void Open(const QString& source, const Connection& connection,
              CursorType cursor = CursorType::ForwardOnly, LockType lock = LockType::ReadOnly,
              CommandType command = CommandType::Text);
    void Close();
    bool isOpen() const;
    /// Reads the rest of the rows into memory and lets go of the connection, so that they can be handed to
    /// another thread. Throws Error; the record set is closed then.
    void detach();

    /// True behind the last row (the property named EOF; the C library's macro of that name keeps it from
    /// being spelled so here).
    bool Eof() const;
    /// To the first row. On a forward-only record set it is legal only before the first MoveNext().
    /// Throws Error 3021 when there is no row, 3219 later on.
    void MoveFirst();
    /// To the next row. Throws Error: 3021 at the end, or what the driver says; an error in a later result of
    /// the statement comes when the rows end. The record set is at its end then.
    void MoveNext();

    /// Fields of the current row, left to right.
    int FieldCount() const;
    const Field& Fields(int index) const;
    /// By name without regard to case; throws Error 3265 when there is none, 3021 when there is no row.
    const Field& Fields(const QString& name) const;

  private:
    std::unique_ptr<RecordsetImpl> m_impl;
};

}  // namespace ado

#pragma once

#include "platform/controls/gridrows.h"

#include <QObject>

namespace desktop {

/// Runs a statement and keeps its result for the grid that is bound to it.
///
/// Every Refresh() has a connection of its own, so that what a statement does to its session ends with it.
class DataControl : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    void setConnectionString(const QString& text) { m_connectionString = text; }
    /// The statement.
    void setRecordSource(const QString& text) { m_recordSource = text; }
    /// Rows that the server may send; 0 for all.
    void setMaxRecords(qint32 rows) { m_maxRecords = rows; }
    /// Seconds to wait for the server's next word before a statement is given up; 0 waits without limit.
    void setCommandTimeout(qint32 seconds) { m_commandTimeout = seconds; }

    /// Runs the statement and takes over its result, the first one with columns; a statement that returns
    /// none leaves no columns and no rows. The result so far stays until all rows of the new one have come.
    ///
    /// A failure is shown in a message box with the provider's own words, and thrown on when that has been
    /// closed: platform::RuntimeError. The control may have been destroyed meanwhile.
    void Refresh();

    /// The result; it lives as long as the control.
    controls::GridRows& rows() { return m_rows; }
    int recordCount() const { return m_rows.rowCount(); }

  private:
    void read();

    QString m_connectionString;
    QString m_recordSource;
    qint32 m_maxRecords = 0;
    qint32 m_commandTimeout = 30;
    controls::GridRows m_rows;
};

}  // namespace desktop

#pragma once

#include "platform/ado/answers.h"
#include "platform/ado/driverconnection.h"
#include "platform/ado/rowsource.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace ado::detail {

/// Error 3705: a connection or a record set is open already.
[[noreturn]] void throwOpen();

/// A record set as its session sees it.
class Reader {
  public:
    /// The wire is wanted for another statement: keep the rest of the rows in memory.
    virtual void readAhead() = 0;
    /// The connection was closed under it.
    virtual void connectionClosed() = 0;

  protected:
    ~Reader() = default;
};

/// The state that the copies of a Connection and its record sets share.
class Session {
  public:
    QString connectionText;  ///< as it was set
    int connectionTimeout = 15;
    int commandTimeout = 30;

    Session() = default;
    /// One that is never opened: each statement is answered once, with what another session was told.
    explicit Session(Answers answers) : m_answers(std::move(answers)) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void open(const QString& user, const QString& password);
    void close();
    bool isOpen() const { return m_link && !m_link->isGivenUp(); }
    /// What an opened connection says of itself.
    QString visibleText() const { return isOpen() ? m_openedText : connectionText; }

    /// The first result of a statement that has columns; neither columns nor rows when there is none.
    struct Result {
        std::vector<Column> columns;
        std::unique_ptr<RowSource> rows;
    };
    /// Runs a statement with a limit to its rows, 0 for none. Of the columns those with the wanted names are
    /// read, all when none are named.
    Result run(const QString& text, qint64 rowLimit, const QStringList& wanted);

    /// What is known of a statement already.
    std::optional<Answer> takeAnswer(const QString& text);

    void add(Reader& reader) { m_readers.push_back(&reader); }
    void remove(Reader& reader);
    void noteFailure() { m_failed = true; }
    bool hasFailed() const { return m_failed; }
    /// Who reads rows from the wire now; null when nobody does.
    void setWireReader(Reader* reader) { m_wireReader = reader; }
    void endWireReader(Reader& reader);

  private:
    Result runStatement(const QString& text, qint64 rowLimit, const QStringList& wanted);
    Result execute(const QString& text, qint64 rowLimit, const QStringList& wanted) const;
    void limitRows(qint64 rows);

    Answers m_answers;
    QString m_openedText;
    std::shared_ptr<DriverConnection> m_link;
    std::vector<Reader*> m_readers;
    Reader* m_wireReader = nullptr;
    qint64 m_rowLimit = 0;  ///< that the server holds for this connection
    bool m_failed = false;  ///< since it was opened
};

}  // namespace ado::detail

#pragma once

#include "engine/values/sqlerror.h"
#include "engine/values/sqltype.h"

#include <QString>

#include <span>
#include <vector>

namespace engine {

/// A column of a result as its client is told of it.
struct ResultColumn {
    QString name;  ///< empty for an unnamed expression
    SqlType type;
    bool nullable = true;
    bool identity = false;
};

/// A value that a procedure is called with or gives back.
struct Parameter {
    QString name{};  ///< with its @, empty when positional
    SqlType type;
    Value value;
    bool output = false;
};

/// Takes what a batch produces, in order. Called on the session's own thread. A statement that fails tells
/// message() and then statementDone(), with the rows that came before the failure.
class ResultSink {
  public:
    virtual ~ResultSink() = default;

    /// A result set begins.
    virtual void columns(const std::vector<ResultColumn>& columns) = 0;
    /// One row of the result set that was begun last.
    virtual void row(std::span<const Value> values) = 0;
    /// A statement ended. `rows` is the number of rows it returned, or -1 for a statement without a count;
    /// `hadColumns` says whether columns() came before it.
    virtual void statementDone(qint64 rows, bool hadColumns) = 0;
    /// Error or information.
    virtual void message(const SqlMessage& message) = 0;
    /// A procedure gives a value back; `position` is that of the parameter, from 0.
    virtual void returnValue(int /*position*/, const Parameter& /*value*/) {}
    /// USE took effect.
    virtual void databaseChanged(const QString& oldName, const QString& newName) = 0;
    /// Asked between rows and while waiting: true once the client has sent an attention or has gone.
    virtual bool cancelled() = 0;
};

}  // namespace engine

#pragma once

#include "engine/session/batchbound.h"
#include "engine/session/sessionstate.h"
#include "engine/syntax/ast.h"

namespace engine {

/// Runs the statements of one batch.
class BatchRunner {
  public:
    BatchRunner(SessionState& state, ResultSink& sink)
        : m_state(state),
          m_facts(state.facts),
          m_options(state.options),
          m_store(state.store),
          m_bound(state.limits),
          m_sink(sink) {}

    /// Never throws: what fails is told to the sink.
    void run(const QString& batch);
    /// Runs a procedure that is called by its client, on the same terms.
    void call(const ProcedureRequest& request);

  private:
    /// Does what a client asked for, watched and with failures told.
    void guard(const std::function<void()>& work);
    void runText(const QString& batch);
    /// Runs one statement; false when the batch ends with it.
    bool runStatement(const ast::Statement& statement);
    void fail(const SqlMessage& message);
    void done(qint64 rows, bool hadColumns);

    void run(const ast::Select& statement);
    void run(const ast::Use& statement);
    void run(const ast::SetOption& statement);
    void run(const ast::SetVariable& statement);
    void run(const ast::Declare& statement);
    void run(const ast::Execute& statement);
    void run(const ast::WaitFor& statement);
    void run(const ast::Print& statement);
    void run(const ast::Transaction& statement);
    void run(const ast::Refused& statement);
    void run(const ast::If& statement);

    // Calls (procedurecalls.cpp)
    void callProcedure(const ast::Path& path, const std::vector<Parameter>& parameters);
    bool callStatement(const QString& name, const std::vector<Parameter>& parameters);
    void runPrepared(const PreparedStatement& statement, std::span<const Parameter> values,
                     int firstPosition);
    void describe(const PreparedStatement& statement);
    qint64 keep(PreparedStatement statement);

    void setSwitch(const QString& option, bool on);
    void setValue(const QString& option, const ast::SetOption& statement);
    TypedValue& variable(const QString& name);
    TypedValue value(const ast::Expr& expr);

    SessionState& m_state;
    SessionFacts& m_facts;
    SessionOptions& m_options;
    StoreConnection& m_store;
    BatchBound m_bound;
    ResultSink& m_sink;
    bool m_selectsOnly = false;  // nothing else of the batch is run
    bool m_hadColumns = false;   // of the statement at work
    qint64 m_rows = 0;
};

}  // namespace engine

#pragma once

#include "engine/catalog/sessionfacts.h"
#include "engine/session/batchbound.h"
#include "engine/session/session.h"
#include "engine/store/storeconnection.h"
#include "engine/syntax/ast.h"

namespace engine {

/// Options that a client sets and that stay until it sets them anew.
struct SessionOptions {
    qint64 rowLimit = 0;  ///< SET ROWCOUNT; 0 for all
    bool noCount = false;
    bool columnsOnly = false;  ///< SET FMTONLY
    bool quotedIdentifiers = true;
};

/// Runs the statements of one batch.
class BatchRunner {
  public:
    BatchRunner(SessionFacts& facts, SessionOptions& options, StoreConnection& store,
                const QueryLimits& limits, ResultSink& sink)
        : m_facts(facts), m_options(options), m_store(store), m_bound(limits), m_sink(sink) {}

    /// Never throws: what fails is told to the sink.
    void run(const QString& batch);

  private:
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

    void setSwitch(const QString& option, bool on);
    BatchVariable& variable(const QString& name);
    BatchVariable evaluate(const ast::Expr& expr);

    SessionFacts& m_facts;
    SessionOptions& m_options;
    StoreConnection& m_store;
    BatchBound m_bound;
    ResultSink& m_sink;
    bool m_hadColumns = false;  // of the statement at work
    qint64 m_rows = 0;
};

}  // namespace engine

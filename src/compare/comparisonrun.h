#pragma once

#include "compare/comparison.h"
#include "compare/comparisonprogress.h"
#include "compare/comparisonreport.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/hourglass.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace tw {

struct AppState;
class DBConnection;
class frmCompareProgress;

/// One comparison with all that it works on: connection objects, options, result lists. The result window
/// holds it, and so does whoever runs it, since the window may be closed, and go, while it runs.
class ComparisonRun final : private ComparisonProgress {
  public:
    /// `state` must outlive the comparison; `yield` serves events.
    ComparisonRun(AppState& state, std::function<void()> yield);
    ~ComparisonRun() override;

    std::shared_ptr<DBConnection> connection1;
    std::shared_ptr<DBConnection> connection2;
    ComparedKinds kinds;
    controls::ListItems results1;
    controls::ListItems results2;

    /// What was compared and found, to be written; good as long as this object lives and does not run.
    const ComparisonReport& report() const { return m_report; }
    /// How the comparison stands, in words: what was counted, and whether it came to its end.
    QString statusText() const;

    /// Compares, until the end or until it is cancelled by whichever way. The progress window becomes a child
    /// of `resultWindow`, which may go meanwhile; this object must be held by the caller.
    void run(QWidget& resultWindow, const QString& caption1, const QString& caption2);
    /// Cancels this comparison alone, as its window goes, and closes its progress window.
    void abandon();
    void keepProgressInView();

  private:
    void begin() override;
    void SetNumberNeed(qint32 expectedItems) override;
    void InitFormLables(const QString& system1, const QString& system2) override;
    void UpdateForm(ComparedState state, const QString& item) override;
    void cancel() override;
    bool isCancelled();

    AppState& m_state;
    std::function<void()> m_yield;
    QPointer<QWidget> m_resultWindow;
    QPointer<frmCompareProgress> m_progress;
    std::optional<desktop::Hourglass> m_pointer;  ///< until the progress window shows
    bool m_begun = false;
    bool m_cancelled = false;
    ComparisonReport m_report;
};

}  // namespace tw

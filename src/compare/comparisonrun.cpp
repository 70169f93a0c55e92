#include "compare/comparisonrun.h"

#include "compare/frmcompareprogress.h"
#include "dbaccess/dbconnection.h"
#include "shell/core/appstate.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QWidget>

namespace tw {

namespace {

ComparisonReport::System systemOf(const DBConnection& connection, const controls::ListItems& results) {
    return {connection.getServer(), connection.getDatabase(), connection.getTable(), &results};
}

}  // namespace

ComparisonRun::ComparisonRun(AppState& state, std::function<void()> yield)
    : connection1(std::make_shared<DBConnection>(state.connectionPool)),
      connection2(std::make_shared<DBConnection>(state.connectionPool)),
      m_state(state),
      m_yield(std::move(yield)) {}

ComparisonRun::~ComparisonRun() = default;

void ComparisonRun::run(QWidget& resultWindow, const QString& caption1, const QString& caption2) {
    m_resultWindow = &resultWindow;
    m_pointer.emplace();
    const auto end = qScopeGuard([this] {
        m_pointer.reset();
        if (m_progress) m_progress->end();
    });
    m_report.systems = {systemOf(*connection1, results1), systemOf(*connection2, results2)};
    m_report.kinds = kinds;
    m_report.begun = QDateTime::currentDateTimeUtc();
    QElapsedTimer clock;
    clock.start();
    Comparison comparison({*connection1, results1, caption1}, {*connection2, results2, caption2}, kinds,
                          *this, m_yield, [this] { return isCancelled(); });
    m_report.completeness = comparison.run();
    m_report.unread = comparison.unread();
    m_report.milliseconds = clock.elapsed();
}

void ComparisonRun::abandon() {
    m_cancelled = true;
    if (!m_progress) return;
    m_progress->end();
    m_progress->close();
}

void ComparisonRun::keepProgressInView() {
    if (m_progress) m_progress->keepInView();
}

/// Kept once it is so: the next comparison to start clears the shared flag. Until this one has a progress
/// window, which does so, the flag is that of an earlier one.
bool ComparisonRun::isCancelled() {
    m_cancelled = m_cancelled || (m_begun && m_state.cancelled) || (m_progress && m_progress->isCancelled());
    return m_cancelled;
}

void ComparisonRun::begin() {
    // Message boxes may have been open before, and the window closed under them.
    m_pointer.reset();
    if (m_cancelled || !m_resultWindow) return;
    m_progress = new frmCompareProgress(m_state, m_resultWindow);
    m_begun = true;
    m_progress->begin();
}

void ComparisonRun::SetNumberNeed(qint32 expectedItems) {
    if (m_progress) m_progress->SetNumberNeed(expectedItems);
}

void ComparisonRun::InitFormLables(const QString& system1, const QString& system2) {
    if (m_progress) m_progress->InitFormLables(system1, system2);
}

void ComparisonRun::UpdateForm(ComparedState state, const QString& item) {
    if (state == ComparedState::Matched) ++m_report.matched;
    if (state == ComparedState::Unmatched) ++m_report.unmatched;
    if (m_progress) m_progress->UpdateForm(state, item);
}

QString ComparisonRun::statusText() const {
    return QStringLiteral("Matched: %1    Unmatched: %2    %3")
        .arg(m_report.matched)
        .arg(m_report.unmatched)
        .arg(completenessText(m_report.completeness));
}

void ComparisonRun::cancel() {
    m_cancelled = true;
    if (m_progress) m_progress->cancel();
}

}  // namespace tw

#pragma once

#include "compare/comparisonprogress.h"

#include <QElapsedTimer>

namespace comparetool {

/// Counts what a comparison finds, and tells it on one line of the standard error where that is a terminal.
class TerminalProgress final : public tw::ComparisonProgress {
  public:
    TerminalProgress();

    qint64 matched() const { return m_matched; }
    qint64 unmatched() const { return m_unmatched; }
    bool isCancelled() const { return m_cancelled; }
    /// Takes the line away, so that something else can be written.
    void clear();

    void begin() override {}
    void SetNumberNeed(qint32 expectedItems) override { m_expected = expectedItems; }
    void InitFormLables(const QString&, const QString&) override {}
    void UpdateForm(tw::ComparedState state, const QString& item) override;
    void cancel() override { m_cancelled = true; }

  private:
    bool m_onTerminal;
    bool m_shown = false;
    bool m_cancelled = false;
    QElapsedTimer m_sinceShown;
    qint64 m_expected = 0;
    qint64 m_processed = 0;
    qint64 m_matched = 0;
    qint64 m_unmatched = 0;
};

}  // namespace comparetool

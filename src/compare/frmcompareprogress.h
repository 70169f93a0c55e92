#pragma once

#include "compare/comparisonprogress.h"

#include <QDialog>

class QBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;

namespace desktop {
class TitleLabel;
}

namespace tw {

struct AppState;

/// The window that shows how far one comparison is and whose button cancels it; not modal. Belongs to the
/// result window. Made anew for each comparison, which clears the shared cancel flag.
class frmCompareProgress : public QDialog {
    Q_OBJECT

  public:
    /// `state` must outlive the window; `result` is what it stays in front of.
    frmCompareProgress(AppState& state, QWidget* result);

    void begin();
    void SetNumberNeed(qint32 expectedItems);
    void InitFormLables(const QString& system1, const QString& system2);
    /// Sets texts, which are painted when events are served.
    void UpdateForm(ComparedState state, const QString& item);
    void cancel();

    /// Whether its own comparison was cancelled here, by the button or by closing the window. Stays true when
    /// the next comparison clears the shared flag.
    bool isCancelled() const { return m_cancelled; }
    /// The comparison has returned: unless it has finished it was cancelled, and the window says so.
    void end();
    /// Comes back in front of the frame; the focus stays where it is.
    void keepInView();

    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void makeControls();
    void addCaptions(QBoxLayout& column);
    void addCounters(QBoxLayout& column);
    void Form_Load();
    void cmdClose_Click();
    void count(ComparedState state);
    void showEnd(const QString& text);
    void showCounts(int progress);

    AppState& m_state;
    qint32 m_numberNeed = 0;
    qint32 m_matched = 0;
    qint32 m_unmatched = 0;
    qint32 m_processed = 0;
    bool m_cancelled = false;
    bool m_over = false;

    QLabel* lblProgress;
    desktop::TitleLabel* lblCompareItem;
    desktop::TitleLabel* lblSystem1;
    desktop::TitleLabel* lblSystem2;
    QLabel* lblNumMatch;
    QLabel* lblNumUnmatch;
    QLabel* lblPercentMatch;
    QLabel* lblPercentUnmatch;
    QProgressBar* ProgressBar1;
    QPushButton* cmdClose;
};

}  // namespace tw

#pragma once

#include "platform/runtimeerror.h"

#include <QObject>

namespace desktop {

/// The end of the program in order, whatever runs or is open. The windows are closed without a question,
/// message boxes and dialogs first; nothing opens any more, and the event loop quits, also one that only
/// starts later. Failures while ending are written to the standard error stream and change nothing but the
/// exit code.
///
/// An unhandled failure ends here too, after a message box "Run-time error 'N':" with the description. Takes
/// the unhandled failures from its making to its destruction.
class ProgramEnd : public QObject {
    Q_OBJECT

  public:
    explicit ProgramEnd(QObject* parent = nullptr);
    ~ProgramEnd() override;

    /// Shows the failure and ends the program; returns to the caller.
    void end(const platform::RuntimeError& error);
    /// Ends the program because it is asked to; returns to the caller.
    void end();
    bool isEnding() const { return m_ending; }
    /// 1 after an unhandled failure, else 0.
    int exitCode() const { return m_exitCode; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void closeWindows();

    bool m_ending = false;
    bool m_closing = false;
    int m_exitCode = 0;
};

}  // namespace desktop

#pragma once

#include "platform/runtimeerror.h"

#include <QObject>

namespace desktop {

/// Where an unhandled failure ends: a message box "Run-time error 'N':" with the description, then the end of
/// the program in order. The windows are closed without a question, nothing opens any more, and the event
/// loop quits with code 1, also one that only starts later. Failures while ending are written to the standard
/// error stream and change nothing.
///
/// Takes the unhandled failures from its making to its destruction.
class ProgramEnd : public QObject {
    Q_OBJECT

  public:
    explicit ProgramEnd(QObject* parent = nullptr);
    ~ProgramEnd() override;

    /// Shows the failure and ends the program; returns to the caller.
    void end(const platform::RuntimeError& error);
    bool isEnding() const { return m_ending; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void closeWindows();

    bool m_ending = false;
    bool m_closing = false;
};

}  // namespace desktop

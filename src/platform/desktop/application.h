#pragma once

#include "platform/desktop/endsignals.h"
#include "platform/desktop/programend.h"
#include "platform/desktop/waitingwindows.h"

#include <QApplication>

namespace desktop {

/// The application object of a program with windows: message boxes and file dialogs show on the screen, and
/// windows stay alive while the wire is waited for, and an unhandled failure or a signal that asks the
/// program to end ends it in order. Its colours can be read, and Shift+F10 opens context menus.
class Application : public QApplication {
    Q_OBJECT

  public:
    Application(int& argc, char** argv);

    /// Serves events until the program ends; its exit code, 1 after an unhandled failure.
    int run();
    /// The last net below handlers that run without a guard.
    bool notify(QObject* receiver, QEvent* event) override;

  protected:
    bool event(QEvent* event) override;

  private:
    void makeLegible();

    ProgramEnd m_end;
    EndSignals m_endSignals;
    WaitingWindows m_waitingWindows;
};

}  // namespace desktop

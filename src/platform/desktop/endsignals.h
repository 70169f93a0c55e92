#pragma once

#include <QObject>

#include <memory>

namespace desktop {

/// Hears the signals by which a system, a terminal or another program asks this one to end: SIGTERM, SIGINT
/// and SIGHUP. A signal that was ignored when the program began, as nohup arranges it, stays ignored. Does
/// nothing where there are no such signals.
///
/// The signals are heard from its making to its destruction; there may be one at a time.
class EndSignals : public QObject {
    Q_OBJECT

  public:
    explicit EndSignals(QObject* parent = nullptr);
    ~EndSignals() override;

  Q_SIGNALS:
    /// One has come. Sent from the event loop, also from one that runs inside a routine.
    void received();

  private:
    struct Handlers;
    std::unique_ptr<Handlers> m_handlers;
};

}  // namespace desktop

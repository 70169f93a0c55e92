#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

class QSocketNotifier;

namespace sampleserver {

/// Ends the application's event loop when the user or the system asks for it (SIGINT, SIGTERM) and, if told
/// so, when the standard input closes. At most one stands at a time.
class EndWatch : public QObject {
  public:
    explicit EndWatch(bool watchInput);
    ~EndWatch() override;

  private:
    void watchStandardInput();

    QTimer m_signals;
    std::unique_ptr<QSocketNotifier> m_input;
};

}  // namespace sampleserver

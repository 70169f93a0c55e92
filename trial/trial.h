#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

namespace trial {

/// A sample server, and Tablewright beside it. The server ends with the program. Should this process be
/// killed, the server ends too, since it watches its standard input.
class Trial : public QObject {
    Q_OBJECT

  public:
    /// Paths of the two programs.
    Trial(const QString& server, const QString& program);
    ~Trial() override;

    /// Starts the server and, once that listens, the program.
    void start();
    bool isProgramRunning() const { return m_program.state() != QProcess::NotRunning; }

  Q_SIGNALS:
    /// `server` is the name to type into the connection dialog: "127.0.0.1,1433".
    void listening(const QString& server);
    /// A program did not start, or the server ended by itself; `why` is a text for the user.
    void failed(const QString& why);
    /// The program has ended, and the server after it.
    void ended(int exitCode);

  private:
    void readAnnouncement();
    void reportServer();
    void reportProgram(QProcess::ProcessError error);
    void endServer();
    void end(int exitCode, QProcess::ExitStatus status);

    QProcess m_server;
    QProcess m_program;
    bool m_listening = false;
};

}  // namespace trial

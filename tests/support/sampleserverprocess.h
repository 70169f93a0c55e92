#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace testsupport {

/// A connection string for a server as a user types it.
inline QString connectionString(const QString& server, const QString& user = QStringLiteral("sa"),
                                const QString& password = {}) {
    return QStringLiteral("driver={SQL Server};server=%1;uid=%2;pwd=%3").arg(server, user, password);
}

/// A sample server of the build, running as a process of its own on a free loopback port for as long as this
/// object lives. It ends with the test program, however that ends, since it watches its standard input.
class SampleServerProcess {
  public:
    SampleServerProcess() = default;
    ~SampleServerProcess();
    SampleServerProcess(const SampleServerProcess&) = delete;
    SampleServerProcess& operator=(const SampleServerProcess&) = delete;

    /// The program's path.
    static QString program();

    /// Starts the server with `arguments` besides the port and waits until it listens, `milliseconds` at
    /// most. False when it did not get that far; errorText() then says why.
    bool start(const QStringList& arguments = {}, int milliseconds = 30000);

    /// Lets it end in order and returns its exit code, -1 when it had to be killed or crashed.
    int stop();
    /// Ends it at once, as when a server's machine loses power.
    void kill();

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// The port it listens on, 0 before start().
    quint16 port() const { return m_port; }
    /// The server as a user types it: "127.0.0.1,1433".
    QString serverText() const;
    /// For this server.
    QString connectionString(const QString& user = QStringLiteral("sa"), const QString& password = {}) const {
        return testsupport::connectionString(serverText(), user, password);
    }
    /// What it wrote to its standard error.
    QString errorText();

  private:
    QProcess m_process;
    quint16 m_port = 0;
    QString m_errors;
};

/// One that runs from the start; a test without it makes no sense.
class RunningSampleServer : public SampleServerProcess {
  public:
    explicit RunningSampleServer(const QStringList& arguments = {}) {
        if (!start(arguments)) qFatal("%s", qUtf8Printable(errorText()));
    }
};

}  // namespace testsupport

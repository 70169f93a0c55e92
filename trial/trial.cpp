#include "trial/trial.h"

namespace trial {

namespace {

constexpr int EndMilliseconds = 5000;

}  // namespace

Trial::Trial(const QString& server, const QString& program) {
    m_server.setProgram(server);
    m_server.setArguments({QStringLiteral("--port"), QStringLiteral("1433"),
                           QStringLiteral("--next-free-port"), QStringLiteral("--stay-with-stdin")});
    m_program.setProgram(program);
    m_program.setProcessChannelMode(QProcess::ForwardedChannels);
    m_program.setInputChannelMode(QProcess::ForwardedInputChannel);

    connect(&m_server, &QProcess::readyReadStandardOutput, this, &Trial::readAnnouncement);
    connect(&m_server, &QProcess::finished, this, &Trial::reportServer);
    connect(&m_server, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) reportServer();
    });
    connect(&m_program, &QProcess::errorOccurred, this, &Trial::reportProgram);
    connect(&m_program, &QProcess::finished, this, &Trial::end);
}

Trial::~Trial() {
    m_program.disconnect(this);
    endServer();
}

void Trial::start() {
    m_server.start();
}

void Trial::readAnnouncement() {
    if (m_listening || !m_server.canReadLine()) return;
    const QString line = QString::fromUtf8(m_server.readLine()).trimmed();
    const QString announced = QStringLiteral("listening on ");
    if (!line.startsWith(announced)) return;
    m_listening = true;
    Q_EMIT listening(line.mid(announced.size()));
    m_program.start();
}

void Trial::reportServer() {
    const QString own = QString::fromUtf8(m_server.readAllStandardError()).trimmed();
    const QString happened = m_listening ? QStringLiteral("The sample server has ended.")
                                         : QStringLiteral("The sample server did not start.");
    const QString reason = own.isEmpty() ? m_server.errorString() : own;
    m_listening = false;
    Q_EMIT failed(QStringLiteral("%1\n\n%2").arg(happened, reason));
}

void Trial::reportProgram(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    endServer();
    Q_EMIT failed(QStringLiteral("Tablewright did not start.\n\n%1").arg(m_program.errorString()));
}

void Trial::endServer() {
    m_server.disconnect(this);
    if (m_server.state() == QProcess::NotRunning) return;
    m_server.closeWriteChannel();
    if (m_server.waitForFinished(EndMilliseconds)) return;
    m_server.kill();
    m_server.waitForFinished(EndMilliseconds);
}

void Trial::end(int exitCode, QProcess::ExitStatus status) {
    endServer();
    Q_EMIT ended(status == QProcess::NormalExit ? exitCode : 1);
}

}  // namespace trial

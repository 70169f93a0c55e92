#include "support/sampleserverprocess.h"

#include <QDeadlineTimer>

namespace testsupport {

namespace {

constexpr int kEndMilliseconds = 20000;

}

SampleServerProcess::~SampleServerProcess() {
    stop();
}

QString SampleServerProcess::program() {
    return QString::fromUtf8(TW_SAMPLE_SERVER);
}

bool SampleServerProcess::start(const QStringList& arguments, int milliseconds) {
    stop();
    m_port = 0;
    m_errors.clear();
    const QStringList own{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--stay-with-stdin")};
    m_process.start(program(), own + arguments);

    const QDeadlineTimer deadline(milliseconds);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(int(deadline.remainingTime())) && !m_process.canReadLine()) {
            m_errors += m_process.errorString() + QLatin1Char('\n');
            stop();
            return false;
        }
    }
    const QByteArray line = m_process.readLine().trimmed();
    const QByteArray announced = "listening on 127.0.0.1,";
    m_port = line.startsWith(announced) ? line.mid(announced.size()).toUShort() : 0;
    return m_port != 0;
}

int SampleServerProcess::stop() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(kEndMilliseconds)) kill();
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void SampleServerProcess::kill() {
    m_process.kill();
    m_process.waitForFinished(kEndMilliseconds);
}

QString SampleServerProcess::serverText() const {
    return QStringLiteral("127.0.0.1,%1").arg(m_port);
}

QString SampleServerProcess::errorText() {
    m_errors += QString::fromUtf8(m_process.readAllStandardError());
    return m_errors;
}

}  // namespace testsupport

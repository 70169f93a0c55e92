#include "startcase.h"

#include "figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace bench {

namespace {

/// Starts a program and returns the seconds until it says that it is ready; then waits for its end, untimed.
/// `peak` becomes the memory it told, 0 when it did not get ready.
double secondsToReady(const QString& program, const QString& settingsFolder, double* peak) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), settingsFolder);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const double seconds = secondsOf([&] {
        process.start(QDir(QCoreApplication::applicationDirPath()).filePath(program), QStringList());
        while (!process.canReadLine() && process.waitForReadyRead(-1)) {
        }
    });
    const QByteArrayList words = process.readLine().trimmed().split(' ');
    *peak = words.size() == 2 && words[0] == "ready" ? words[1].toDouble() : 0;
    process.waitForFinished(-1);
    return seconds;
}

}  // namespace

Result runStartCase(const Request& request) {
    const QTemporaryDir folder;
    Result result;
    result.complete = true;
    double peaks[2] = {};
    const auto start = [&](const char* program, double& peak) {
        const double seconds = secondsToReady(QString::fromLatin1(program), folder.path(), &peak);
        result.complete = result.complete && peak > 0;
        return seconds;
    };
    const auto ours = [&] { return start("tablewright-bench-start", peaks[0]); };
    const auto yardstick = [&] { return start("tablewright-bench-window", peaks[1]); };
    ours();
    yardstick();
    for (int run = 0; run < request.runs; ++run) {
        result.ours.push_back(ours());
        result.yardstickSeconds.push_back(yardstick());
    }
    result.memory = Memory{peaks[0], 0, 0};
    constexpr double mebi = 1024 * 1024;
    result.figures = {
        {QStringLiteral("peak of memory, ours"), peaks[0] / mebi, QStringLiteral("MiB")},
        {QStringLiteral("peak of memory, empty window"), peaks[1] / mebi, QStringLiteral("MiB")}};
    return result;
}

}  // namespace bench

#include "endwatch.h"
#include "engine/session/session.h"
#include "options.h"
#include "sampleworld.h"
#include "tds/server.h"

#include <QCoreApplication>
#include <QHostAddress>

#include <cstdio>
#include <limits>

namespace {

using namespace sampleserver;

constexpr int kFailed = 1;
constexpr int kBadOptions = 2;

int tell(const QString& text, int exitCode) {
    std::fprintf(exitCode == 0 ? stdout : stderr, "%s\n", qPrintable(text.trimmed()));
    return exitCode;
}

bool listenOn(tds::TdsServer& server, const Options& options) {
    constexpr quint16 lastPort = std::numeric_limits<quint16>::max();
    for (quint16 port = options.port;; ++port) {
        if (server.listen(QHostAddress::LocalHost, port)) return true;
        const bool taken = server.serverError() == QAbstractSocket::AddressInUseError;
        if (!options.nextFreePort || !taken || port == lastPort) return false;
    }
}

int serve(const Options& options) {
    const std::shared_ptr<const engine::World> world = makeWorld(options);
    const engine::QueryLimits limits{.milliseconds = qint64(options.querySeconds) * 1000,
                                     .bytes = qint64(options.queryMegabytes) * 1024 * 1024};
    tds::TdsServer server(
        {.serverName = world->serverName(), .idleMilliseconds = options.idleMinutes * 60 * 1000},
        [world, limits](int spid) { return std::make_unique<engine::Session>(world, spid, limits); });
    if (!listenOn(server, options))
        return tell(
            QStringLiteral("Cannot listen on port %1: %2").arg(options.port).arg(server.errorString()),
            kFailed);
    const EndWatch endWatch(options.stayWithStdin);
    std::printf("listening on 127.0.0.1,%d\n", int(server.serverPort()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto options = parseOptions(QCoreApplication::arguments());
    if (const auto* refusal = std::get_if<OptionsRefusal>(&options))
        return tell(refusal->text, refusal->help ? 0 : kBadOptions);
    try {
        return serve(std::get<Options>(options));
    } catch (const ScriptFailure& failure) {
        return tell(QString::fromLocal8Bit(failure.what()), kFailed);
    }
}

#include "wirecase.h"

#include "figures.h"
#include "platform/ado/connectionstring.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"

#include <QTextStream>

namespace bench {

namespace {

QString connectionStringTo(const QString& server) {
    return QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(server);
}

/// The string of a program that knows its driver.
QString driversOwn(const QString& connectionString) {
    return ado::driverText(ado::ConnectionString(connectionString));
}

/// What the first run of ours takes; texts are not counted yet.
Memory memoryOf(const std::function<void()>& ours) {
    const size_t heapBefore = heapBytes();
    const PeakOfMemory peak;
    ours();
    return {peak.bytes(), static_cast<double>(heapBytes()) - static_cast<double>(heapBefore)};
}

RoundTrips countRoundTrips(const WireCase& wireCase, testsupport::Relay& relay) {
    const QString connectionString = connectionStringTo(relay.serverText());
    const qint64 start = relay.turns();
    wireCase.ours(connectionString);
    const qint64 middle = relay.turns();
    wireCase.yardstick(driversOwn(connectionString));
    return {middle - start, relay.turns() - middle, wireCase.leastRoundTrips};
}

}  // namespace

Result runWireCase(const Request& request, const WireCase& wireCase) {
    constexpr int patienceMilliseconds = 600'000;
    Result result;
    testsupport::SampleServerProcess server;
    if (!server.start(QStringList{QStringLiteral("--no-sample-data")} + wireCase.serverArguments,
                      patienceMilliseconds)) {
        QTextStream(stderr) << "The sample server did not start: " << server.errorText() << '\n';
        return result;
    }
    testsupport::Relay relay(server.port());
    relay.keepNothing();
    const bool distant = request.delay > 0;
    const QString connectionString = connectionStringTo(distant ? relay.serverText() : server.serverText());
    const auto ours = [&] { wireCase.ours(connectionString); };
    const auto yardstick = [&, text = driversOwn(connectionString)] { wireCase.yardstick(text); };

    Memory memory = memoryOf(ours);
    yardstick();
    result.complete = wireCase.isComplete(memory);
    if (!distant) result.memory = memory;
    result.roundTrips = countRoundTrips(wireCase, relay);
    relay.setDelay(request.delay);
    measurePairs(result, request.runs, ours, yardstick);
    // The relay's own work is in both.
    if (distant) result.processorRatios.clear();
    result.complete = wireCase.isComplete(memory) && result.complete;
    return result;
}

}  // namespace bench

#include "comparing.h"

#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/doevents.h"
#include "platform/desktop/msgbox.h"
#include "platform/filewriting.h"
#include "platform/runtimeerror.h"
#include "platform/showntext.h"
#include "terminalprogress.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace comparetool {

namespace {

using tw::Completeness;

tw::DBConnection connectionTo(const SystemOptions& system, const std::shared_ptr<tw::ConnectionPool>& pool) {
    tw::DBConnection connection(pool);
    connection.setServer(system.server);
    connection.setConnectionString(system.connectionString);
    connection.setDatabase(system.database);
    connection.setTable(system.table);
    return connection;
}

/// Why a system's database cannot be opened, in the driver's words, which the catalog routines keep to
/// themselves; empty when it can. The connection is kept for the first of them.
QString refusalOf(const SystemOptions& system, tw::ConnectionPool& pool) {
    try {
        const QString string = tw::catalog::inDatabase(system.connectionString, system.database);
        ado::Connection connection;
        connection.Open(string);
        pool.keep(string, connection);
        return {};
    } catch (const platform::RuntimeError& error) {
        return error.description();
    }
}

void write(const tw::ComparisonReport& report, const Options& options) {
    if (!options.outputFile.isEmpty()) return tw::saveReport(report, options.format, options.outputFile);
    QFile output;
    const QString name = QStringLiteral("standard output");
    if (!output.open(stdout, QIODevice::WriteOnly)) platform::throwWriteFailure(name, output.errorString());
    tw::writeReport(report, options.format, output);
    if (!output.flush() || output.error() != QFileDevice::NoError)
        platform::throwWriteFailure(name, output.errorString());
}

}  // namespace

void tell(const QString& text) {
    std::fprintf(stderr, "tablewright-compare: %s\n", qUtf8Printable(platform::shownLines(text)));
}

ExitCode compare(const Options& options) {
    const auto pool = std::make_shared<tw::ConnectionPool>();
    tw::DBConnection connection1 = connectionTo(options.systems[0], pool);
    tw::DBConnection connection2 = connectionTo(options.systems[1], pool);
    controls::ListItems results1;
    controls::ListItems results2;
    tw::ComparisonReport report;
    const std::array<const controls::ListItems*, 2> results{&results1, &results2};
    for (size_t i = 0; i < results.size(); ++i) {
        const SystemOptions& system = options.systems[i];
        report.systems[i] = {system.server, system.database, system.table, results[i]};
    }
    report.kinds = options.kinds;
    report.differencesOnly = options.differencesOnly;
    report.begun = QDateTime::currentDateTimeUtc();
    QElapsedTimer clock;
    clock.start();

    TerminalProgress progress;
    desktop::setMsgBoxAnswerer([&](const desktop::MsgBoxRequest& request) {
        progress.clear();
        tell(request.text);
        return request.defaultButton;
    });
    tw::Comparison comparison(
        {connection1, results1, report.systems[0].title()},
        {connection2, results2, report.systems[1].title()}, options.kinds, progress,
        [] { desktop::DoEvents(); }, [&] { return progress.isCancelled(); });
    for (size_t i = 0; i < results.size(); ++i)
        if (const QString refusal = refusalOf(options.systems[i], *pool); !refusal.isEmpty())
            report.unread += QStringLiteral("System %1: %2").arg(QString::number(i + 1), refusal);
    if (report.unread.isEmpty()) {
        report.completeness = comparison.run();
        report.unread = comparison.unread();
    } else {
        report.completeness = Completeness::LineLost;
    }
    desktop::setMsgBoxAnswerer({});
    progress.clear();
    report.matched = progress.matched();
    report.unmatched = progress.unmatched();
    report.milliseconds = clock.elapsed();

    write(report, options);
    for (const QString& unread : report.unread)
        tell(QStringLiteral("Not read: ") + unread);
    if (report.completeness != Completeness::Complete) {
        tell(completenessText(report.completeness));
        return NotDone;
    }
    return report.unmatched > 0 ? Different : Equal;
}

}  // namespace comparetool

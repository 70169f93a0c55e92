#include "rowscase.h"

#include "barerows.h"
#include "dbaccess/dbconnection.h"
#include "figures.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "support/sampleserverprocess.h"

#include <QCoreApplication>
#include <QTextStream>

namespace bench {

namespace {

const QString Database = QStringLiteral("Large");
const QString Table = QStringLiteral("Table0001");

QString oneDecimal(double number) {
    return QString::number(number, 'f', 1);
}

qint64 unitsOf(const controls::ListItems& list) {
    qint64 units = 0;
    for (int item = 0; item < list.count(); ++item) {
        for (int column = 0; column < list.headerCount(); ++column)
            units += list.subItem(item, column).size();
    }
    return units;
}

/// Fills one list and tells what that took of memory; true when it holds as much as the bare loop made.
bool measureMemory(tw::DBConnection& connection, controls::ListItems& list, const BareRows& bare) {
    const size_t heapBefore = heapBytes();
    const PeakOfMemory peak;
    connection.FillLvTblData(list, Database, Table, 0);
    const double texts = static_cast<double>(bare.units) * sizeof(char16_t);
    constexpr double Mebi = 1024 * 1024;
    QTextStream(stdout) << "  texts " << oneDecimal(texts / Mebi)
                        << " MiB as UTF-16; peak of resident memory " << oneDecimal(peak.bytes() / Mebi)
                        << " MiB, ratio " << QString::number(peak.bytes() / texts, 'f', 2) << "; heap kept "
                        << oneDecimal(static_cast<double>(heapBytes() - heapBefore) / Mebi) << " MiB, ratio "
                        << QString::number(static_cast<double>(heapBytes() - heapBefore) / texts, 'f', 2)
                        << '\n';
    return list.count() == bare.rows && unitsOf(list) == bare.units;
}

void measureView(controls::ListItems& list) {
    desktop::ListView view;
    view.resize(1000, 700);
    const auto milliseconds = [](const std::function<void()>& work) {
        return oneDecimal(secondsOf(work) * 1000) + QStringLiteral(" ms");
    };
    QTextStream out(stdout);
    const PeakOfMemory peak;
    out << "  list view: first paint " << milliseconds([&] {
        view.setItems(&list);
        view.show();
        QCoreApplication::processEvents();
        view.grab();
    });
    out << ", to the end " << milliseconds([&] {
        view.scrollToBottom();
        view.grab();
    });
    out << ", all selected " << milliseconds([&] {
        view.selectAll();
        view.grab();
    });
    QString text;
    const QString copying = milliseconds([&] { text = view.selectedText(); });
    out << ", " << text.size() << " characters to copy " << copying << ", memory "
        << oneDecimal(peak.bytes() / 1024 / 1024) << " MiB\n";
    view.setItems(nullptr);
}

}  // namespace

bool runRowsCase(qint64 rows, int columns, int runs) {
    testsupport::SampleServerProcess server;
    if (!server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--large"),
                       QStringLiteral("1,%1,%2").arg(columns).arg(rows)},
                      600'000)) {
        QTextStream(stderr) << "The sample server did not start: " << server.errorText() << '\n';
        return false;
    }
    const QString connectionString =
        QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(server.serverText());
    tw::DBConnection connection;
    connection.setConnectionString(connectionString);
    const BareEnvironment environment;
    const BareConnection bareConnection(environment, connectionString + QStringLiteral(";Database=Large"));
    const auto readBare = [&] {
        return readRowsBare(bareConnection, QStringLiteral("select * from [Table0001]"));
    };

    QTextStream(stdout) << "rows of a table of " << rows << " x " << columns << '\n' << Qt::flush;
    const BareRows bare = readBare();
    controls::ListItems list;
    const bool same = bare.rows == rows && measureMemory(connection, list, bare);
    measureView(list);
    const PairedRuns pairs = measurePairs(
        runs, [&] { connection.FillLvTblData(list, Database, Table, 0); }, [&] { readBare(); });
    printRatio(QStringLiteral("  filling the list"), pairs);
    if (!same) QTextStream(stderr) << "The list does not hold the texts of the bare loop.\n";
    return same;
}

}  // namespace bench

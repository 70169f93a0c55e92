#include "comparecase.h"
#include "querycase.h"
#include "rowscase.h"
#include "treecase.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char* argv[]) {
    // The list view is measured without a screen unless one is asked for.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the tool beside a bare ODBC loop. No figure is a test."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("case"),
                                 QStringLiteral("tree, rows, query or compare; all when left out."));
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("Pairs of runs."),
                                  QStringLiteral("n"), QStringLiteral("5"));
    const QCommandLineOption rows(QStringLiteral("rows"), QStringLiteral("Rows of the table to list."),
                                  QStringLiteral("n"), QStringLiteral("1000000"));
    const QCommandLineOption tables(QStringLiteral("tables"), QStringLiteral("Tables a side to compare."),
                                    QStringLiteral("n,.."), QStringLiteral("500,1000,2000,4000"));
    parser.addOptions({runs, rows, tables});
    parser.process(application);
    const int pairs = qMax(1, parser.value(runs).toInt());
    const QString only = parser.positionalArguments().value(0);
    bool good = true;
    if (only.isEmpty() || only == QStringLiteral("tree")) good = bench::runTreeCase(500, 40, pairs);
    if (only.isEmpty() || only == QStringLiteral("rows")) {
        good = bench::runRowsCase(qMax(1, parser.value(rows).toInt()), 8, pairs) && good;
    }
    if (only.isEmpty() || only == QStringLiteral("query")) {
        good = bench::runQueryCase(qMax(1, parser.value(rows).toInt()), 8, pairs) && good;
    }
    if (only.isEmpty() || only == QStringLiteral("compare")) {
        for (const QString& number : parser.value(tables).split(u','))
            good = bench::runCompareCase(qMax(1, number.toInt()), 15, pairs) && good;
        bench::runEngineCase(100000);
    }
    return good ? 0 : 1;
}

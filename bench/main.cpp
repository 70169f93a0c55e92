#include "treecase.h"

#include <QCommandLineParser>
#include <QCoreApplication>

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the tool beside a bare ODBC loop. No figure is a test."));
    parser.addHelpOption();
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("Pairs of runs."),
                                  QStringLiteral("n"), QStringLiteral("5"));
    parser.addOption(runs);
    parser.process(application);
    return bench::runTreeCase(500, 40, qMax(1, parser.value(runs).toInt())) ? 0 : 1;
}

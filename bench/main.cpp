#include "figures.h"
#include "report.h"
#include "runner.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>
#include <QTextStream>

#include <algorithm>

namespace {

using namespace bench;

/// Round trips that take long drown what else differs from run to run.
constexpr int MostRunsFromAfar = 3;

struct Wishes {
    int runs = 0;
    bool quick = false;
    QStringList names;  ///< of cases; all when empty
    QString jsonFile;
    QString markdownFile;
};

QCommandLineOption option(const char* name, const char* text, const char* value = nullptr,
                          const char* usual = nullptr) {
    return {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value),
            QString::fromLatin1(usual)};
}

Wishes wishesOf(const QCoreApplication& application) {
    QStringList known;
    for (const Case& one : allCases())
        known += one.name;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the program in turn with yardsticks. No figure is a test."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("case.."),
                                 known.join(QStringLiteral(", ")) + QStringLiteral("; all when left out."));
    const QCommandLineOption runs = option("runs", "Pairs of runs.", "n", "5");
    const QCommandLineOption quick = option("quick", "Small scales and two runs, to see that it works.");
    const QCommandLineOption json = option("json", "Writes all figures to <file>.", "file");
    const QCommandLineOption markdown =
        option("markdown", "Writes the tables for a document to <file>.", "file");
    parser.addOptions({runs, quick, json, markdown});
    parser.process(application);
    for (const QString& name : parser.positionalArguments()) {
        if (known.contains(name)) continue;
        QTextStream(stderr) << "There is no case " << name
                            << ". There are: " << known.join(QStringLiteral(", ")) << '\n';
        std::exit(2);
    }
    const bool isQuick = parser.isSet(quick);
    const int wanted = isQuick && !parser.isSet(runs) ? 2 : parser.value(runs).toInt();
    return {std::max(1, wanted), isQuick, parser.positionalArguments(), parser.value(json),
            parser.value(markdown)};
}

QString described(const Request& request) {
    QString text = request.name;
    for (const qint64 measure : request.measures)
        text += u' ' + QString::number(measure);
    if (request.delay > 0) text += QStringLiteral(" +%1 ms").arg(request.delay);
    return text;
}

/// Measures and tells how it goes.
std::vector<Result> measureAll(const Wishes& wishes, bool* good) {
    QTextStream progress(stderr);
    std::vector<Result> results;
    for (const Case& one : allCases()) {
        if (!wishes.names.isEmpty() && !wishes.names.contains(one.name)) continue;
        for (const Scale& scale : wishes.quick ? one.quickScales : one.scales) {
            const Request request{one.name, scale.measures, scale.delay,
                                  scale.delay > 0 ? std::min(wishes.runs, MostRunsFromAfar) : wishes.runs};
            progress << described(request) << " .. " << Qt::flush;
            const std::optional<Result> result = measureApart(request);
            *good = *good && result && result->complete;
            if (!result) {
                progress << "failed\n";
            } else if (!result->complete) {
                progress << "NOT COMPLETE\n";
            } else if (result->ours.empty()) {
                progress << "done\n";
            } else {
                progress << QString::number(spreadOf(result->ratios()).median, 'f', 2) << '\n';
            }
            if (result) results.push_back(*result);
        }
    }
    return results;
}

bool writeFile(const QString& fileName, const QByteArray& bytes) {
    if (fileName.isEmpty()) return true;
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) return true;
    QTextStream(stderr) << fileName << ": " << file.errorString() << '\n';
    return false;
}

int runCases(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const Wishes wishes = wishesOf(application);
    bool good = true;
    const std::vector<Result> results = measureAll(wishes, &good);
    const Report report = reportOf(results);
    QTextStream(stdout) << written(report, toText);
    good = writeFile(wishes.jsonFile, QJsonDocument(jsonOf(results)).toJson()) && good;
    good = writeFile(wishes.markdownFile, written(report, toMarkdown).toUtf8()) && good;
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || qstrcmp(argv[1], "--measure") != 0) return runCases(argc, argv);
    const QString asked = QString::fromLocal8Bit(argv[2]);
    // What shows lists shows them on no screen, so that the screen is not what is measured.
    char platformOption[] = "-platform";
    char platform[] = "offscreen";
    char* arguments[] = {argv[0], platformOption, platform, nullptr};
    int count = measuresOnScreen(asked) ? 1 : 3;
    const QApplication application(count, arguments);
    return runMeasuringProcess(asked);
}

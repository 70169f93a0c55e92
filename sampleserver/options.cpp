#include "options.h"

#include <QCommandLineParser>

#include <limits>

namespace sampleserver {

namespace {

constexpr std::size_t kMostLargeDatabases = 2;
constexpr qint64 kLargestMeasure = std::numeric_limits<int>::max();

/// The whole numbers of "12,3"; none unless there are from `fewest` to `most`, the last allowed to be 0.
std::optional<std::vector<qint64>> parseMeasures(const QString& text, int fewest, int most) {
    const QStringList parts = text.split(u',');
    if (parts.size() < fewest || parts.size() > most) return std::nullopt;
    std::vector<qint64> numbers;
    for (const QString& part : parts) {
        bool good = false;
        const qint64 number = part.trimmed().toLongLong(&good);
        if (!good || number < 0 || number > kLargestMeasure) return std::nullopt;
        numbers.push_back(number);
    }
    return numbers;
}

class OptionsReader {
  public:
    OptionsReader() {
        m_parser.setApplicationDescription(
            QStringLiteral("A server on 127.0.0.1 that answers as SQL Server does, read-only, for trying "
                           "and testing."));
        m_parser.addOptions({m_port, m_nextFree, m_script, m_strict, m_noData, m_large, m_many, m_details,
                             m_idle, m_seconds, m_megabytes, m_stay, m_help});
    }

    std::variant<Options, OptionsRefusal> read(const QStringList& arguments) {
        if (!m_parser.parse(arguments)) return OptionsRefusal{m_parser.errorText()};
        if (m_parser.isSet(m_help)) return OptionsRefusal{m_parser.helpText(), true};
        if (!m_parser.positionalArguments().isEmpty())
            return refusal("Unexpected argument '%1'.", m_parser.positionalArguments().constFirst());
        Options options;
        options.nextFreePort = m_parser.isSet(m_nextFree);
        options.sampleData = !m_parser.isSet(m_noData);
        options.stayWithStdin = m_parser.isSet(m_stay);
        options.scripts = m_parser.values(m_script);
        options.strict = m_parser.isSet(m_strict);
        bool good = false;
        options.port = m_parser.value(m_port).toUShort(&good);
        if (!good) return refusal("'%1' is no port.", m_parser.value(m_port));
        if (auto wrong = readGenerated(options)) return *wrong;
        if (auto wrong = readLimits(options)) return *wrong;
        return options;
    }

  private:
    static OptionsRefusal refusal(const char* text, const QString& what) {
        return {QString::fromLatin1(text).arg(what)};
    }

    std::optional<OptionsRefusal> readGenerated(Options& options) {
        for (const QString& text : m_parser.values(m_large)) {
            const auto numbers = parseMeasures(text, 2, 3);
            if (!numbers || numbers->at(0) == 0 || numbers->at(1) == 0)
                return refusal("--large wants TABLES,COLUMNS[,ROWS], not '%1'.", text);
            options.large.push_back({int(numbers->at(0)), int(numbers->at(1)),
                                     numbers->size() > 2 ? numbers->at(2) : kUsualRows});
        }
        if (options.large.size() > kMostLargeDatabases)
            return refusal("--large can be given %1 times at most.", QString::number(kMostLargeDatabases));
        if (m_parser.isSet(m_many)) {
            const auto numbers = parseMeasures(m_parser.value(m_many), 2, 2);
            if (!numbers) return refusal("--many wants DATABASES,TABLES, not '%1'.", m_parser.value(m_many));
            options.many = {int(numbers->at(0)), int(numbers->at(1))};
        }
        if (m_parser.isSet(m_details)) {
            const auto numbers = parseMeasures(m_parser.value(m_details), 3, 3);
            if (!numbers)
                return refusal("--details wants CHECKS,INDEXROWS,KEYS, not '%1'.", m_parser.value(m_details));
            options.details = {int(numbers->at(0)), int(numbers->at(1)), int(numbers->at(2))};
        }
        return std::nullopt;
    }

    std::optional<OptionsRefusal> readLimits(Options& options) {
        constexpr int most = 30'000;  // as minutes, nearly what milliseconds in an int can hold
        const std::pair<const QCommandLineOption&, int&> limits[]{{m_idle, options.idleMinutes},
                                                                  {m_seconds, options.querySeconds},
                                                                  {m_megabytes, options.queryMegabytes}};
        for (const auto& [option, limit] : limits) {
            if (!m_parser.isSet(option)) continue;
            limit = m_parser.value(option).toInt();
            if (limit >= 1 && limit <= most) continue;
            return OptionsRefusal{QStringLiteral("--%1 wants a number from 1 to %2, not '%3'.")
                                      .arg(option.names().constFirst())
                                      .arg(most)
                                      .arg(m_parser.value(option))};
        }
        return std::nullopt;
    }

    static constexpr qint64 kUsualRows = 10;

    static QCommandLineOption option(const char* name, const char* text, const char* value = nullptr,
                                     const char* usual = nullptr) {
        return {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value),
                QString::fromLatin1(usual)};
    }

    QCommandLineParser m_parser;
    QCommandLineOption m_port = option("port", "Listens on port <N>; 0 takes any free one.", "N", "1433");
    QCommandLineOption m_nextFree = option("next-free-port", "Takes the next port that is free.");
    QCommandLineOption m_script = option("script", "Runs a T-SQL script first. Can be repeated.", "FILE");
    QCommandLineOption m_strict = option("strict", "Refuses scripts that are not understood wholly.");
    QCommandLineOption m_noData = option("no-sample-data", "Leaves the sample databases out.");
    QCommandLineOption m_large =
        option("large", "Adds a database Large; given twice, a second one Large2.", "TABLES,COLUMNS[,ROWS]");
    QCommandLineOption m_many = option("many", "Adds many small databases.", "DATABASES,TABLES");
    QCommandLineOption m_details = option(
        "details", "Adds a database Details of many check constraints, index columns and foreign keys.",
        "CHECKS,INDEXROWS,KEYS");
    QCommandLineOption m_idle = option("idle-minutes", "Lets go who is silent for so long; usually 30.", "N");
    QCommandLineOption m_seconds =
        option("query-seconds", "Ends a batch that works for so long; usually 300.", "N");
    QCommandLineOption m_megabytes =
        option("query-megabytes", "Ends a batch that takes so much memory; usually 512.", "N");
    QCommandLineOption m_stay = option("stay-with-stdin", "Ends when the standard input closes.");
    QCommandLineOption m_help = option("help", "Shows this.");
};

}  // namespace

std::variant<Options, OptionsRefusal> parseOptions(const QStringList& arguments) {
    return OptionsReader().read(arguments);
}

}  // namespace sampleserver

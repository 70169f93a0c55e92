#include "options.h"

#include "platform/ado/connectionstring.h"

#include <QCommandLineParser>
#include <QFile>

#include <optional>

namespace comparetool {

namespace {

const QString AllTables = QStringLiteral("(All Tables)");

OptionsRefusal refusal(const char* text, const QString& what = {}) {
    const QString message = QString::fromLatin1(text);
    return {what.isNull() ? message : message.arg(what)};
}

/// The first line of a file; "-" is the standard input, from which each call takes the next line.
QString passwordFrom(const QString& fileName) {
    static QFile standardInput;
    QFile named(fileName);
    const bool standard = fileName == QStringLiteral("-");
    QFile& file = standard ? standardInput : named;
    const bool open =
        file.isOpen() || (standard ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly));
    if (!open)
        throw refusal("The password cannot be read: %1",
                      fileName + QStringLiteral(": ") + file.errorString());
    QByteArray line = file.readLine();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

class OptionsReader {
  public:
    OptionsReader() {
        m_parser.setApplicationDescription(
            QStringLiteral("Compares the schemas of two SQL Server databases, or of one table of each, and "
                           "writes what matches and what does not. It only reads.\n\n"
                           "Ends with 0 when both are equal, with 1 when they differ, and with 2 when "
                           "anything could not be read."));
        for (SystemNames& names : m_systems)
            m_parser.addOptions(
                {names.connection, names.dsn, names.user, names.passwordFile, names.database, names.table});
        m_parser.addOptions({m_kinds, m_format, m_output, m_differencesOnly, m_help});
    }

    std::variant<Options, OptionsRefusal> read(const QStringList& arguments) {
        if (!m_parser.parse(arguments)) return OptionsRefusal{m_parser.errorText()};
        if (m_parser.isSet(m_help)) return OptionsRefusal{m_parser.helpText(), true};
        if (!m_parser.positionalArguments().isEmpty())
            return refusal("Unexpected argument '%1'.", m_parser.positionalArguments().constFirst());
        try {
            return readAll();
        } catch (const OptionsRefusal& wrong) {
            return wrong;
        }
    }

  private:
    /// The options of one of the systems.
    struct SystemNames {
        explicit SystemNames(int system) : number(QString::number(system)) {}
        QString number;
        QCommandLineOption connection =
            option("connection", "ODBC connection string of system %1, without a password.", "STRING");
        QCommandLineOption dsn = option("dsn", "ODBC data source of system %1.", "NAME");
        QCommandLineOption user = option("user", "User of system %1.", "NAME");
        QCommandLineOption passwordFile =
            option("password-file",
                   "File whose first line is the password of that user; - is the standard input.", "FILE");
        QCommandLineOption database = option("database", "Database of system %1.", "NAME");
        QCommandLineOption table =
            option("table", "The one table of system %1 to compare. All tables unless told.", "NAME");

        QCommandLineOption option(const char* name, const char* text, const char* value) const {
            const QString words = QString::fromLatin1(text);
            return {QString::fromLatin1(name) + number,
                    words.contains(QStringLiteral("%1")) ? words.arg(number) : words,
                    QString::fromLatin1(value)};
        }
    };

    QString needed(const QCommandLineOption& option) const {
        const QString value = m_parser.value(option);
        if (value.isEmpty()) throw refusal("--%1 is missing.", option.names().constFirst());
        return value;
    }

    Options readAll() const {
        Options options;
        for (size_t i = 0; i < options.systems.size(); ++i)
            options.systems[i] = readSystem(m_systems[i]);
        readTables(options);
        readKinds(options.kinds);
        const QString format = m_parser.value(m_format);
        const auto known = tw::reportFormat(format);
        if (!known) throw refusal("'%1' is no format: text, csv, json, html or junit.", format);
        options.format = *known;
        options.outputFile = m_parser.value(m_output);
        options.differencesOnly = m_parser.isSet(m_differencesOnly);
        return options;
    }

    SystemOptions readSystem(const SystemNames& names) const {
        const bool byString = m_parser.isSet(names.connection);
        if (byString == m_parser.isSet(names.dsn))
            throw refusal("Either --connection%1 or --dsn%1 is needed.", names.number);
        ado::ConnectionString string{byString
                                         ? needed(names.connection)
                                         : QStringLiteral("DSN=") + ado::itemValue(needed(names.dsn)) + u';'};
        // Everybody on the machine can read the arguments of a program.
        if (!string.value({u"PWD", u"Password"}).value_or(QString()).isEmpty())
            throw refusal("A password does not belong on the command line: use --password-file%1.",
                          names.number);
        if (m_parser.isSet(names.user)) string.setValue({u"UID"}, m_parser.value(names.user));
        if (m_parser.isSet(names.passwordFile))
            string.setValue({u"PWD"}, passwordFrom(m_parser.value(names.passwordFile)));
        const QString server = string.value({u"SERVER", u"DSN"}).value_or(QString());
        return {string.text(), server, needed(names.database), m_parser.value(names.table)};
    }

    static void readTables(Options& options) {
        QString& table1 = options.systems[0].table;
        QString& table2 = options.systems[1].table;
        if (table1.isEmpty() && !table2.isEmpty()) throw refusal("--table2 wants --table1.");
        if (table2.isEmpty()) table2 = table1;
        for (QString* table : {&table1, &table2})
            if (table->isEmpty()) *table = AllTables;
    }

    void readKinds(tw::ComparedKinds& kinds) const {
        const QString all = m_parser.value(m_kinds);
        for (const QString& kind : all.split(u',', Qt::SkipEmptyParts)) {
            const bool every = kind == QStringLiteral("all");
            const std::pair<QStringView, bool&> flags[] = {{u"indexes", kinds.indexes},
                                                           {u"constraints", kinds.constraints},
                                                           {u"foreign-keys", kinds.foreignKeys}};
            bool known = every;
            for (const auto& [name, flag] : flags) {
                if (!every && kind != name) continue;
                flag = true;
                known = true;
            }
            if (!known) throw refusal("'%1' is no kind: indexes, constraints, foreign-keys or all.", kind);
        }
    }

    static QCommandLineOption option(const char* name, const char* text, const char* value = nullptr,
                                     const char* usual = nullptr) {
        return {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value),
                QString::fromLatin1(usual)};
    }

    QCommandLineParser m_parser;
    std::array<SystemNames, 2> m_systems{SystemNames(1), SystemNames(2)};
    QCommandLineOption m_kinds = option(
        "kinds", "What to compare besides tables and columns: indexes, constraints, foreign-keys, or all.",
        "LIST");
    QCommandLineOption m_format =
        option("format", "text, csv, json, html or junit; text unless told.", "FORMAT", "text");
    QCommandLineOption m_output =
        option("output", "Writes to a file, whole or not at all, in place of the standard output.", "FILE");
    QCommandLineOption m_differencesOnly = option("differences-only", "Leaves out what matches.");
    QCommandLineOption m_help = option("help", "Shows this.");
};

}  // namespace

std::variant<Options, OptionsRefusal> parseOptions(const QStringList& arguments) {
    return OptionsReader().read(arguments);
}

}  // namespace comparetool

#include "engine/session/batchrunner.h"

#include <QStringList>

namespace engine {

namespace {

/// Options whose setting changes nothing on a server that is only read, and whose defaults are the ones that
/// answers are given by.
bool isIdleOption(const QString& option) {
    static const QStringList names{
        QStringLiteral("ansi_null_dflt_on"),
        QStringLiteral("ansi_null_dflt_off"),
        QStringLiteral("ansi_padding"),
        QStringLiteral("ansi_warnings"),
        QStringLiteral("arithabort"),
        QStringLiteral("arithignore"),
        QStringLiteral("cursor_close_on_commit"),
        QStringLiteral("disable_def_cnst_chk"),
        QStringLiteral("deadlock_priority"),
        QStringLiteral("lock_timeout"),
        QStringLiteral("query_governor_cost_limit"),
        QStringLiteral("remote_proc_transactions"),
        QStringLiteral("transaction isolation level"),
    };
    return names.contains(option);
}

[[noreturn]] void failValue(const ast::SetOption& statement) {
    throw SqlError(170, 15, QStringLiteral("Line 1: Incorrect syntax near '%1'.").arg(statement.value));
}

qint64 numberOf(const ast::SetOption& statement) {
    bool valid = false;
    const qint64 number = statement.value.toLongLong(&valid);
    if (!valid || number < -1) failValue(statement);
    return number;
}

bool switchOf(const ast::SetOption& statement) {
    const QString value = statement.value.toLower();
    if (value == QLatin1String("on")) return true;
    if (value != QLatin1String("off")) failValue(statement);
    return false;
}

/// The one setting of an option that there is.
void checkFixed(const ast::SetOption& statement, const QStringList& allowed) {
    if (allowed.contains(statement.value, Qt::CaseInsensitive)) return;
    throw SqlError(
        2741, 16,
        QStringLiteral("SET %1 '%2' is not supported.").arg(statement.option.toUpper(), statement.value));
}

}  // namespace

void BatchRunner::setSwitch(const QString& option, bool on) {
    if (option == QLatin1String("implicit_transactions")) m_options.implicitTransactions = on;
    if (option == QLatin1String("nocount")) m_options.noCount = on;
    if (option == QLatin1String("fmtonly")) m_options.columnsOnly = on;
    if (option == QLatin1String("quoted_identifier")) m_options.quotedIdentifiers = on;
}

void BatchRunner::run(const ast::SetOption& statement) {
    for (const QString& option : statement.option.split(u',')) {
        if (option == QLatin1String("rowcount")) {
            const bool named = statement.value.startsWith(u'@');
            const BatchVariable* given = named ? &variable(statement.value) : nullptr;
            const auto* number = given ? std::get_if<qint64>(&given->value) : nullptr;
            if (given && !number) failValue(statement);
            m_options.rowLimit = number ? *number : numberOf(statement);
        } else if (option == QLatin1String("textsize")) {
            const qint64 size = numberOf(statement);
            m_facts.textSize = size == 0 ? 4096 : size < 0 ? 2147483647 : size;
        } else if (option == QLatin1String("language")) {
            checkFixed(statement, {QStringLiteral("us_english"), QStringLiteral("english")});
        } else if (option == QLatin1String("dateformat")) {
            checkFixed(statement, {QStringLiteral("mdy")});
        } else if (option == QLatin1String("datefirst")) {
            checkFixed(statement, {QStringLiteral("7")});
        } else if (option == QLatin1String("nocount") || option == QLatin1String("fmtonly") ||
                   option == QLatin1String("quoted_identifier") ||
                   option == QLatin1String("implicit_transactions")) {
            setSwitch(option, switchOf(statement));
        } else if (option == QLatin1String("ansi_nulls") || option == QLatin1String("ansi_defaults") ||
                   option == QLatin1String("concat_null_yields_null")) {
            checkFixed(statement, {QStringLiteral("on")});
        } else if (option == QLatin1String("numeric_roundabort") || option == QLatin1String("xact_abort")) {
            checkFixed(statement, {QStringLiteral("off")});
        } else if (!isIdleOption(option)) {
            throw SqlError(195, 15, QStringLiteral("'%1' is not a recognized SET option.").arg(option));
        }
    }
    done(-1, false);
}

}  // namespace engine

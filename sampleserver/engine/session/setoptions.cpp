#include "engine/session/setoptions.h"

#include "engine/session/batchrunner.h"
#include "engine/values/datetime.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace engine {

namespace {

enum class Setting {
    Idle,      // changes nothing on a server that is only read
    FixedOn,   // answers are given by this one setting
    FixedOff,  // likewise
    Switch,    // setSwitch()
    Valued     // has more than two settings
};

/// What an option of SET is; nothing for one that there is none of.
std::optional<Setting> settingOf(const QString& option) {
    static const QHash<QString, Setting> settings = [] {
        const std::pair<Setting, const char*> known[] = {
            {Setting::Idle,
             "ansi_null_dflt_on ansi_null_dflt_off ansi_padding ansi_warnings arithabort arithignore "
             "cursor_close_on_commit disable_def_cnst_chk deadlock_priority lock_timeout "
             "query_governor_cost_limit remote_proc_transactions"},
            {Setting::FixedOn, "ansi_nulls ansi_defaults concat_null_yields_null"},
            {Setting::FixedOff, "numeric_roundabort xact_abort"},
            {Setting::Switch, "nocount fmtonly quoted_identifier implicit_transactions"},
            {Setting::Valued, "rowcount textsize language dateformat datefirst"}};
        QHash<QString, Setting> result{{QStringLiteral("transaction isolation level"), Setting::Idle}};
        for (const auto& [setting, names] : known) {
            for (const QString& name : QString::fromLatin1(names).split(u' '))
                result.insert(name, setting);
        }
        return result;
    }();
    const auto found = settings.constFind(option);
    return found == settings.constEnd() ? std::nullopt : std::optional(*found);
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

bool bearsOnNoCatalog(const QString& option) {
    const auto setting = settingOf(option);
    return setting && *setting != Setting::Valued && option != QLatin1String("fmtonly");
}

int dateStyleOf(const ast::SetOption& statement) {
    if (const auto style = dateFormatStyle(statement.value)) return *style;
    throw SqlError(2741, 16,
                   QStringLiteral("SET DATEFORMAT date order '%1' is invalid.").arg(statement.value));
}

void BatchRunner::setSwitch(const QString& option, bool on) {
    if (option == QLatin1String("implicit_transactions")) m_options.implicitTransactions = on;
    if (option == QLatin1String("nocount")) m_options.noCount = on;
    if (option == QLatin1String("fmtonly")) m_options.columnsOnly = on;
    if (option == QLatin1String("quoted_identifier")) m_options.quotedIdentifiers = on;
}

void BatchRunner::setValue(const QString& option, const ast::SetOption& statement) {
    if (option == QLatin1String("rowcount")) {
        const bool named = statement.value.startsWith(u'@');
        const TypedValue* given = named ? &variable(statement.value) : nullptr;
        const auto* number = given ? std::get_if<qint64>(&given->value) : nullptr;
        if (given && !number) failValue(statement);
        m_options.rowLimit = number ? *number : numberOf(statement);
    } else if (option == QLatin1String("textsize")) {
        const qint64 size = numberOf(statement);
        m_facts.textSize = size == 0 ? 4096 : size < 0 ? 2147483647 : size;
    } else if (option == QLatin1String("language")) {
        checkFixed(statement, {QStringLiteral("us_english"), QStringLiteral("english")});
    } else if (option == QLatin1String("datefirst")) {
        checkFixed(statement, {QStringLiteral("7")});
    } else {
        m_facts.dateStyle = dateStyleOf(statement);
    }
}

void BatchRunner::run(const ast::SetOption& statement) {
    for (const QString& option : statement.option.split(u',')) {
        const auto setting = settingOf(option);
        if (!setting)
            throw SqlError(195, 15, QStringLiteral("'%1' is not a recognized SET option.").arg(option));
        if (setting == Setting::FixedOn) checkFixed(statement, {QStringLiteral("on")});
        if (setting == Setting::FixedOff) checkFixed(statement, {QStringLiteral("off")});
        if (setting == Setting::Switch) setSwitch(option, switchOf(statement));
        if (setting == Setting::Valued) setValue(option, statement);
    }
    done(-1, false);
}

}  // namespace engine

#include "platform/ado/diagnostics.h"

#include <algorithm>
#include <array>

namespace ado {

namespace {

enum Phases : unsigned { WhileOpening = 1, WhileRunning = 2, Always = 3 };

constexpr qint32 any = -1;

/// One entry: a native error number; or a SQLSTATE where the number is 0, or "any" but 0.
struct Rule {
    qint32 nativeError;
    const char* sqlState;
    unsigned phases;
    qint32 number;
};

// The earlier entry wins, whatever the order of the records: a server that refuses a database says 18456
// beside it, and where Microsoft's drivers reach no server the system's error comes with a time-out. 20002 to
// 20047 are FreeTDS's own numbers (sybdb.h), the others SQL Server's.
constexpr std::array rules{
    Rule{4060, nullptr, WhileOpening, numbers::Unspecified},      // cannot open database
    Rule{4061, nullptr, WhileOpening, numbers::Unspecified},      // nor the login's default database
    Rule{4064, nullptr, WhileOpening, numbers::Unspecified},      // cannot open the login's default database
    Rule{911, nullptr, WhileOpening, numbers::Unspecified},       // no such database
    Rule{916, nullptr, WhileOpening, numbers::Unspecified},       // not a user of the database
    Rule{18456, nullptr, WhileOpening, numbers::LoginFailed},     // login failed
    Rule{18450, nullptr, WhileOpening, numbers::LoginFailed},     // not defined as a trusted login
    Rule{18452, nullptr, WhileOpening, numbers::LoginFailed},     // not associated with a trusted connection
    Rule{18461, nullptr, WhileOpening, numbers::LoginFailed},     // single-user mode
    Rule{18470, nullptr, WhileOpening, numbers::LoginFailed},     // account disabled
    Rule{18486, nullptr, WhileOpening, numbers::LoginFailed},     // account locked
    Rule{18487, nullptr, WhileOpening, numbers::LoginFailed},     // password expired
    Rule{18488, nullptr, WhileOpening, numbers::LoginFailed},     // password must be changed
    Rule{0, "28000", WhileOpening, numbers::LoginFailed},         // invalid authorization
    Rule{any, "08001", WhileOpening, numbers::Unspecified},       // the network's error, the certificate's
    Rule{0, "HYT00", Always, numbers::TimeOut},                   // time-out
    Rule{0, "HYT01", Always, numbers::TimeOut},                   // connection time-out
    Rule{20003, nullptr, Always, numbers::TimeOut},               // time-out
    Rule{208, nullptr, WhileRunning, numbers::ObjectNotFound},    // invalid object name
    Rule{0, "42S02", WhileRunning, numbers::ObjectNotFound},      // base table not found
    Rule{0, "S0002", WhileRunning, numbers::ObjectNotFound},      // the same in ODBC 2
    Rule{229, nullptr, WhileRunning, numbers::ObjectPermission},  // permission denied on object
    Rule{230, nullptr, WhileRunning, numbers::ObjectPermission},  // permission denied on column
    Rule{20013, nullptr, Always, numbers::Unspecified},           // unknown host
    Rule{20009, nullptr, Always, numbers::Unspecified},           // server unavailable
    Rule{20017, nullptr, Always, numbers::Unspecified},           // end of file from server
    Rule{20004, nullptr, Always, numbers::Unspecified},           // read failed
    Rule{20006, nullptr, Always, numbers::Unspecified},           // write failed
    Rule{20047, nullptr, Always, numbers::Unspecified},           // connection dead
    Rule{0, "08S01", Always, numbers::Unspecified},               // communication link failure
    Rule{0, "08001", Always, numbers::Unspecified},               // unable to connect
    Rule{0, "08003", Always, numbers::Unspecified},               // connection not open
    Rule{0, "08004", WhileOpening, numbers::Unspecified},         // server rejected the connection
    Rule{20002, nullptr, Always, numbers::Unspecified},           // connection failed
    Rule{0, "IM002", Always, numbers::Unspecified},               // no such data source, no driver
    Rule{0, "IM003", Always, numbers::Unspecified},               // driver cannot be loaded
};

bool matches(const Rule& rule, const DiagnosticRecord& record) {
    if (!rule.sqlState) return record.nativeError == rule.nativeError;
    return record.sqlState == QLatin1StringView(rule.sqlState) &&
           (rule.nativeError != any || record.nativeError != 0);
}

/// FreeTDS numbers what it says itself, even what it calls a warning.
bool isFreeTdsNumber(qint32 nativeError) {
    return nativeError >= 20000 && nativeError < 20300;
}

/// An error message of the server's. FreeTDS marks its own as the server's, too.
bool isServersError(const DiagnosticRecord& record) {
    return record.nativeError != 0 && !isFreeTdsNumber(record.nativeError) && tellsFailure(record) &&
           record.text.contains(QLatin1StringView("[SQL Server]"));
}

Error makeError(qint32 number, const DiagnosticRecord& record) {
    return {number, record.text, record.sqlState, record.nativeError};
}

}  // namespace

Error errorFrom(const std::vector<DiagnosticRecord>& records, Phase phase) {
    const unsigned wanted = phase == Phase::Opening ? WhileOpening : WhileRunning;
    for (const Rule& rule : rules) {
        if (!(rule.phases & wanted)) continue;
        const auto found = std::ranges::find_if(
            records, [&](const DiagnosticRecord& record) { return matches(rule, record); });
        if (found == records.end()) continue;
        // Why a login is refused is the server's to say; the driver sums up that there is no connection.
        const bool sumsUp = rule.number == numbers::Unspecified && !isServersError(*found);
        const auto reason = std::ranges::find_if(records, isServersError);
        return makeError(rule.number, sumsUp && reason != records.end() ? *reason : *found);
    }
    const qint32 number = phase == Phase::Opening ? numbers::Unspecified : numbers::StatementError;
    if (records.empty()) return {number, QStringLiteral("Unspecified error"), {}, 0};
    const auto failure = std::ranges::find_if(records, tellsFailure);
    return makeError(number, failure != records.end() ? *failure : records.front());
}

bool tellsFailure(const DiagnosticRecord& record) {
    const bool warning = record.sqlState.startsWith(QLatin1StringView("01")) ||
                         record.sqlState.startsWith(QLatin1StringView("00"));
    return !warning || isFreeTdsNumber(record.nativeError);
}

}  // namespace ado

#include "platform/ado/opening.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace ado {

namespace {

using namespace std::chrono_literals;

/// What the thread that connects and the one that waits for it share; the last of them ends it.
struct Attempt {
    std::shared_ptr<DriverConnection> link = std::make_shared<DriverConnection>();
    QString text;
    std::mutex mutex;
    std::condition_variable changed;
    bool ended = false;
    SQLRETURN code = SQL_ERROR;
};

SQLRETURN connectNow(DriverConnection& link, const QString& text) {
    const SQLRETURN code = SQLDriverConnectW(link.connection.get(), nullptr, odbc::wide(text), SQL_NTS,
                                             nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    link.connected = SQL_SUCCEEDED(code);
    return code;
}

void runAttempt(Attempt& attempt) {
    const SQLRETURN code = connectNow(*attempt.link, attempt.text);
    const std::lock_guard lock(attempt.mutex);
    attempt.code = code;
    attempt.ended = true;
    attempt.changed.notify_one();
}

SQLRETURN connectWithin(const std::shared_ptr<Attempt>& attempt, int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + seconds * 1s + 500ms;
    std::thread([attempt] { runAttempt(*attempt); }).detach();
    std::unique_lock lock(attempt->mutex);
    if (!attempt->changed.wait_until(lock, deadline, [&] { return attempt->ended; }))
        throw Error(numbers::TimeOut, QStringLiteral("Timeout expired"), QStringLiteral("HYT00"), 0);
    return attempt->code;
}

}  // namespace

DriverConnection::~DriverConnection() {
    if (connected) SQLDisconnect(connection.get());
}

std::shared_ptr<DriverConnection> openConnection(const QString& text, int seconds) {
    const auto attempt = std::make_shared<Attempt>();
    attempt->text = text;
    DriverConnection& link = *attempt->link;
    link.environment = odbc::makeEnvironment();
    link.connection = odbc::makeConnection(link.environment);
    if (seconds > 0)
        odbc::check(SQLSetConnectAttrW(link.connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                                       odbc::number(static_cast<SQLULEN>(seconds)), 0),
                    SQL_HANDLE_DBC, link.connection.get(), Phase::Opening);
    const SQLRETURN code = seconds > 0 ? connectWithin(attempt, seconds) : connectNow(link, text);
    odbc::check(code, SQL_HANDLE_DBC, link.connection.get(), Phase::Opening);
    return attempt->link;
}

}  // namespace ado

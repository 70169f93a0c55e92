#include "platform/ado/opening.h"

#include "platform/ado/worker.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

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
    {
        const std::lock_guard lock(attempt.mutex);
        attempt.code = code;
        attempt.ended = true;
    }
    // Behind the lock: the waiting thread would only wake to wait for it.
    attempt.changed.notify_one();
}

SQLRETURN connectWithin(const std::shared_ptr<Attempt>& attempt, int seconds) {
    thread_local std::unique_ptr<Worker> worker;
    if (!worker) worker = std::make_unique<Worker>();
    const auto deadline = std::chrono::steady_clock::now() + seconds * 1s + 500ms;
    worker->start([attempt] { runAttempt(*attempt); });
    std::unique_lock lock(attempt->mutex);
    if (!attempt->changed.wait_until(lock, deadline, [&] { return attempt->ended; })) {
        worker->abandon();
        worker.reset();
        throw Error(numbers::TimeOut, QStringLiteral("Timeout expired"), QStringLiteral("HYT00"), 0);
    }
    return attempt->code;
}

}  // namespace

DriverConnection::~DriverConnection() {
    if (connected) SQLDisconnect(connection.get());
}

std::shared_ptr<DriverConnection> openConnection(const QString& text, const QString& database, int seconds) {
    // The driver would take what stands before it for the whole.
    if (text.contains(QChar::Null) || database.contains(QChar::Null))
        throw Error(numbers::Unspecified,
                    QStringLiteral("A connection string cannot hold a character of code zero."), {}, 0);
    const auto attempt = std::make_shared<Attempt>();
    attempt->text = text;
    DriverConnection& link = *attempt->link;
    link.environment = odbc::makeEnvironment();
    link.connection = odbc::makeConnection(link.environment);
    if (seconds > 0)
        odbc::check(SQLSetConnectAttrW(link.connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                                       odbc::number(static_cast<SQLULEN>(seconds)), 0),
                    SQL_HANDLE_DBC, link.connection.get(), Phase::Opening);
    // The driver manager translates this text to the locale's characters, and the driver reads them as its
    // own: another database could answer. It also hands on too little of a text whose length is told.
    if (std::ranges::any_of(database, [](QChar c) { return c.unicode() > 0x7e; }))
        throw Error(numbers::Unspecified,
                    QStringLiteral("The driver cannot be asked for the database \"%1\".").arg(database), {},
                    0);
    if (!database.isEmpty())
        odbc::check(SQLSetConnectAttrW(link.connection.get(), SQL_ATTR_CURRENT_CATALOG, odbc::wide(database),
                                       SQL_NTS),
                    SQL_HANDLE_DBC, link.connection.get(), Phase::Opening);
    const SQLRETURN code = seconds > 0 ? connectWithin(attempt, seconds) : connectNow(link, text);
    odbc::check(code, SQL_HANDLE_DBC, link.connection.get(), Phase::Opening);
    // The worker may still hold the attempt; the connection is the caller's alone.
    return std::move(attempt->link);
}

}  // namespace ado

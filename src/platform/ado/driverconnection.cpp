#include "platform/ado/driverconnection.h"

#include "platform/ado/waiting.h"

#include <algorithm>
#include <chrono>

namespace ado {

namespace {

using namespace std::chrono_literals;

constexpr int SecondsToEndStatement = 2;

/// FreeTDS's own item of SQLGetInfo (odbcss.h): the connection's socket.
constexpr SQLUSMALLINT SocketInfo = 1301;

std::optional<std::chrono::milliseconds> limitOf(int seconds) {
    // The driver's own time-out, where it works, comes first and says more.
    return seconds > 0 ? std::optional(seconds * 1000ms + 500ms) : std::nullopt;
}

[[noreturn]] void throwEnding(Ending ending) {
    if (ending == Ending::BrokenOff) throw cancelled();
    throw Error(numbers::TimeOut, QStringLiteral("Timeout expired"), QStringLiteral("HYT00"), 0);
}

void checkReadable(const QString& text, const QString& database) {
    // The driver would take what stands before it for the whole.
    if (text.contains(QChar::Null) || database.contains(QChar::Null))
        throw Error(numbers::Unspecified,
                    QStringLiteral("A connection string cannot hold a character of code zero."), {}, 0);
    // The driver manager translates this text to the locale's characters, and the driver reads them as its
    // own: another database could answer.
    if (std::ranges::any_of(database, [](QChar c) { return c.unicode() > 0x7e; }))
        throw Error(numbers::Unspecified,
                    QStringLiteral("The driver cannot be asked for the database \"%1\".").arg(database), {},
                    0);
}

Socket socketOf(SQLHDBC connection) {
    int descriptor = -1;
    const SQLRETURN code = SQLGetInfoW(connection, SocketInfo, &descriptor, sizeof descriptor, nullptr);
    return SQL_SUCCEEDED(code) ? Socket::of(descriptor) : Socket{};
}

}  // namespace

std::shared_ptr<DriverConnection> DriverConnection::open(const QString& text, const QString& database,
                                                         int seconds) {
    checkReadable(text, database);
    const auto link = std::make_shared<DriverConnection>();
    link->connect(text, database, seconds);
    return link;
}

void DriverConnection::connect(const QString& text, const QString& database, int seconds) {
    m_environment = odbc::makeEnvironment();
    m_connection = odbc::makeConnection(m_environment);
    const SQLHDBC handle = m_connection.get();
    const auto check = [handle](SQLRETURN code) {
        odbc::check(code, SQL_HANDLE_DBC, handle, Phase::Opening);
    };
    if (seconds > 0)
        check(SQLSetConnectAttrW(handle, SQL_ATTR_LOGIN_TIMEOUT, odbc::number(static_cast<SQLULEN>(seconds)),
                                 0));
    // Its length is not told: the driver manager hands on too little of a text whose length is.
    if (!database.isEmpty())
        check(SQLSetConnectAttrW(handle, SQL_ATTR_CURRENT_CATALOG, odbc::wide(database), SQL_NTS));

    LoginSockets sockets;
    const Ending ending = runWithin(
        limitOf(seconds),
        [link = shared_from_this(), text, check] {
            check(SQLDriverConnectW(link->m_connection.get(), nullptr, odbc::wide(text), SQL_NTS, nullptr, 0,
                                    nullptr, SQL_DRIVER_NOPROMPT));
            link->m_connected = true;
        },
        [] {});
    if (ending != Ending::InTime) {
        m_givenUp = true;
        sockets.abandon();
        throwEnding(ending);
    }
    m_socket = socketOf(handle);
    sockets.keep(m_socket);
}

DriverConnection::~DriverConnection() {
    if (m_connected) SQLDisconnect(m_connection.get());
}

odbc::SharedStatement DriverConnection::makeStatement() const {
    return std::make_shared<odbc::StatementHandle>(odbc::makeStatement(m_connection));
}

void DriverConnection::run(int seconds, const std::function<void()>& call,
                           const odbc::SharedStatement& statement) {
    try {
        runGuarded(
            seconds, [call, statement] { call(); }, [&] { SQLCancel(statement->get()); });
    } catch (const Error& error) {
        // FreeTDS has no word for some of the ways in which a line can be lost.
        if (error.nativeError() != 0 || m_givenUp || !isDead()) throw;
        throw Error(numbers::Unspecified, error.description(), error.sqlState(), 0);
    }
}

bool DriverConnection::isDead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    const SQLRETURN code =
        SQLGetConnectAttrW(m_connection.get(), SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
    return SQL_SUCCEEDED(code) && dead == SQL_CD_TRUE;
}

void DriverConnection::end(const odbc::SharedStatement& statement) {
    try {
        runGuarded(
            SecondsToEndStatement, [statement] { statement->reset(); }, [] {});
    } catch (const Error&) {
        // Given up; whoever asked for the rows has what he wanted of them.
    }
}

void DriverConnection::runGuarded(int seconds, const std::function<void()>& call,
                                  const std::function<void()>& interrupt) {
    const Ending ending = runWithin(
        limitOf(seconds), [link = shared_from_this(), call] { call(); }, interrupt);
    if (ending == Ending::InTime) return;
    giveUp();
    throwEnding(ending);
}

void DriverConnection::giveUp() {
    m_givenUp = true;
    m_socket.close();
}

}  // namespace ado

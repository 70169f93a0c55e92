#pragma once

#include "platform/ado/odbc.h"

#include <memory>

namespace ado {

/// An environment and the connection in it.
struct DriverConnection {
    odbc::EnvironmentHandle environment;  // ends behind the connection
    odbc::ConnectionHandle connection;
    bool connected = false;

    DriverConnection() = default;
    DriverConnection(const DriverConnection&) = delete;
    DriverConnection& operator=(const DriverConnection&) = delete;
    ~DriverConnection();
};

/// Connects with the driver's string, to `database` unless that is empty. Comes back within `seconds` (0:
/// without limit) and half a second, whatever the driver does: its own time-out covers neither name look-ups,
/// nor a server that sends a byte now and then; such an attempt is left to end by itself. Throws Error.
std::shared_ptr<DriverConnection> openConnection(const QString& text, const QString& database, int seconds);

}  // namespace ado

#include "platform/ado/datasources.h"

#include "platform/ado/definitions.h"
#include "platform/ado/odbc.h"

#include <odbcinst.h>

#include <array>
#include <cstring>

namespace ado {

namespace {

constexpr SQLSMALLINT bufferSize = 1024;
using Buffer = std::array<char, bufferSize>;

SQLCHAR* characters(Buffer& buffer) {
    return reinterpret_cast<SQLCHAR*>(buffer.data());
}

QString firstOf(const Buffer& buffer, SQLSMALLINT length) {
    return QString::fromLocal8Bit(buffer.data(), std::clamp<SQLSMALLINT>(length, 0, bufferSize));
}

}  // namespace

std::optional<std::vector<DataSource>> dataSources() {
    SQLHENV environment = SQL_NULL_HENV;
    if (SQLAllocEnv(&environment) == SQL_ERROR) return std::nullopt;
    std::vector<DataSource> sources;
    Buffer name;
    Buffer driver{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT driverLength = 0;
    while (true) {
        name.fill(' ');
        const SQLRETURN code = SQLDataSources(environment, SQL_FETCH_NEXT, characters(name), bufferSize,
                                              &nameLength, characters(driver), bufferSize, &driverLength);
        if (SQL_SUCCEEDED(code))
            sources.push_back({firstOf(name, nameLength), firstOf(driver, driverLength)});
        if (code != SQL_SUCCESS) break;
    }
    SQLFreeEnv(environment);
    return sources;
}

bool driverPresent() {
    try {
        const odbc::EnvironmentHandle environment = odbc::makeEnvironment();
        Buffer name{};
        SQLSMALLINT length = 0;
        SQLUSMALLINT direction = SQL_FETCH_FIRST;
        while (SQL_SUCCEEDED(SQLDrivers(environment.get(), direction, characters(name), bufferSize, &length,
                                        nullptr, 0, nullptr))) {
            if (firstOf(name, length).compare(QLatin1StringView("SQL Server"), Qt::CaseInsensitive) == 0)
                return true;
            direction = SQL_FETCH_NEXT;
        }
    } catch (const Error&) {
        return false;
    }
    return false;
}

QString sourceDefinition(const QString& source, const QString& entry) {
    Buffer value{};
    const int length =
        SQLGetPrivateProfileString(source.toLocal8Bit().constData(), entry.toLatin1().constData(), "",
                                   value.data(), bufferSize, "odbc.ini");
    return length > 0 ? QString::fromLocal8Bit(value.data(),
                                               static_cast<qsizetype>(strnlen(value.data(), bufferSize)))
                      : QString();
}

}  // namespace ado

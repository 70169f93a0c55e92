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

/// The texts of a list that ends with an empty one.
QStringList textsOf(const char* list) {
    QStringList texts;
    for (; *list; list += std::strlen(list) + 1)
        texts.push_back(QString::fromLocal8Bit(list));
    return texts;
}

QString readEntry(const QString& section, const QString& entry, const char* file) {
    Buffer value{};
    const int length = SQLGetPrivateProfileString(
        section.toLocal8Bit().constData(), entry.toLatin1().constData(), "", value.data(), bufferSize, file);
    return length > 0 ? QString::fromLocal8Bit(value.data(),
                                               static_cast<qsizetype>(strnlen(value.data(), bufferSize)))
                      : QString();
}

}  // namespace

std::optional<std::vector<DataSource>> dataSources() {
    SQLHENV environment = SQL_NULL_HENV;
    if (SQLAllocEnv(&environment) == SQL_ERROR) return std::nullopt;
    const std::vector<RegisteredDriver> drivers = registeredDrivers();
    std::vector<DataSource> sources;
    Buffer name;
    Buffer driver{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT driverLength = 0;
    while (true) {
        name.fill(' ');
        const SQLRETURN code = SQLDataSources(environment, SQL_FETCH_NEXT, characters(name), bufferSize,
                                              &nameLength, characters(driver), bufferSize, &driverLength);
        if (SQL_SUCCEEDED(code)) {
            const QString called = firstOf(driver, driverLength);
            sources.push_back({firstOf(name, nameLength),
                               familyCalled(called.trimmed(), drivers) ? QString(sqlServerName) : called});
        }
        if (code != SQL_SUCCESS) break;
    }
    SQLFreeEnv(environment);
    return sources;
}

bool driverPresent() {
    try {
        odbc::makeEnvironment();
    } catch (const Error&) {
        return false;
    }
    return sqlServerDriver(registeredDrivers());
}

std::vector<RegisteredDriver> registeredDrivers() {
    std::array<char, 16 * 1024> names{};
    std::vector<RegisteredDriver> drivers;
    if (!SQLGetInstalledDrivers(names.data(), static_cast<WORD>(names.size() - 2), nullptr)) return drivers;
    for (const QString& name : textsOf(names.data()))
        drivers.push_back({name, readEntry(name, QStringLiteral("Driver"), "odbcinst.ini")});
    return drivers;
}

QStringList sourceEntries(const QString& source) {
    std::array<char, 4 * bufferSize> names{};
    const int length = SQLGetPrivateProfileString(source.toLocal8Bit().constData(), nullptr, "", names.data(),
                                                  static_cast<int>(names.size() - 2), "odbc.ini");
    return length > 0 ? textsOf(names.data()) : QStringList();
}

QString sourceDefinition(const QString& source, const QString& entry) {
    return readEntry(source, entry, "odbc.ini");
}

}  // namespace ado

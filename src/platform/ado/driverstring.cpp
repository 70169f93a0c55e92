#include "platform/ado/connectionstring.h"
#include "platform/ado/definitions.h"

#include <algorithm>

namespace ado {

namespace {

constexpr QStringView driverKeyword = u"Driver";
constexpr QStringView sourceKeyword = u"DSN";
constexpr QStringView serverKeyword = u"Server";
constexpr QStringView addressKeyword = u"Address";
constexpr QStringView portKeyword = u"Port";
constexpr QStringView protocolKeyword = u"TDS_Version";
constexpr QStringView userKeyword = u"UID";
constexpr QStringView passwordKeyword = u"PWD";
constexpr QStringView ticketKeyword = u"Trusted_Connection";

bool equal(const QString& left, QStringView right) {
    return right.compare(left, Qt::CaseInsensitive) == 0;
}

bool namesLogin(const ConnectionString& string) {
    return string.has({userKeyword, passwordKeyword, ticketKeyword});
}

QString entry(const QString& source, QStringView keyword) {
    return sourceDefinition(source, keyword.toString());
}

/// "(local)", "(local)\instance", ".,port": this machine.
QString reachable(const QString& server, QLatin1StringView localHost) {
    const auto end =
        std::ranges::find_if(server, [](QChar c) { return c == u'\\' || c == u','; }) - server.cbegin();
    const QStringView host = QStringView(server).first(end).trimmed();
    const bool isLocal = host.compare(u"(local)", Qt::CaseInsensitive) == 0 || host == u".";
    return isLocal && !localHost.isEmpty() ? localHost + server.sliced(end) : server;
}

/// Takes the port off "host,port"; of "host\instance,port" the instance goes too, since the port decides.
QString takePort(QString& server) {
    const qsizetype comma = server.lastIndexOf(u',');
    const QString port = server.sliced(comma + 1).trimmed();
    bool isNumber = false;
    port.toUShort(&isNumber);
    if (comma < 0 || !isNumber) return {};
    server.truncate(comma);
    server = server.left(server.indexOf(u'\\')).trimmed();
    return port;
}

void writeServer(ConnectionString& string, const DriverFamily& family) {
    QString server = reachable(*string.value({serverKeyword, addressKeyword}), family.localHost);
    if (!family.port.isEmpty()) {
        const QString port = takePort(server);
        if (!server.isEmpty() && !server.contains(u'\\') && !string.has({portKeyword}))
            string.prepend(portKeyword, port.isEmpty() ? QString(family.port) : port);
    }
    string.setValue({serverKeyword, addressKeyword}, server);
    if (!family.protocol.isEmpty() && !string.has({protocolKeyword}))
        string.prepend(protocolKeyword, family.protocol);
}

/// Puts what a data source says in the place of its name. What the string says itself counts.
void writeOut(ConnectionString& string, const QString& source, const QString& driver,
              const DriverFamily& family) {
    string.remove({sourceKeyword});
    const bool hasLogin = namesLogin(string);
    QStringList names = sourceEntries(source);
    std::ranges::reverse(names);
    for (const QString& name : names) {
        const bool isServer = equal(name, serverKeyword) || equal(name, addressKeyword);
        const bool isLogin =
            equal(name, userKeyword) || equal(name, passwordKeyword) || equal(name, ticketKeyword);
        if (equal(name, driverKeyword) || equal(name, u"Description") || (isLogin && hasLogin)) continue;
        const QString keyword = isServer ? serverKeyword.toString() : name;
        QString value = isServer ? entry(source, addressKeyword) : QString();
        if (value.isEmpty()) value = sourceDefinition(source, name);
        if (!string.has({keyword})) string.prepend(keyword, value);
    }
    string = ConnectionString(QStringLiteral("Driver={};") + string.text());
    string.setValue({driverKeyword}, driver);
    if (!family.port.isEmpty()) return;
    // Written for FreeTDS: the other drivers know neither item.
    string.remove({protocolKeyword});
    const auto port = string.value({portKeyword});
    string.remove({portKeyword});
    const auto server = string.value({serverKeyword});
    if (port && server && !server->contains(u',')) string.setValue({serverKeyword}, *server + u',' + *port);
}

/// Puts the driver that plays "SQL Server" in its place; the family of the string's driver.
DriverFamily nameDriver(ConnectionString& string) {
    const std::vector<RegisteredDriver> drivers = registeredDrivers();
    const auto direct = string.value({driverKeyword});
    const QString source = string.value({sourceKeyword}).value_or(QString());
    const QString named = direct ? *direct : entry(source, driverKeyword);
    const bool isRole = named.compare(sqlServerName, Qt::CaseInsensitive) == 0;
    const RegisteredDriver* player = isRole ? sqlServerDriver(drivers) : nullptr;
    const QString driver = player ? player->name : named;
    const DriverFamily* family = familyCalled(driver, drivers);
    if (!family) return {};
    if (direct)
        string.setValue({driverKeyword}, driver);
    else if (!family->readsSources || driver != named)
        writeOut(string, source, driver, *family);
    return *family;
}

/// A data source's own user goes along, which no driver reads everywhere; without any user, a driver that
/// wants to be told is told to log in as the machine's.
void writeLogin(ConnectionString& string, const DriverFamily& family) {
    const QString source = string.value({sourceKeyword}).value_or(QString());
    const QString user = source.isEmpty() ? QString() : entry(source, userKeyword);
    if (!user.isEmpty() && !namesLogin(string)) {
        string.prepend(passwordKeyword, entry(source, passwordKeyword));
        string.prepend(userKeyword, user);
    }
    const bool named = !string.value({userKeyword}).value_or(QString()).isEmpty();
    if (!family.takesTicket || named) return;
    for (const QStringView keyword : {ticketKeyword, QStringView(u"Authentication")})
        if (string.has({keyword}) || (!source.isEmpty() && !entry(source, keyword).isEmpty())) return;
    string.prepend(ticketKeyword, QStringLiteral("yes"));
}

/// A data source's server as it is typed: "host,port" where another port than the usual one is named.
QString serverOf(const QString& source) {
    for (const QStringView keyword : {serverKeyword, QStringView(u"Servername"), addressKeyword}) {
        const QString server = entry(source, keyword);
        if (server.isEmpty()) continue;
        const QString port = entry(source, portKeyword);
        // A "Servername" leads to freetds.conf, which knows the port.
        const bool isWhole = keyword == u"Servername" || server.contains(u',') || server.contains(u'\\');
        return isWhole || port.isEmpty() || port == u"1433" ? server : server + u',' + port;
    }
    return {};
}

}  // namespace

QString driverText(const ConnectionString& string) {
    ConnectionString result = string;
    result.normalize();
    const DriverFamily family = nameDriver(result);
    if (result.has({serverKeyword, addressKeyword})) writeServer(result, family);
    writeLogin(result, family);
    return result.text();
}

QString expandedText(const ConnectionString& string, const QString& machine) {
    ConnectionString result = string;
    if (!string.has({serverKeyword})) {
        QString server = string.value({addressKeyword, u"Servername"}).value_or(QString());
        const QString source = string.value({sourceKeyword}).value_or(QString());
        if (server.isEmpty() && !source.isEmpty()) server = serverOf(source);
        if (!server.isEmpty()) result.append(u"SERVER", server);
    }
    if (!string.has({u"WSID"})) result.append(u"WSID", machine);
    return result.text();
}

}  // namespace ado

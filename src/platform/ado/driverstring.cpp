#include "platform/ado/connectionstring.h"

namespace ado {

namespace {

constexpr QStringView serverKeyword = u"Server";
constexpr QStringView addressKeyword = u"Address";
constexpr QStringView sourceKeyword = u"DSN";

/// "(local)", "(local)\instance", ".", ".\instance": this machine.
QString reachable(const QString& server) {
    const qsizetype backslash = server.indexOf(u'\\');
    const QStringView host = QStringView(server).first(backslash < 0 ? server.size() : backslash).trimmed();
    if (host.compare(u"(local)", Qt::CaseInsensitive) != 0 && host != u".") return server;
    return QStringLiteral("127.0.0.1") + (backslash < 0 ? QString() : server.sliced(backslash));
}

bool namesPort(const QString& server) {
    return server.contains(u',') || server.contains(u'\\');
}

void addSourceDefaults(ConnectionString& string, const QString& source, const DefinitionReader& definition) {
    const auto entry = [&](QLatin1StringView name) { return definition(source, name); };
    // A "Servername" leads to freetds.conf, which knows the rest.
    if (entry(QLatin1StringView("Servername")).isEmpty()) {
        const QString server = entry(QLatin1StringView("Server"));
        if (!server.isEmpty() && !namesPort(server) && entry(QLatin1StringView("Port")).isEmpty() &&
            !string.has({u"Port"}))
            string.prepend(u"Port", QStringLiteral("1433"));
        if (entry(QLatin1StringView("TDS_Version")).isEmpty())
            string.prepend(u"TDS_Version", QStringLiteral("7.4"));
    }
    if (string.has({u"UID", u"PWD", u"Trusted_Connection"})) return;
    const QString user = entry(QLatin1StringView("UID"));
    if (user.isEmpty()) return;
    string.prepend(u"PWD", entry(QLatin1StringView("PWD")));
    string.prepend(u"UID", user);
}

}  // namespace

QString driverText(const ConnectionString& string, const DefinitionReader& definition) {
    ConnectionString result = string;
    result.normalize();
    if (const auto server = result.value({serverKeyword, addressKeyword})) {
        const QString known = reachable(*server);
        result.setValue({serverKeyword, addressKeyword}, known);
        if (!known.isEmpty() && !namesPort(known) && !result.has({u"Port"}))
            result.prepend(u"Port", QStringLiteral("1433"));
        if (!result.has({u"TDS_Version"})) result.prepend(u"TDS_Version", QStringLiteral("7.4"));
    } else if (const auto source = result.value({sourceKeyword})) {
        addSourceDefaults(result, *source, definition);
    }
    return result.text();
}

QString expandedText(const ConnectionString& string, const DefinitionReader& definition,
                     const QString& machine) {
    ConnectionString result = string;
    if (!string.has({serverKeyword})) {
        QString server = string.value({addressKeyword, u"Servername"}).value_or(QString());
        const QString source = string.value({sourceKeyword}).value_or(QString());
        for (const char* name : {"Server", "Servername", "Address"})
            if (server.isEmpty() && !source.isEmpty()) server = definition(source, QLatin1StringView(name));
        if (!server.isEmpty()) result.append(u"SERVER", server);
    }
    if (!string.has({u"WSID"})) result.append(u"WSID", machine);
    return result.text();
}

}  // namespace ado

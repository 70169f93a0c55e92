#include "platform/ado/connectionstring.h"

#include <QMap>
#include <QTest>

using namespace ado;

using Definitions = QMap<QString, QString>;

class ConnectionStringTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void items_data();
    void items();
    void hardToRead_data();
    void hardToRead();
    void setItems_data();
    void setItems();
    void driverTexts_data();
    void driverTexts();
    void expandedTexts_data();
    void expandedTexts();
};

void ConnectionStringTest::items_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("server");  // null: no such item
    const auto row = [](const char* name, const char* text, const QString& server) {
        QTest::newRow(name) << QString::fromUtf8(text) << server;
    };
    row("plain", "driver={SQL Server};server=A;uid=b", QStringLiteral("A"));
    row("keyword's case", "SERVER=A", QStringLiteral("A"));
    row("blanks", "; server = A\\B,1 ;uid=b", QStringLiteral("A\\B,1"));
    row("braces", "server={A;B}", QStringLiteral("A;B"));
    row("braces doubled", "server={A}}B};uid=c", QStringLiteral("A}B"));
    row("braces never closed", "server={A;uid=b", QStringLiteral("A;uid=b"));
    row("inside braces", "pwd={x;server=B};server=A", QStringLiteral("A"));
    row("inside a value", "pwd=server=B;server=A", QStringLiteral("A"));
    row("first counts", "server=A;server=B", QStringLiteral("A"));
    row("empty", "server=;uid=b", QStringLiteral(""));
    row("nothing behind the keyword", "server;uid=b", QString());
    row("none", "DSN=X;;Database=pubs", QString());
    row("other keyword", "xserver=A", QString());
    row("nothing at all", "", QString());
}

void ConnectionStringTest::items() {
    QFETCH(QString, text);
    QFETCH(QString, server);
    const auto value = ConnectionString(text).value({u"Server"});
    QCOMPARE(value.has_value(), !server.isNull());
    QCOMPARE(value.value_or(QString()), server);
}

void ConnectionStringTest::hardToRead_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("taken");  // null: none
    const auto row = [](const char* name, const char* text, const char* left, const QString& taken = {}) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(left) << taken;
    };
    row("a closing brace", "uid=a;DATABASE={a}};b}", "uid=a;", QStringLiteral("a};b"));
    row("twice", "database={a}}};x=1;Database={b}};}", ";x=1;", QStringLiteral("b};"));
    row("easy to read", "Database={a;b};database=a}b", "Database={a;b};database=a}b");
    row("another item", "pwd={a}};b}", "pwd={a}};b}");
}

void ConnectionStringTest::hardToRead() {
    QFETCH(QString, text);
    QFETCH(QString, taken);
    ConnectionString string(text);
    QCOMPARE(string.takeHardToRead(u"Database").value_or(QString()), taken);
    QTEST(string.text(), "left");
}

void ConnectionStringTest::setItems_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* name, const char* text, const char* value, const char* result) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(value)
                            << QString::fromUtf8(result);
    };
    row("replaced in its place", "a=1;Pwd=old;b=2", "new", "a=1;Pwd=new;b=2");
    row("put behind", "a=1", "new", "a=1;PWD=new");
    row("put behind a semicolon", "a=1;", "new", "a=1;PWD=new");
    row("put into nothing", "", "new", "PWD=new");
    row("in braces", "PWD={a;b};c=1", "x;}y", "PWD={x;}}y};c=1");
    row("blanks kept", "PWD=a", " b ", "PWD={ b }");
}

void ConnectionStringTest::setItems() {
    QFETCH(QString, text);
    QFETCH(QString, value);
    ConnectionString string(text);
    string.setValue({u"PWD"}, value);
    QTEST(string.text(), "result");
    QCOMPARE(string.value({u"PWD"}), std::optional(value));
}

static DefinitionReader readerOf(const Definitions& entries) {
    return [entries](const QString& source, const QString& entry) {
        return source == QStringLiteral("X") ? entries.value(entry) : QString();
    };
}

void ConnectionStringTest::driverTexts_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<Definitions>("entries");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* name, const char* text, const char* result,
                        const Definitions& entries = {}) {
        QTest::newRow(name) << QString::fromUtf8(text) << entries << QString::fromUtf8(result);
    };
    const auto text = [](const char* characters) { return QString::fromLatin1(characters); };
    row("this machine", "driver={SQL Server};server=(local);uid=sa;pwd=x",
        "TDS_Version=7.4;Port=1433;driver={SQL Server};server=127.0.0.1;uid=sa;pwd=x");
    row("this machine's instance", "server=(LOCAL)\\dev", "TDS_Version=7.4;server=127.0.0.1\\dev");
    row("a dot", "Server=.", "TDS_Version=7.4;Port=1433;Server=127.0.0.1");
    row("a named server", "server=DB1;uid=", "TDS_Version=7.4;Port=1433;server=DB1;uid=");
    row("a port", "server=DB1,1500", "TDS_Version=7.4;server=DB1,1500");
    row("what the string names itself", "server=DB1;port=1500;tds_version=7.0",
        "server=DB1;port=1500;tds_version=7.0");
    row("blanks", " server = DB1,1 ; uid = sa", "TDS_Version=7.4;server=DB1,1;uid= sa");
    row("braces at the end", "server=DB1,1;pwd={a;b}", "TDS_Version=7.4;server=DB1,1;pwd={a;b};");
    row("(local) in a password", "pwd=(local)", "pwd=(local)");
    row("a password with odd characters", "server=DB1,1;uid=sa;pwd=a}b{c='d\"",
        "TDS_Version=7.4;server=DB1,1;uid=sa;pwd=a}b{c='d\"");
    row("a source", "DSN=X;", "TDS_Version=7.4;Port=1433;DSN=X;", {{text("Server"), text("DB1")}});
    row("a source with a port", "DSN=X;;Database=pubs", "TDS_Version=7.4;DSN=X;;Database=pubs",
        {{text("Server"), text("DB1")}, {text("Port"), text("1500")}});
    row("a source with all it needs", "DSN=X;", "DSN=X;",
        {{text("Server"), text("DB1,1")}, {text("TDS_Version"), text("7.1")}});
    row("a source of the driver's own file", "DSN=X;", "DSN=X;", {{text("Servername"), text("DB1")}});
    row("a source with a user", "DSN=X;", "UID=me;PWD={a;b};DSN=X;",
        {{text("Servername"), text("DB1")}, {text("UID"), text("me")}, {text("PWD"), text("a;b")}});
    row("a source with a user, another given", "DSN=X;UID=you", "DSN=X;UID=you",
        {{text("Servername"), text("DB1")}, {text("UID"), text("me")}});
    row("an unknown source", "DSN=Y;", "TDS_Version=7.4;DSN=Y;");
    row("nothing", "", "");
}

void ConnectionStringTest::driverTexts() {
    QFETCH(QString, text);
    QFETCH(Definitions, entries);
    QTEST(driverText(ConnectionString(text), readerOf(entries)), "result");
}

void ConnectionStringTest::expandedTexts_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* name, const char* text, const char* result) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("as the user typed it", "server=(local);uid=sa", "server=(local);uid=sa;WSID=PC");
    row("the source's server", "DSN=X;", "DSN=X;SERVER=DB1;WSID=PC");
    row("the string's own items", "server=A;wsid=B", "server=A;wsid=B");
    row("no server anywhere", "DSN=Y", "DSN=Y;WSID=PC");
}

void ConnectionStringTest::expandedTexts() {
    QFETCH(QString, text);
    const auto definition = readerOf({{QStringLiteral("Address"), QStringLiteral("DB1")}});
    QTEST(expandedText(ConnectionString(text), definition, QStringLiteral("PC")), "result");
}

QTEST_GUILESS_MAIN(ConnectionStringTest)
#include "test_connectionstring.moc"

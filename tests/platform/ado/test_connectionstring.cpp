#include "platform/ado/connectionstring.h"
#include "support/table.h"

#include <QTest>

using namespace ado;
using testsupport::Table;

class ConnectionStringTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void items_data();
    void items();
    void hardToRead_data();
    void hardToRead();
    void setItems_data();
    void setItems();
};

void ConnectionStringTest::items_data() {
    const Table<QString, QString> row("text", "server");  // null: no such item
    row("plain", "driver={SQL Server};server=A;uid=b", "A");
    row("keyword's case", "SERVER=A", "A");
    row("blanks", "; server = A\\B,1 ;uid=b", "A\\B,1");
    row("braces", "server={A;B}", "A;B");
    row("braces doubled", "server={A}}B};uid=c", "A}B");
    row("braces never closed", "server={A;uid=b", "A;uid=b");
    row("inside braces", "pwd={x;server=B};server=A", "A");
    row("inside a value", "pwd=server=B;server=A", "A");
    row("first counts", "server=A;server=B", "A");
    row("empty", "server=;uid=b", "");
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
    const Table<QString, QString, QString> row("text", "left", "taken");  // null: none
    row("a closing brace", "uid=a;DATABASE={a}};b}", "uid=a;", "a};b");
    row("twice", "database={a}}};x=1;Database={b}};}", ";x=1;", "b};");
    row("easy to read", "Database={a;b};database=a}b", "Database={a;b};database=a}b", {});
    row("another item", "pwd={a}};b}", "pwd={a}};b}", {});
}

void ConnectionStringTest::hardToRead() {
    QFETCH(QString, text);
    QFETCH(QString, taken);
    ConnectionString string(text);
    QCOMPARE(string.takeHardToRead(u"Database").value_or(QString()), taken);
    QTEST(string.text(), "left");
}

void ConnectionStringTest::setItems_data() {
    const Table<QString, QString, QString> row("text", "value", "result");
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

QTEST_GUILESS_MAIN(ConnectionStringTest)
#include "test_connectionstring.moc"

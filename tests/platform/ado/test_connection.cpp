#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "scriptedserver.h"
#include "support/table.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <thread>

using namespace ado;

/// A listener that is no server. A silent one never takes its clients in; the others answer the first packet
/// with the beginning of a pre-login reply, and a trickling one goes on a byte at a time.
class Listener {
  public:
    enum Manner { Silent, HangsUp, StopsHalfway, Trickles };

    explicit Listener(Manner manner) {
        m_server.listen(QHostAddress::LocalHost);
        if (manner == Silent) return;
        m_server.moveToThread(nullptr);
        m_thread = std::jthread([this, manner](const std::stop_token& stop) { serve(manner, stop); });
    }
    QString connectionString() const {
        return QStringLiteral("driver={SQL Server};server=127.0.0.1,%1;uid=sa;pwd=x")
            .arg(m_server.serverPort());
    }

  private:
    void serve(Manner manner, const std::stop_token& stop) {
        m_server.moveToThread(QThread::currentThread());
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        while (!stop.stop_requested()) {
            if (m_server.waitForNewConnection(20)) {
                clients.emplace_back(m_server.nextPendingConnection());
                clients.back()->setParent(nullptr);
                clients.back()->waitForReadyRead(1000);
                if (manner == HangsUp)
                    clients.pop_back();
                else
                    clients.back()->write("\x04\x01\x0f\xff\x00\x00\x01\x00\x00", 9);
            }
            for (const auto& client : clients) {
                if (manner == Trickles) client->write("\0", 1);
                client->flush();
            }
        }
        clients.clear();
        m_server.close();
    }

    QTcpServer m_server;
    std::jthread m_thread;
};

class ConnectionTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void opens();
    void userAndPassword_data();
    void userAndPassword();
    void failures_data();
    void failures();
    void badListeners_data();
    void badListeners();
    void anAbandonedAttemptHarmsNobody();
    void states();

  private:
    std::unique_ptr<ScriptedServer> m_server;
};

void ConnectionTest::initTestCase() {
    m_server = std::make_unique<ScriptedServer>();
}

static QStringList whoIs(const Connection& connection) {
    Recordset rows;
    rows.Open(QStringLiteral("who"), connection);
    return rows.Fields(0).text().toString().split(u'|');
}

void ConnectionTest::opens() {
    Connection connection;
    QCOMPARE(connection.ConnectionTimeout(), 15);
    QCOMPARE(connection.CommandTimeout(), 30);
    const QString text = m_server->connectionString() + QStringLiteral(";database=B\u00E4r \U0001F43B");
    connection.setConnectionString(text);
    connection.Open();
    QCOMPARE(connection.ConnectionString(), text + QStringLiteral(";WSID=") + QSysInfo::machineHostName());
    QCOMPARE(whoIs(connection).last(), QStringLiteral("B\u00E4r \U0001F43B"));
    connection.Close();
    QCOMPARE(connection.ConnectionString(), text);
    // One login, and nothing else on the wire.
    QCOMPARE(m_server->takeBatches(), QStringList());
}

void ConnectionTest::userAndPassword_data() {
    const testsupport::Table<QString, QString, QString, QString, QString> row("items", "user", "password",
                                                                              "userThere", "passwordThere");
    row("from the string", "uid=a;pwd=b", "", "", "a", "b");
    row("from the arguments", "uid=a;pwd=b", "c", "d", "c", "d");
    row("only a user", "pwd=b", "c", "", "c", "b");
    row("a semicolon", "uid=a;pwd=b", "", "x;y=z", "a", "x;y=z");
    row("in braces at the end", "uid=a;pwd={x;y}", "", "", "a", "x;y");
    row("letters of the world", "uid=\u0416;pwd=\u6F22\U0001F600", "", "", "\u0416", "\u6F22\U0001F600");
}

void ConnectionTest::userAndPassword() {
    QFETCH(QString, items);
    QFETCH(QString, user);
    QFETCH(QString, password);
    Connection connection;
    connection.Open(QStringLiteral("driver={SQL Server};server=127.0.0.1,%1;").arg(m_server->port()) + items,
                    user, password);
    QTEST(whoIs(connection).at(0), "userThere");
    QTEST(whoIs(connection).at(1), "passwordThere");
}

void ConnectionTest::failures_data() {
    const testsupport::Table<QString, qint32> row("text", "number");
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QString nobody = QString::number(closed.serverPort());
    closed.close();
    const QString driver = QStringLiteral("driver={SQL Server};");
    row("wrong password", m_server->connectionString() + QStringLiteral(";pwd=wrong"), -2147217843);
    row("nobody listens", driver + QStringLiteral("server=127.0.0.1,%1;uid=sa").arg(nobody), -2147467259);
    row("unknown host", driver + QStringLiteral("server=nobody.invalid;uid=sa"), -2147467259);
    row("no driver", "driver={No Driver};server=127.0.0.1", -2147467259);
    row("no source", "DSN=No Source;", -2147467259);
    row("nothing", "", -2147467259);
    row("no ticket", driver + QStringLiteral("server=127.0.0.1,%1;uid=;pwd=").arg(m_server->port()),
        -2147467259);
}

void ConnectionTest::failures() {
    QFETCH(QString, text);
    Connection connection;
    const auto failure = failureOf([&] { connection.Open(text); });
    QVERIFY(failure);
    QTEST(failure->number(), "number");
    QVERIFY(!failure->description().isEmpty());
    QVERIFY(!connection.isOpen());
}

void ConnectionTest::badListeners_data() {
    const testsupport::Table<int, qint32> row("manner", "number");
    row("never says a word", int(Listener::Silent), -2147217871);
    row("hangs up", int(Listener::HangsUp), -2147467259);
    row("stops halfway", int(Listener::StopsHalfway), -2147217871);
    row("a byte now and then", int(Listener::Trickles), -2147217871);
}

void ConnectionTest::badListeners() {
    QFETCH(int, manner);
    const Listener listener{static_cast<Listener::Manner>(manner)};
    Connection connection;
    connection.setConnectionTimeout(1);
    const auto failure = failureOf([&] { connection.Open(listener.connectionString()); });
    QVERIFY(failure);
    QTEST(failure->number(), "number");
    QVERIFY(!connection.isOpen());
}

void ConnectionTest::anAbandonedAttemptHarmsNobody() {
    const Listener listener{Listener::Trickles};
    Connection given;
    given.setConnectionTimeout(1);
    QCOMPARE(numberOf([&] { given.Open(listener.connectionString()); }), -2147217871);
    Connection connection;
    connection.Open(m_server->connectionString());
    QCOMPARE(whoIs(connection).at(0), QStringLiteral("sa"));
    given.Open(m_server->connectionString());
    QCOMPARE(whoIs(given).at(0), QStringLiteral("sa"));
}

void ConnectionTest::states() {
    Connection connection;
    connection.Open(m_server->connectionString());
    const Connection same = connection;
    QVERIFY(same.isOpen());
    QCOMPARE(numberOf([&] { connection.Open(); }), 3705);
    QCOMPARE(numberOf([&] { connection.setConnectionString(QString()); }), 3705);
    connection.Close();
    connection.Close();
    QVERIFY(!same.isOpen());
    connection.setConnectionTimeout(0);
    connection.Open();
    QVERIFY(same.isOpen());
}

QTEST_GUILESS_MAIN(ConnectionTest)
#include "test_connection.moc"

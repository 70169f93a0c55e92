#include "serverhost.h"
#include "support/table.h"
#include "wireclient.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

namespace {

constexpr char kHeaders[] = "16000000 12000000 0200 0000000000000000 01000000";

/// A LOGIN7 with the bytes at `at` replaced.
QByteArray spoiltLogin(int at, const char* bytes) {
    QByteArray message = loginMessage({});
    const QByteArray other = hex(bytes);
    return message.replace(8 + at, other.size(), other);
}

void checkServes(ServerHost& host) {
    WireClient good(host.port());
    good.logIn();
    QCOMPARE(good.runBatch(QStringLiteral("echo alive")).text, QStringLiteral("alive"));
}

}  // namespace

/// What no client should send, and clients that go or stand still.
class TestHostility : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void malformedBeforeLogin_data();
    void malformedBeforeLogin();
    void malformedAfterLogin_data();
    void malformedAfterLogin();
    void vanishesAtEveryByte();
    void vanishesInAnAnswer();
    void saysNothing_data();
    void saysNothing();
    void tooManyClients();
    void endWhileClientDoesNotRead();
    void endWhileClientIsIdle();
    void randomBytes();
};

void TestHostility::malformedBeforeLogin_data() {
    const testsupport::Table<QByteArray> row("bytes");
    row("no protocol at all", "GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    row("a TLS greeting", hex("1603010200010001fc0303"));
    row("login of older versions", packet(2, QByteArray(500, '\0')));
    row("packet without length", hex("1201000000000000"));
    row("packet shorter than its header", hex("1201000700000000"));
    row("packet larger than any", hex("1201ffff00000000"));
    row("attention with data", hex("0601001000000000 0000000000000000"));
    row("batch before the login", batchMessage(QStringLiteral("echo x")));
    row("pre-login without end", packet(0x12, hex("00000b0006")));
    row("pre-login option outside", packet(0x12, hex("0000ff0006 ff")));
    row("empty pre-login", packet(0x12, {}));
    row("pre-login twice", preLoginMessage() + preLoginMessage());
    row("pre-login that goes on as login", preLoginMessage().replace(1, 1, hex("00")) + loginMessage({}));
    row("login of no bytes", packet(0x10, {}));
    row("login of its numbers only", packet(0x10, loginMessage({}).mid(8, 36)));
    row("login with a length beyond it", spoiltLogin(0, "ffff0000"));
    row("login with a huge length", spoiltLogin(0, "ffffffff"));
    row("login with a small length", spoiltLogin(0, "08000000"));
    row("login of a version before 7.0", spoiltLogin(4, "00000006"));
    row("host outside", spoiltLogin(36, "ffff0400"));
    row("user outside by one byte", spoiltLogin(40, "dd000200"));
    row("password of many characters", spoiltLogin(46, "ffff"));
    row("database too long a name", spoiltLogin(70, "8100"));

    QByteArray endless;
    for (int i = 0; i < 10; ++i)
        endless += packet(0x12, QByteArray(32000, 'x'), 0);
    row("handshake too large", endless);
}

void TestHostility::malformedBeforeLogin() {
    QFETCH(QByteArray, bytes);
    ServerHost host;
    WireClient client(host.port());
    client.send(bytes);
    QVERIFY(client.waitForEnd());
    checkServes(host);
    QTRY_COMPARE(host.liveClients(), 0);
}

void TestHostility::malformedAfterLogin_data() {
    const testsupport::Table<QByteArray> row("bytes");
    const auto batch = [](const char* digits) { return packet(1, hex(digits)); };
    const auto call = [](const char* digits) { return packet(3, hex(kHeaders) + hex(digits)); };
    row("unknown packet type", packet(0x53, {}));
    row("second login", loginMessage({}));
    row("half a character", batch("04000000 61"));
    row("batch without headers", batch("6100"));
    row("headers smaller than their length", batch("03000000"));
    row("headers beyond the message", batch("ffffff7f 12000000 0200"));
    row("headers of negative length", batch("ffffffff"));
    row("header of no length", batch("0a000000 00000000 0200"));
    row("header smaller than its type", batch("09000000 05000000 02"));
    row("header beyond the headers", batch("0a000000 07000000 0200"));
    row("messages mixed", packet(1, hex(kHeaders), 0) + packet(3, hex("00")));
    row("call without a name", call(""));
    row("name beyond the call", call("ff7f 6100"));
    row("statement beyond the call", call("ffff 0a00 0000 00 00 e7 401f 0904d00034 ff00 6100"));
    row("chunk beyond the call",
        call("ffff 0a00 0000 00 00 e7 ffff 0904d00034 feffffffffffffff f0ffffff 6100"));
    row("ntext beyond the call", call("ffff 0a00 0000 00 00 63 ff000000 0904d00034 ffffff7f 6100"));
    row("transaction without a kind", packet(0x0E, hex(kHeaders)));
    row("name beyond the transaction", packet(0x0E, hex(kHeaders) + hex("0700 ff 6100")));

    QByteArray large;
    for (int i = 0; i < 40; ++i)
        large += packet(1, QByteArray(32000, 'x'), 0);
    row("message too large", large);
}

void TestHostility::malformedAfterLogin() {
    QFETCH(QByteArray, bytes);
    ServerHost host({}, {.largestMessage = 1024 * 1024});
    WireClient client(host.port());
    client.logIn();
    client.send(bytes);
    QVERIFY(client.waitForEnd());
    checkServes(host);
    QTRY_COMPARE(host.liveClients(), 0);
}

void TestHostility::vanishesAtEveryByte() {
    ServerHost host;
    const QByteArray conversation =
        preLoginMessage() + loginMessage({}) + batchMessage(QStringLiteral("echo x"));
    for (qsizetype cut = 0; cut < conversation.size(); ++cut) {
        WireClient client(host.port());
        client.send(conversation.left(cut));
        client.vanish();
    }
    checkServes(host);
    QTRY_COMPARE(host.liveClients(), 0);
}

void TestHostility::vanishesInAnAnswer() {
    ServerHost host;
    for (const char* batch : {"rows", "wait"}) {
        WireClient client(host.port());
        client.logIn();
        client.send(batchMessage(QString::fromLatin1(batch)));
        if (batch[0] == 'r') QVERIFY(client.socket().waitForReadyRead());
        client.vanish();
        checkServes(host);
        QTRY_COMPARE(host.liveClients(), 0);
    }
}

void TestHostility::saysNothing_data() {
    const testsupport::Table<QByteArray, bool> row("sent", "loggedIn");
    row("nothing", QByteArray(), false);
    row("half a pre-login", preLoginMessage().left(20), false);
    row("nothing more", QByteArray(), true);
    row("half a batch", batchMessage(QStringLiteral("echo x")).left(20), true);
    row("reads no rows", batchMessage(QStringLiteral("rows")), true);
}

void TestHostility::saysNothing() {
    QFETCH(QByteArray, sent);
    QFETCH(bool, loggedIn);
    ServerHost host({}, {.handshakeMilliseconds = loggedIn ? 15000 : 30, .idleMilliseconds = 30});
    WireClient client(host.port());
    if (loggedIn) client.logIn();
    client.socket().setReadBufferSize(1024);
    client.send(sent);
    QTRY_COMPARE(host.liveClients(), 0);
    client.socket().setReadBufferSize(0);
    QVERIFY(client.waitForEnd());
}

void TestHostility::tooManyClients() {
    ServerHost host({}, {.mostClients = 2});
    WireClient first(host.port());
    first.logIn();
    {
        WireClient second(host.port());
        second.logIn();
        WireClient third(host.port());
        QCOMPARE(third.logIn().messages, QList<int>{17809});
        QVERIFY(third.waitForEnd());
        QCOMPARE(first.runBatch(QStringLiteral("echo on")).text, QStringLiteral("on"));
    }
    QTRY_COMPARE(host.liveClients(), 1);
    checkServes(host);
}

void TestHostility::endWhileClientDoesNotRead() {
    // More than the system's own buffers take, so the server stands in the middle of its write.
    ServerHost host([](const QString&, engine::ResultSink& sink) {
        sink.columns({{QStringLiteral("t"), {engine::TypeId::Text}}});
        const engine::Value row[]{QString(48 * 1024 * 1024, u'x')};
        sink.row(row);
    });
    WireClient client(host.port());
    client.logIn();
    client.socket().setReadBufferSize(1024);
    client.send(batchMessage(QStringLiteral("large")));
    QVERIFY(client.socket().waitForReadyRead());
    host.stop();
    QVERIFY(client.waitForEnd());
}

void TestHostility::endWhileClientIsIdle() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    WireClient waiting(host.port());
    waiting.logIn();
    waiting.send(batchMessage(QStringLiteral("wait")));
    host.stop();
    QVERIFY(client.waitForEnd());
    QVERIFY(waiting.waitForEnd());
}

// Good conversations with bytes changed, left out or put in, from a fixed seed.
void TestHostility::randomBytes() {
    ServerHost host;
    QRandomGenerator random(20240607);
    const QList<QByteArray> messages{
        preLoginMessage(), loginMessage({}), batchMessage(QStringLiteral("echo x")),
        packet(3, hex(kHeaders) + hex("ffff 0a00 0000 00 00 e7 401f 0904d00034 0200 7800")),
        packet(0x0E, hex(kHeaders) + hex("0500 00 00"))};
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes;
        // Some rounds come through the login whole, so that what follows it is reached as well.
        const qsizetype whole = random.bounded(3);
        for (qsizetype i = 0; i < messages.size(); ++i) {
            QByteArray message = messages[i];
            for (int change = random.bounded(4); i >= whole && change > 0; --change) {
                const int at = random.bounded(int(message.size()));
                switch (random.bounded(3)) {
                    case 0:
                        message[at] = char(random.bounded(256));
                        break;
                    case 1:
                        message.remove(at, 1 + random.bounded(4));
                        break;
                    default:
                        message.insert(at, char(random.bounded(256)));
                        break;
                }
                if (message.isEmpty()) message = "x";
            }
            bytes += message;
        }
        WireClient client(host.port());
        // Longer than any packet, and no type of one: whatever it meets, it ends the conversation.
        client.send(bytes + QByteArray(70000, '\xff'));
        QVERIFY(client.waitForEnd());
    }
    checkServes(host);
    QTRY_COMPARE(host.liveClients(), 0);
}

QTEST_GUILESS_MAIN(TestHostility)
#include "test_hostility.moc"

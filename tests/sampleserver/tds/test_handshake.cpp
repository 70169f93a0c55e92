#include "serverhost.h"
#include "support/table.h"
#include "wireclient.h"

#include <QTest>

namespace {

LoginFields fieldsOf(quint32 version) {
    LoginFields fields;
    fields.version = version;
    return fields;
}

}  // namespace

/// From the connection to the end of the login.
class TestHandshake : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void preLoginIsAnswered();
    void versions_data();
    void versions();
    void loginTellsWhoAsks();
    void refusals_data();
    void refusals();
    void packetSizes_data();
    void packetSizes();
};

void TestHandshake::preLoginIsAnswered() {
    ServerHost host;
    WireClient client(host.port());
    client.send(preLoginMessage());
    // Version, encryption (2: not supported), instance, thread id, active result sets (0: off).
    QCOMPARE(client.readMessage().toHex(), QByteArray("00001a0006"
                                                      "0100200001"
                                                      "0200210001"
                                                      "0300220000"
                                                      "0400220001"
                                                      "ff"
                                                      "070004270000"
                                                      "02"
                                                      "00"
                                                      "00"));
}

void TestHandshake::versions_data() {
    const testsupport::Table<quint32, QByteArray> row("asked", "answered");
    row("7.0", kTds70, QByteArray("07000000"));
    row("7.1 first", 0x71000000u, QByteArray("07010000"));
    row("7.1", kTds71, QByteArray("71000001"));
    row("7.2", kTds72, QByteArray("72090002"));
    row("7.3A", 0x730A0003u, QByteArray("730a0003"));
    row("7.3B", kTds73, QByteArray("730b0003"));
    row("7.4", kTds74, QByteArray("74000004"));
    row("later", 0x75000001u, QByteArray("74000004"));
}

void TestHandshake::versions() {
    QFETCH(quint32, asked);
    ServerHost host;
    WireClient client(host.port());
    const Reply reply = client.logIn(fieldsOf(asked));
    QCOMPARE(reply.tokens.toHex(), QByteArray("e3abe3e3abade3fd"));
    QTEST(reply.loginAck.mid(1, 4).toHex(), "answered");
    QCOMPARE(reply.messages, QList<int>({5701, 5703}));
    QCOMPARE(reply.doneStatus, QList<quint16>{0});
    QVERIFY(reply.changes.contains(hex("01") + hex("06") + utf16(QStringLiteral("master")) + hex("06") +
                                   utf16(QStringLiteral("master"))));
    QVERIFY(reply.changes.contains(asked == kTds70
                                       ? hex("03 06") + utf16(QStringLiteral("cp1252")) + hex("00")
                                       : hex("07 05 0904d00034 00")));

    const Reply who = client.runBatch(QStringLiteral("echo \U0001F600"));
    QCOMPARE(who.text, QStringLiteral("\U0001F600"));
    QCOMPARE(who.tokens.toHex(), QByteArray("81d1fd"));
    QCOMPARE(who.doneStatus, QList<quint16>{0x10});
    QCOMPARE(who.lastCount, quint64(1));
}

void TestHandshake::loginTellsWhoAsks() {
    ServerHost host;
    WireClient client(host.port());
    LoginFields fields;
    fields.database = QStringLiteral("Gr\u00f6\u00dfe");
    client.logIn(fields);
    QCOMPARE(client.runBatch(QStringLiteral("who")).text,
             QStringLiteral("sa|p\u00e4ss\u20ac|HOST|test|Gr\u00f6\u00dfe"));
}

void TestHandshake::refusals_data() {
    const testsupport::Table<LoginFields, QList<int>> row("fields", "messages");
    LoginFields wrong;
    wrong.password = QStringLiteral("wrong");
    row("password", wrong, {18456});
    LoginFields trusted;
    trusted.flags2 = 0x80;
    row("operating system's user", trusted, {18452});
}

void TestHandshake::refusals() {
    QFETCH(LoginFields, fields);
    ServerHost host;
    WireClient client(host.port());
    const Reply reply = client.logIn(fields);
    QTEST(reply.messages, "messages");
    QCOMPARE(reply.doneStatus, QList<quint16>{2});
    QVERIFY(reply.loginAck.isEmpty());
    QVERIFY(client.waitForEnd());
    QTRY_COMPARE(host.liveClients(), 0);
}

void TestHandshake::packetSizes_data() {
    const testsupport::Table<quint32, quint16> row("asked", "agreed");
    row("none", 0u, quint16(4096));
    row("too small", 100u, quint16(512));
    row("smallest", 512u, quint16(512));
    row("odd", 1001u, quint16(1001));
    row("largest", 32767u, quint16(32767));
    row("too large", 0xFFFFFFFFu, quint16(32767));
}

void TestHandshake::packetSizes() {
    QFETCH(quint32, asked);
    QFETCH(quint16, agreed);
    ServerHost host;
    WireClient client(host.port());
    LoginFields fields;
    fields.packetSize = asked;
    const Reply login = client.logIn(fields);
    const QString size = QString::number(agreed);
    QCOMPARE(login.changes.last().left(2 + 2 * size.size()), hex("04") + char(size.size()) + utf16(size));

    // A value of a megabyte, far larger than any packet, comes whole and in packets of the agreed size.
    const QString text = QStringLiteral("0123456789abcdef").repeated(32768);
    const Reply reply = client.runBatch(QStringLiteral("echo ") + text);
    QCOMPARE(reply.text, text);
    for (qsizetype i = 0; i + 1 < reply.packetSizes.size(); ++i)
        QCOMPARE(reply.packetSizes[i], agreed);
    QVERIFY(reply.packetSizes.last() <= agreed);
}

QTEST_GUILESS_MAIN(TestHandshake)
#include "test_handshake.moc"

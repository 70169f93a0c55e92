#include "serverhost.h"
#include "support/table.h"
#include "wireclient.h"

#include <QTest>

#include <functional>

using engine::ResultSink;
using engine::SqlMessage;
using engine::TypeId;
using engine::Value;

using Tell = std::function<void(ResultSink&)>;
Q_DECLARE_METATYPE(Tell)

namespace {

constexpr char kHeaders[] = "16000000 12000000 0200 0000000000000000 01000000";
constexpr char kAttention[] = "0601000800000000";

void tellColumns(ResultSink& sink) {
    sink.columns({{QStringLiteral("n"), {TypeId::Int}, true}});
}

void tellRow(ResultSink& sink, qint64 number) {
    const Value row[]{number};
    sink.row(row);
}

/// Nothing of what came before may show in the answer to the next batch.
void checkGoesOn(WireClient& client) {
    const Reply reply = client.runBatch(QStringLiteral("echo on"));
    QCOMPARE(reply.text, QStringLiteral("on"));
    QCOMPARE(reply.tokens.toHex(), QByteArray("81d1fd"));
    QCOMPARE(reply.doneStatus, QList<quint16>{0x10});
}

LoginFields version(quint32 number) {
    LoginFields fields;
    fields.version = number;
    return fields;
}

}  // namespace

/// Requests of a client that is logged in.
class TestRequests : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void results_data();
    void results();
    void messageBytes();
    void calls_data();
    void calls();
    void transactions_data();
    void transactions();
    void refusesBulkLoad();
    void attentionEndsRows();
    void withdrawals_data();
    void withdrawals();
    void resetConnection();
    void cutAtEveryByte();
    void packetsOfEverySize();
    void responsesAtPacketEdges();
    void requestsInOneWrite();
    void manyClients();
};

void TestRequests::results_data() {
    const testsupport::Table<Tell, QByteArray, QList<quint16>> row("tell", "tokens", "statuses");
    const SqlMessage error{.number = 208, .text = QStringLiteral("no")};
    const SqlMessage information{.number = 0, .severity = 0, .text = QStringLiteral("so")};
    row("nothing", [](ResultSink&) {}, "fd", {0});
    row("no count", [](ResultSink& sink) { sink.statementDone(-1, false); }, "fd", {0});
    row("two results",
        [](ResultSink& sink) {
            tellColumns(sink);
            tellRow(sink, 1);
            sink.statementDone(1, true);
            tellColumns(sink);
            sink.statementDone(0, true);
        },
        "81d1fd81fd", {0x11, 0x10});
    row("error", [=](ResultSink& sink) { sink.message(error); }, "aafd", {2});
    row("error and its end",
        [=](ResultSink& sink) {
            sink.message(error);
            sink.statementDone(-1, false);
            sink.statementDone(-1, false);
        },
        "aafdfd", {3, 0});
    row("error behind a result",
        [=](ResultSink& sink) {
            tellColumns(sink);
            sink.statementDone(0, true);
            sink.message(error);
        },
        "81fdaafd", {0x11, 2});
    row("information", [=](ResultSink& sink) { sink.message(information); }, "abfd", {0});
    row("row that does not fit",
        [=](ResultSink& sink) {
            tellColumns(sink);
            tellRow(sink, 1);
            tellRow(sink, qint64(1) << 40);
            tellRow(sink, 2);
            if (sink.cancelled()) sink.statementDone(1, true);
        },
        "81d1aafd", {0x12});
}

void TestRequests::results() {
    QFETCH(Tell, tell);
    ServerHost host([tell](const QString&, ResultSink& sink) { tell(sink); });
    for (const quint32 number : {kTds70, kTds74}) {
        WireClient client(host.port());
        client.logIn(version(number));
        const Reply reply = client.runBatch(QStringLiteral("go"));
        QTEST(reply.tokens.toHex(), "tokens");
        QTEST(reply.doneStatus, "statuses");
    }
}

void TestRequests::messageBytes() {
    const auto tell = [](const QString&, ResultSink& sink) {
        sink.message(
            {.number = 208, .severity = 16, .state = 3, .line = 0x102, .text = QStringLiteral("no")});
        sink.databaseChanged(QStringLiteral("a"), QStringLiteral("b"));
    };
    ServerHost host(tell, {.serverName = QStringLiteral("S")});
    const QByteArray start = "d0000000 03 10 0200 6e006f00 01 5300 00 ";
    const QByteArray change = "e3 0700 01 01 6200 01 6100 ";
    WireClient old(host.port());
    old.logIn(version(kTds71));
    QCOMPARE(old.runBatch(QStringLiteral("go")).raw.toHex(' '),
             QByteArray::fromHex("aa 1200" + start + "0201" + change + "fd 0200 0000 00000000").toHex(' '));
    WireClient wide(host.port());
    wide.logIn(version(kTds72));
    QCOMPARE(wide.runBatch(QStringLiteral("go")).raw.toHex(' '),
             QByteArray::fromHex("aa 1400" + start + "02010000" + change + "fd 0200 0000 0000000000000000")
                 .toHex(' '));
}

void TestRequests::calls_data() {
    const testsupport::Table<quint32, QByteArray, QByteArray, QString> row("version", "call", "tokens",
                                                                           "text");
    // "echo x" and the parts of a call around it.
    const QByteArray statement = utf16(QStringLiteral("echo x"));
    const QByteArray byNumber = hex("ffff 0a00 0000");
    const QByteArray byName = hex("0d00") + utf16(QStringLiteral("SP_executesql")) + hex("0000");
    const QByteArray collation = hex("0904d00034");
    const QByteArray nvarchar = hex("00 00 e7 401f") + collation + hex("0c00") + statement;
    const QByteArray chunks = hex("00 00 e7 ffff") + collation + hex("0c00000000000000 04000000") +
                              statement.left(4) + hex("08000000") + statement.mid(4) + hex("00000000");
    row("by number", kTds74, byNumber + nvarchar, "81d1ff79fe", "x");
    row("by name", kTds71, byName + nvarchar, "81d1ff79fe", "x");
    row("without collation", kTds70, byName + hex("00 00 e7 401f 0c00") + statement, "81d1ff79fe", "x");
    row("in chunks", kTds74, byNumber + chunks, "81d1ff79fe", "x");
    row("two calls", kTds74, byNumber + nvarchar + hex("ff") + byNumber + nvarchar, "81d1ff79fe81d1ff79fe",
        "x");
    row("two calls of old", kTds71, byName + nvarchar + hex("80") + byName + nvarchar, "81d1ff79fe81d1ff79fe",
        "x");
    const QByteArray p = hex("0100 7000 0000");
    row("output", kTds74, p + hex("02 4000 6100 01 26 04 04 2a000000"), "81d1ff79acfe", "p @a int 42");
    row("unknown type", kTds74, p + hex("00 00 f0 00"), "aafd", "");
    const auto value = [&](const char* bytes, const char* text) {
        row(text, kTds74, p + hex("00 00") + hex(bytes), "81d1ff79fe",
            QStringLiteral("p  ") + QString::fromUtf8(text));
    };
    value("1f", "int null");
    value("26 04 00", "int null");
    value("26 08 08 feffffffffffffff", "decimal -2");
    value("26 01 01 ff", "tinyint 255");
    value("34 feff", "smallint -2");
    value("68 01 01 01", "bit 1");
    value("6d 08 08 000000000000f83f", "float 1.5");
    value("6e 08 08 ffffffff f0d8ffff", "money -1.00");
    value("6f 08 08 01000000 00c1c500", "datetime Jan  2 1900 12:00PM");
    value("6f 04 04 0100 d002", "smalldatetime Jan  2 1900 12:00PM");
    value("6a 11 26 02 11 00 15cd5b07 01000000 00000000 00000000", "decimal -44184240.85");
    value("6c 05 05 03 05 01 01000000", "numeric 0.001");
    value("24 10 00", "uniqueidentifier null");
    value("28 03 5b950a", "datetime Jan  1 1900 12:00AM");
    value("2b 07 00", "datetime null");
    value("2a 07 08 00e0349564 96250b", "datetime Feb  3 2001 12:00PM");
    value("a7 0a00 0904d00034 0300 41e480", "varchar A\u00e4\u20ac");
    value("a7 ffff 0904d00034 ffffffffffffffff", "text null");
    value("a5 0a00 0200 00ff", "varbinary 00ff");
    value("23 0a000000 0904d00034 01000000 41", "text A");
    value("22 0a000000 ffffffff", "image null");
}

void TestRequests::calls() {
    QFETCH(quint32, version);
    QFETCH(QByteArray, call);
    ServerHost host;
    WireClient client(host.port());
    client.logIn(::version(version));
    client.send(packet(3, (version >= kTds72 ? hex(kHeaders) : QByteArray()) + call));
    const Reply reply = client.readReply();
    QTEST(reply.tokens.toHex(), "tokens");
    QTEST(reply.text, "text");
    checkGoesOn(client);
}

void TestRequests::transactions_data() {
    const testsupport::Table<QList<QByteArray>, QByteArray, QList<int>> row("requests", "changes",
                                                                            "messages");
    // of all answers
    const QByteArray begin = hex("0500 00 00");
    const QByteArray commit = hex("0700 00 00");
    const QByteArray rollback = hex("0800 00 00");
    row("commit", {begin, commit}, hex("08 09"), {});
    row("rollback", {begin, begin, rollback}, hex("08 08 0a"), {});
    row("commit and begin", {begin, hex("0700 00 01 00 00"), rollback}, hex("08 09 08 0a"), {});
    row("nothing to commit", {commit}, QByteArray(), {3902});
    row("nothing left", {begin, rollback, rollback}, hex("08 0a"), {3903});
    row("distributed", {hex("0000 0000")}, QByteArray(), {8501});
}

void TestRequests::transactions() {
    QFETCH(QList<QByteArray>, requests);
    int open = 0;
    ServerHost host([&open](const QString& step, engine::ResultSink& sink) {
        const bool begins = step == QStringLiteral("BEGIN TRANSACTION");
        const bool commits = step == QStringLiteral("COMMIT TRANSACTION");
        if (!begins && open == 0) return sink.message({.number = commits ? 3902 : 3903, .text = {}});
        open = begins ? open + 1 : commits ? open - 1 : 0;
    });
    WireClient client(host.port());
    client.logIn();
    QByteArray changes;
    QList<int> messages;
    for (const QByteArray& request : requests) {
        client.send(packet(0x0E, hex(kHeaders) + request));
        const Reply reply = client.readReply();
        for (const QByteArray& change : reply.changes)
            changes.append(change[0]);
        messages += reply.messages;
        QCOMPARE(reply.doneStatus.size(), 1);
    }
    QTEST(changes, "changes");
    QTEST(messages, "messages");
}

void TestRequests::refusesBulkLoad() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    client.send(packet(7, QByteArray(100, 'x')));
    QCOMPARE(client.readReply().messages, QList<int>{3906});
    checkGoesOn(client);
}

void TestRequests::attentionEndsRows() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    client.send(batchMessage(QStringLiteral("rows")));
    QVERIFY(client.socket().waitForReadyRead());
    client.send(hex(kAttention));
    // The acknowledgement is a message of its own.
    const Reply reply = client.readReply();
    QCOMPARE(reply.tokens.toHex(), QByteArray("81d1fdfd"));
    QCOMPARE(reply.doneStatus, QList<quint16>({0x11, 0}));
    QVERIFY(reply.rows > 0);
    QCOMPARE(client.readReply().doneStatus, QList<quint16>{0x20});
    checkGoesOn(client);
}

void TestRequests::withdrawals_data() {
    // Each message of the answer is one end, of this status.
    const testsupport::Table<QByteArray, QList<quint16>> row("sent", "statuses");
    row("attention while waiting", batchMessage(QStringLiteral("wait")) + hex(kAttention), {0, 0x20});
    row("attention without a request", hex(kAttention), {0x20});
    row("attention within a message", packet(1, hex(kHeaders), 0) + hex(kAttention), {0x20});
    row("message taken back", packet(1, hex(kHeaders) + utf16(QStringLiteral("echo x")), 3), {2});
}

void TestRequests::withdrawals() {
    QFETCH(QByteArray, sent);
    QFETCH(QList<quint16>, statuses);
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    client.send(sent);
    for (const quint16 status : statuses) {
        const Reply reply = client.readReply();
        QCOMPARE(reply.tokens.toHex(), QByteArray("fd"));
        QCOMPARE(reply.doneStatus, QList<quint16>{status});
    }
    checkGoesOn(client);
}

void TestRequests::resetConnection() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    client.send(packet(1, hex(kHeaders) + utf16(QStringLiteral("who")), 9));
    const Reply reply = client.readReply();
    QCOMPARE(reply.changes, QList<QByteArray>{hex("12 00 00")});
    QVERIFY(reply.text.startsWith(QStringLiteral("sa|")));
}

void TestRequests::cutAtEveryByte() {
    ServerHost host;
    const QByteArray conversation =
        preLoginMessage() + loginMessage({}) + batchMessage(QStringLiteral("echo cut"));
    for (qsizetype cut = 1; cut < conversation.size(); ++cut) {
        WireClient client(host.port());
        client.send(conversation.left(cut));
        client.send(conversation.mid(cut));
        client.readMessage();
        client.readMessage();
        QCOMPARE(client.readReply().text, QStringLiteral("cut"));
    }
    QTRY_COMPARE(host.liveClients(), 0);
}

void TestRequests::packetsOfEverySize() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    const QByteArray message = hex(kHeaders) + utf16(QStringLiteral("echo in pieces"));
    for (qsizetype size = 1; size <= message.size(); ++size) {
        QByteArray packets;
        for (qsizetype at = 0; at < message.size(); at += size)
            packets += packet(1, message.mid(at, size), at + size >= message.size() ? 1 : 0);
        client.send(packets);
        QCOMPARE(client.readReply().text, QStringLiteral("in pieces"));
    }
}

void TestRequests::responsesAtPacketEdges() {
    ServerHost host;
    WireClient client(host.port());
    LoginFields fields;
    fields.packetSize = 512;
    client.logIn(fields);
    QList<qsizetype> lastPackets;
    for (int length = 200; length < 200 + 252; ++length) {
        const QString text(length, u'x');
        const Reply reply = client.runBatch(QStringLiteral("echo ") + text);
        QCOMPARE(reply.text, text);
        lastPackets.append(reply.packetSizes.last());
    }
    // The last packet is full once, and never without data.
    QCOMPARE(lastPackets.count(512), 1);
    QVERIFY(!lastPackets.contains(8));
}

void TestRequests::requestsInOneWrite() {
    ServerHost host;
    WireClient client(host.port());
    client.logIn();
    client.send(batchMessage(QStringLiteral("echo one")) + batchMessage(QStringLiteral("echo two")));
    QCOMPARE(client.readReply().text, QStringLiteral("one"));
    QCOMPARE(client.readReply().text, QStringLiteral("two"));
}

void TestRequests::manyClients() {
    ServerHost host;
    std::vector<std::unique_ptr<WireClient>> clients;
    for (int i = 0; i < 40; ++i) {
        clients.push_back(std::make_unique<WireClient>(host.port()));
        clients.back()->logIn();
        clients.back()->send(batchMessage(QStringLiteral("echo %1").arg(i)));
    }
    QCOMPARE(host.liveClients(), 40);
    for (int i = 39; i >= 0; --i)
        QCOMPARE(clients[std::size_t(i)]->readReply().text, QString::number(i));
    clients.clear();
    QTRY_COMPARE(host.liveClients(), 0);
}

QTEST_GUILESS_MAIN(TestRequests)
#include "test_requests.moc"

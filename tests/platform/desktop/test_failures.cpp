#include "platform/desktop/doevents.h"
#include "platform/desktop/failures.h"
#include "support/table.h"

#include <QTest>
#include <QTimer>

using namespace desktop;

class Sender : public QObject {
    Q_OBJECT

  public:
    void receive(int number) { received = number; }
    int received = 0;

  Q_SIGNALS:
    void sent(int number, const QString& text);
};

class FailuresTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void guardHandsFailuresOn_data();
    void guardHandsFailuresOn();
    void guardedConnections();
    void eventsAreServedNowAndThen();
    void eventsMayYieldThemselves();
};

void FailuresTest::guardHandsFailuresOn_data() {
    const testsupport::Table<int, int, QString> row("kind", "number", "description");
    row("a failure with a number", 0, 3021, "No current record");
    row("another exception", 1, 51, "odd");
    row("something else", 2, 51, "Internal error");
    row("none", 3, 0, "");
}

void FailuresTest::guardHandsFailuresOn() {
    QFETCH(int, kind);
    int number = 0;
    QString description;
    const auto before = setUnhandledFailureHandler([&](const platform::RuntimeError& error) {
        number = error.number();
        description = error.description();
    });
    const bool ended = guard([kind] {
        if (kind == 0) throw platform::RuntimeError(3021, QStringLiteral("No current record"));
        if (kind == 1) throw std::runtime_error("odd");
        if (kind == 2) throw 1;
    });
    setUnhandledFailureHandler(before);
    QCOMPARE(ended, kind == 3);
    QTEST(number, "number");
    QTEST(description, "description");
}

void FailuresTest::guardedConnections() {
    int failures = 0;
    const auto before = setUnhandledFailureHandler([&](const platform::RuntimeError&) { ++failures; });
    Sender sender;
    Sender receiver;
    QString text;
    connectGuarded(&sender, &Sender::sent, &receiver, &Sender::receive);
    connectGuarded(&sender, &Sender::sent, &receiver, [&](int, const QString& sent) { text = sent; });
    connectGuarded(&sender, &Sender::sent, &receiver, [] { throw platform::RuntimeError(91, {}); });
    Q_EMIT sender.sent(7, QStringLiteral("seven"));
    setUnhandledFailureHandler(before);
    QCOMPARE(receiver.received, 7);
    QCOMPARE(text, QStringLiteral("seven"));
    QCOMPARE(failures, 1);
}

void FailuresTest::eventsAreServedNowAndThen() {
    bool served = false;
    QMetaObject::invokeMethod(
        this, [&] { served = true; }, Qt::QueuedConnection);
    QElapsedTimer passed;
    passed.start();
    qint64 calls = 0;
    for (; !served && passed.elapsed() < 5000; ++calls) {
        DoEvents();
    }
    QVERIFY(served);

    // Straight after serving, the next calls only look at the clock.
    bool servedAgain = false;
    QMetaObject::invokeMethod(
        this, [&] { servedAgain = true; }, Qt::QueuedConnection);
    DoEvents();
    QVERIFY(!servedAgain);
    QTRY_VERIFY(servedAgain);
}

void FailuresTest::eventsMayYieldThemselves() {
    bool outer = false;
    bool inner = false;
    const auto yieldUntil = [](const bool& done) {
        QElapsedTimer passed;
        passed.start();
        while (!done && passed.elapsed() < 5000) {
            DoEvents();
        }
    };
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(0, this, [&] { inner = true; });
        yieldUntil(inner);
        outer = inner;
    });
    yieldUntil(outer);
    QVERIFY(outer);
}

QTEST_GUILESS_MAIN(FailuresTest)
#include "test_failures.moc"

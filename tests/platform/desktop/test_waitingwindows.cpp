#include "platform/ado/connection.h"
#include "platform/ado/error.h"
#include "platform/ado/recordset.h"
#include "platform/desktop/waitingwindows.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace {

/// A window to be looked at and played with while its thread waits.
struct Toy {
    Toy() {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&edit);
        column->addWidget(&button);
        button.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_K));
        QObject::connect(&button, &QPushButton::clicked, &button, [this] { ++clicks; });
        window.show();
        edit.setFocus();
    }
    QWindow* handle() const { return window.windowHandle(); }
    QPoint middleOfButton() const { return button.mapTo(&window, button.rect().center()); }

    QWidget window;
    QLineEdit edit;
    QPushButton button;
    int clicks = 0;
};

/// Paints itself anew for ever and tells the longest time between two paints.
class Painted : public QWidget {
  public:
    using QWidget::QWidget;
    qint64 longestGap = 0;
    int count = 0;

  protected:
    void paintEvent(QPaintEvent*) override {
        if (m_since.isValid()) longestGap = std::max(longestGap, m_since.elapsed());
        m_since.start();
        ++count;
        update();
    }

  private:
    QElapsedTimer m_since;
};

}  // namespace

class TestWaitingWindows : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void breaksOff_data();
    void breaksOff();

  private:
    testsupport::RunningSampleServer m_server;
};

void TestWaitingWindows::breaksOff_data() {
    const testsupport::Table<bool, QString> row("silent", "statement");
    row("a login", true, QString());
    row("a statement", false, QStringLiteral("waitfor delay '0:0:20'"));
}

/// The window is painted meanwhile; what is typed and clicked comes when the wait is over, shortcuts too.
void TestWaitingWindows::breaksOff() {
    QFETCH(bool, silent);
    QFETCH(QString, statement);
    const desktop::WaitingWindows waiting;
    testsupport::Relay relay(m_server.port());
    if (silent) relay.setManner(testsupport::Relay::Manner::Silent);
    Toy toy;
    Painted painted(&toy.window);
    painted.show();
    QVERIFY(QTest::qWaitForWindowActive(&toy.window));

    QElapsedTimer sinceEscape;
    QTimer::singleShot(100, &toy.window, [&] {
        QTest::keyClick(toy.handle(), Qt::Key_A);
        QTest::keyClick(toy.handle(), Qt::Key_K, Qt::ControlModifier);
        QTest::mouseClick(toy.handle(), Qt::LeftButton, {}, toy.middleOfButton());
    });
    QTimer::singleShot(600, &toy.window, [&] {
        QCOMPARE(toy.edit.text(), QString());
        QCOMPARE(toy.clicks, 0);
        sinceEscape.start();
        QTest::keyClick(toy.handle(), Qt::Key_Escape);
    });
    ado::Connection connection;
    connection.setConnectionTimeout(20);
    qint32 number = 0;
    try {
        connection.Open(QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(relay.serverText()));
        ado::Recordset rows;
        rows.Open(statement, connection);
    } catch (const ado::Error& error) {
        number = error.number();
    }
    QCOMPARE(number, ado::numbers::Cancelled);
    QVERIFY(!connection.isOpen());
    QVERIFY2(sinceEscape.elapsed() < 1000, qPrintable(QString::number(sinceEscape.elapsed())));
    QVERIFY2(painted.count > 10, qPrintable(QString::number(painted.count)));
    qInfo("longest time between two paints: %lld ms", painted.longestGap);
    QCOMPARE(toy.clicks, 0);
    QTRY_COMPARE(toy.clicks, 2);
    QCOMPARE(toy.edit.text(), QStringLiteral("a"));
}

QTEST_MAIN(TestWaitingWindows)
#include "test_waitingwindows.moc"

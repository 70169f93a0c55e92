#include "platform/desktop/failures.h"
#include "platform/desktop/programend.h"
#include "support/answers.h"

#include <QCloseEvent>
#include <QDialog>
#include <QTest>
#include <QTimer>

using desktop::MsgBox;
using desktop::MsgBoxIcon;
using desktop::MsgBoxResult;
using platform::RuntimeError;

namespace {

// A window that does what a test wants when it is closed.
class Window : public QWidget {
  public:
    bool refuses = false;
    std::function<void()> onClose;
    int closings = 0;

  protected:
    void closeEvent(QCloseEvent* event) override {
        ++closings;
        if (onClose) desktop::guard(onClose);
        event->setAccepted(!refuses);
    }
};

void failNow() {
    desktop::guard([] { throw RuntimeError(13, QStringLiteral("Type mismatch")); });
}

}  // namespace

class ProgramEndTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init();
    void saysWhatFailedAndEnds();
    void endsNestedLoops();
    void endsALoopThatStartsLater();
    void failuresWhileEnding();
    void failureWhileClosing();
    void nothingOpensAgain();
};

void ProgramEndTest::init() {
    QGuiApplication::setQuitOnLastWindowClosed(true);
}

void ProgramEndTest::saysWhatFailedAndEnds() {
    testsupport::Answers answers;
    desktop::ProgramEnd end;
    Window willing;
    Window refusing;
    refusing.refuses = true;
    willing.show();
    refusing.show();
    QTimer::singleShot(0, &willing, failNow);
    QCOMPARE(QCoreApplication::exec(), 1);
    QVERIFY(!willing.isVisible());
    QVERIFY(!refusing.isVisible());
    QVERIFY(end.isEnding());
    const auto box = answers.takeBox();
    QCOMPARE(box.text, QStringLiteral("Run-time error '13':\r\n\r\nType mismatch"));
    QCOMPARE(box.title, QCoreApplication::applicationName());
    QCOMPARE(box.icon, MsgBoxIcon::Critical);
}

void ProgramEndTest::endsNestedLoops() {
    testsupport::Answers answers;
    answers.allowLeftovers();
    desktop::ProgramEnd end;
    Window window;
    window.show();
    int result = -1;
    QTimer::singleShot(0, &window, [&] {
        QDialog dialog(&window);
        QTimer::singleShot(0, &dialog, failNow);
        result = dialog.exec();
    });
    QCOMPARE(QCoreApplication::exec(), 1);
    QCOMPARE(result, int(QDialog::Rejected));
}

void ProgramEndTest::endsALoopThatStartsLater() {
    testsupport::Answers answers;
    answers.allowLeftovers();
    desktop::ProgramEnd end;
    Window window;
    window.show();
    failNow();
    QVERIFY(!window.isVisible());
    QCOMPARE(QCoreApplication::exec(), 1);
}

void ProgramEndTest::failuresWhileEnding() {
    testsupport::Answers answers;
    answers.whileOpen([](const auto&) { failNow(); });
    desktop::ProgramEnd end;
    Window window;
    window.onClose = [] {
        MsgBox(QStringLiteral("not shown"), MsgBoxIcon::None);
        throw RuntimeError(75, QStringLiteral("settings"));
    };
    window.show();
    QTimer::singleShot(0, &window, failNow);
    QCOMPARE(QCoreApplication::exec(), 1);
    QCOMPARE(window.closings, 1);
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("'13'")));
}

void ProgramEndTest::failureWhileClosing() {
    testsupport::Answers answers;
    desktop::ProgramEnd end;
    Window window;
    window.onClose = failNow;
    window.show();
    QTimer::singleShot(0, &window, &QWidget::close);
    QCOMPARE(QCoreApplication::exec(), 1);
    QCOMPARE(window.closings, 1);
    answers.takeBox();
}

void ProgramEndTest::nothingOpensAgain() {
    testsupport::Answers answers;
    desktop::ProgramEnd end;
    Window window;
    Window late;
    int result = -1;
    window.show();
    QTimer::singleShot(0, &window, [&] {
        failNow();
        late.show();
        result = QDialog().exec();
        MsgBox(QStringLiteral("not shown"), MsgBoxIcon::None);
    });
    QCOMPARE(QCoreApplication::exec(), 1);
    QCOMPARE(result, int(QDialog::Rejected));
    QTRY_VERIFY(!late.isVisible());
    answers.takeBox();
}

QTEST_MAIN(ProgramEndTest)
#include "test_programend.moc"

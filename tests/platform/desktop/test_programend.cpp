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

/// A program with one window on the screen.
struct Program {
    Program() { window.show(); }
    /// Serves events from the action on until the program ends; its exit code.
    int run(const std::function<void()>& action) {
        QTimer::singleShot(0, &window, action);
        return QCoreApplication::exec();
    }

    testsupport::Answers answers;
    desktop::ProgramEnd end;
    Window window;
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

/// A program that ended leaves later event loops told to quit.
void ProgramEndTest::init() {
    QGuiApplication::setQuitOnLastWindowClosed(true);
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
}

void ProgramEndTest::saysWhatFailedAndEnds() {
    Program program;
    Window refusing;
    refusing.refuses = true;
    refusing.show();
    QCOMPARE(program.run(failNow), 1);
    QVERIFY(!program.window.isVisible());
    QVERIFY(!refusing.isVisible());
    QVERIFY(program.end.isEnding());
    const auto box = program.answers.takeBox();
    QCOMPARE(box.text, QStringLiteral("Run-time error '13':\r\n\r\nType mismatch"));
    QCOMPARE(box.title, QCoreApplication::applicationName());
    QCOMPARE(box.icon, MsgBoxIcon::Critical);
}

void ProgramEndTest::endsNestedLoops() {
    Program program;
    int result = -1;
    const int code = program.run([&] {
        QDialog dialog(&program.window);
        QTimer::singleShot(0, &dialog, failNow);
        result = dialog.exec();
    });
    QCOMPARE(code, 1);
    QCOMPARE(result, int(QDialog::Rejected));
    program.answers.takeBox();
}

void ProgramEndTest::endsALoopThatStartsLater() {
    Program program;
    failNow();
    QVERIFY(!program.window.isVisible());
    QCOMPARE(program.run([] {}), 1);
    program.answers.takeBox();
}

void ProgramEndTest::failuresWhileEnding() {
    Program program;
    program.answers.whileOpen([](const auto&) { failNow(); });
    program.window.onClose = [] {
        MsgBox(QStringLiteral("not shown"), MsgBoxIcon::None);
        throw RuntimeError(75, QStringLiteral("settings"));
    };
    QCOMPARE(program.run(failNow), 1);
    QCOMPARE(program.window.closings, 1);
    QVERIFY(program.answers.takeBox().text.contains(QStringLiteral("'13'")));
}

void ProgramEndTest::failureWhileClosing() {
    Program program;
    program.window.onClose = failNow;
    QCOMPARE(program.run([&] { program.window.close(); }), 1);
    QCOMPARE(program.window.closings, 1);
    program.answers.takeBox();
}

void ProgramEndTest::nothingOpensAgain() {
    Program program;
    Window late;
    int result = -1;
    const int code = program.run([&] {
        failNow();
        late.show();
        result = QDialog().exec();
        MsgBox(QStringLiteral("not shown"), MsgBoxIcon::None);
    });
    QCOMPARE(code, 1);
    QCOMPARE(result, int(QDialog::Rejected));
    QTRY_VERIFY(!late.isVisible());
    program.answers.takeBox();
}

QTEST_MAIN(ProgramEndTest)
#include "test_programend.moc"

#include "platform/runtimeerror.h"
#include "shell/core/reporterror.h"
#include "support/answers.h"
#include "support/table.h"

#include <QTest>

#include <stdexcept>

using platform::RuntimeError;

class ReportErrorTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void showsTheErrorBeingHandled_data();
    void showsTheErrorBeingHandled();
    void reportsWhatIsNoRuntimeError();
};

void ReportErrorTest::showsTheErrorBeingHandled_data() {
    const testsupport::Table<qint32, QString, QString, QString> row("number", "extraText", "hint",
                                                                    "extraTextAfterwards");

    const QString login =
        QStringLiteral("Please make sure your User ID and Password have been entered correctly.\r\n\r\n");
    const QString server = QStringLiteral(
        "Please make sure that the Server Name has been entered correctly and the SQL Server has started "
        "successfully.\r\n\r\n");
    const QString extra = QStringLiteral("While reading.");
    const QString extraAfterwards = QStringLiteral("While reading.\r\n\r\n");

    row("login failed", -2147217843, "", login, "");
    row("server unreachable", -2147467259, "", server, "");
    row("no hint for a positive number", 91, "", "", "");
    row("no hint for another provider number", -2147217865, "", "", "");
    row("extra text alone", 91, extra, "", extraAfterwards);
    row("extra text behind the hint", -2147217843, extra, login, extraAfterwards);
}

void ReportErrorTest::showsTheErrorBeingHandled() {
    QFETCH(qint32, number);
    QFETCH(QString, extraText);
    QFETCH(QString, hint);
    QFETCH(QString, extraTextAfterwards);

    testsupport::Answers answers;
    try {
        throw RuntimeError(number, QStringLiteral("What went wrong"));
    } catch (...) {
        tw::ReportError(QStringLiteral("ShowConnectionForm"), QStringLiteral("frmMain"), extraText);
    }

    const desktop::MsgBoxRequest box = answers.takeBox();
    const QString head = QStringLiteral("Error: %1.\r\nWhat went wrong\r\n\r\n").arg(number);
    const QString debugLine = QStringLiteral(
        "Debug Information: Error occured in subroutine ShowConnectionForm of module frmMain.     \r\n\r\n");
    QCOMPARE(box.text, head + hint + extraTextAfterwards + debugLine);
    QCOMPARE(box.title, QStringLiteral("Tablewright - Error!"));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QCOMPARE(box.buttons, desktop::MsgBoxButtons::Ok);
    QCOMPARE(extraText, extraTextAfterwards);
}

void ReportErrorTest::reportsWhatIsNoRuntimeError() {
    testsupport::Answers answers;
    QString noExtraText;
    try {
        throw std::runtime_error("a library's own words");
    } catch (...) {
        tw::ReportError(QStringLiteral("FillTvDB"), QStringLiteral("DBConnection.cls"), noExtraText);
    }
    QVERIFY(answers.takeBox().text.startsWith(
        QStringLiteral("Error: 51.\r\na library's own words\r\n\r\nDebug")));
}

QTEST_GUILESS_MAIN(ReportErrorTest)
#include "test_reporterror.moc"

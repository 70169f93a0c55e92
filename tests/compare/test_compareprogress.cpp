#include "compare/frmcompareprogress.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "support/captions.h"
#include "support/table.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

namespace {

const QString Running = QStringLiteral("Please wait.  Comparing databases is in progress...");
const QString Finished = QStringLiteral("Comparing databases finished.");
const QString Cancelled = QStringLiteral("Comparing databases cancelled.");

/// A progress window in front of a window of its own.
struct Following {
    Following() { progress.begin(); }

    QString text(const char* label) const {
        return progress.findChild<QLabel*>(QString::fromLatin1(label))->text();
    }
    QPushButton& cmdClose() const { return *progress.findChild<QPushButton*>(QStringLiteral("cmdClose")); }
    int bar() const { return progress.findChild<QProgressBar*>(QStringLiteral("ProgressBar1"))->value(); }
    /// "matched unmatched percent percent bar"
    QString counters() const {
        return QStringList{text("lblNumMatch"), text("lblNumUnmatch"), text("lblPercentMatch"),
                           text("lblPercentUnmatch"), QString::number(bar())}
            .join(u' ');
    }
    /// One update per character: 0, 1, 2 and 9 are the states.
    void update(const QString& states) {
        for (const QChar digit : states) {
            progress.UpdateForm(static_cast<tw::ComparedState>(digit.digitValue()), QString());
        }
    }
    void click() { QTest::mouseClick(&cmdClose(), Qt::LeftButton); }

    QTemporaryDir folder;
    desktop::SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    tw::AppState state{settings};
    QWidget result;
    tw::frmCompareProgress progress{state, &result};
};

}  // namespace

class TestCompareProgress : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void opens();
    void counts_data();
    void counts();
    void barNeverRunsBackwards();
    void keepsTheLastItem();
    void nothingMovesWhileNumbersGrow();
    void ends_data();
    void ends();
};

void TestCompareProgress::opens() {
    Following following;
    following.state.cancelled = true;
    const tw::frmCompareProgress next(following.state, &following.result);
    QVERIFY(!following.state.cancelled);

    QCOMPARE(
        testsupport::captionsOf(following.progress),
        (QStringList{"Comparing Databases ", "ProgressBar1: 0%", "cmdClose: &Cancel",
                     "lblProgress: " + Running, "Label6: System 1:", "Label7: System 2:", "lblNumMatch: 0",
                     "lblNumUnmatch: 0", "lblPercentMatch: 0", "lblPercentUnmatch: 0",
                     "Label1: Progress counters", "Label4: Items Matched:", "Label5: Items Unmatched:",
                     "Label2: Percent Match:", "Label3: Percent Unmatch:", "lblCompareItem: Compare Item"}));
    QVERIFY(following.progress.isVisible());
    QVERIFY(!following.progress.isModal());
    following.progress.InitFormLables(QStringLiteral("a - b - c"), QStringLiteral("d & e"));
    QCOMPARE(following.text("lblSystem1"), QStringLiteral("a - b - c"));
    QCOMPARE(following.text("lblSystem2"), QStringLiteral("d & e"));
}

void TestCompareProgress::counts_data() {
    const testsupport::Table<qint32, QString, QString> row("expected", "states", "counters");
    row("percentages rounded down", 100, "110", "2 1 66 33 3");
    row("29 of 100 stay 29", 1000, QString(29, u'1') + QString(71, u'0'), "29 71 29 71 10");
    row("counted already: only the bar", 10, "1222", "1 0 100 0 40");
    row("nothing compared yet", 10, "2", "0 0 0 0 10");
    row("none expected", 0, "101", "2 1 66 33 0");
    row("none expected, at the end", 0, "1019", "2 1 66 33 100");
    row("a negative estimate", -5, "10", "1 1 50 50 0");
    row("as many as expected", 4, "1111", "4 0 100 0 99");
    row("more than expected", 2, "111011", "5 1 83 16 99");
    row("fewer than expected, at the end", 1000, "19", "1 0 100 0 100");
    row("a large estimate", std::numeric_limits<qint32>::max(), "1111", "4 0 100 0 0");
}

void TestCompareProgress::counts() {
    QFETCH(qint32, expected);
    QFETCH(QString, states);
    QFETCH(QString, counters);
    Following following;
    following.progress.SetNumberNeed(expected);
    following.update(states);
    QCOMPARE(following.counters(), counters);
}

void TestCompareProgress::barNeverRunsBackwards() {
    Following following;
    following.progress.SetNumberNeed(10);
    following.update(QStringLiteral("11111"));
    following.progress.SetNumberNeed(1000);
    following.update(QStringLiteral("1"));
    QCOMPARE(following.bar(), 50);
}

void TestCompareProgress::keepsTheLastItem() {
    Following following;
    following.progress.UpdateForm(tw::ComparedState::Matched, QStringLiteral("Tablew: Part"));
    following.progress.UpdateForm(tw::ComparedState::MatchedCounted, QString());
    QCOMPARE(following.text("lblCompareItem"), QStringLiteral("Tablew: Part"));
}

void TestCompareProgress::nothingMovesWhileNumbersGrow() {
    Following following;
    const auto places = [&] {
        QList<QRect> rectangles{following.progress.geometry()};
        for (const QWidget* part : following.progress.findChildren<QWidget*>())
            rectangles += part->geometry();
        return rectangles;
    };
    const QList<QRect> before = places();
    following.progress.InitFormLables(QString(300, u'W'), QString());
    following.progress.UpdateForm(tw::ComparedState::Matched, QString(300, u'W'));
    following.update(QString(20000, u'0'));
    QCoreApplication::processEvents();
    QCOMPARE(places(), before);
}

void TestCompareProgress::ends_data() {
    const testsupport::Table<QStringList, QString, bool, bool> row("steps", "text", "open", "cancelled");
    row("running", {}, Running, true, false);
    row("finished", {"finish"}, Finished, true, false);
    row("finished, then clicked", {"finish", "click"}, Finished, false, false);
    row("finished, then Enter", {"finish", "enter"}, Finished, false, false);
    row("clicked", {"click"}, Cancelled, true, true);
    row("clicked twice", {"click", "click"}, Cancelled, false, true);
    row("Enter while running", {"enter"}, Running, true, false);
    row("Escape", {"escape"}, Cancelled, true, true);
    row("closed by its title bar", {"close"}, Cancelled, false, true);
    row("finished, then closed", {"finish", "close"}, Finished, false, false);
    row("clicked after another cancelled", {"flag", "click"}, Cancelled, false, true);
    row("connection lost", {"lost"}, Cancelled, true, true);
    row("ended without its button", {"flag", "end"}, Cancelled, true, false);
    row("ended after it finished", {"finish", "end"}, Finished, true, false);
}

void TestCompareProgress::ends() {
    QFETCH(QStringList, steps);
    QFETCH(QString, text);
    QFETCH(bool, open);
    QFETCH(bool, cancelled);
    Following following;
    for (const QString& step : steps) {
        if (step == QStringLiteral("finish")) following.update(QStringLiteral("9"));
        if (step == QStringLiteral("click")) following.click();
        if (step == QStringLiteral("enter")) QTest::keyClick(&following.cmdClose(), Qt::Key_Return);
        if (step == QStringLiteral("escape")) QTest::keyClick(&following.progress, Qt::Key_Escape);
        if (step == QStringLiteral("close")) following.progress.close();
        if (step == QStringLiteral("flag")) following.state.cancelled = true;
        if (step == QStringLiteral("lost")) following.progress.cancel();
        if (step == QStringLiteral("end")) following.progress.end();
    }
    QCOMPARE(following.text("lblProgress"), text);
    QCOMPARE(following.cmdClose().text(),
             text == Running ? QStringLiteral("&Cancel") : QStringLiteral("&Close"));
    QCOMPARE(following.progress.isVisible(), open);
    QCOMPARE(following.progress.isCancelled(), cancelled);
    if (cancelled) QVERIFY(following.state.cancelled);
}

QTEST_MAIN(TestCompareProgress)
#include "test_compareprogress.moc"

#include "platform/desktop/failures.h"
#include "platform/desktop/treeview.h"
#include "platform/runtimeerror.h"
#include "shell/framefixture.h"
#include "shell/frmoption.h"
#include "support/answers.h"
#include "support/table.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using testsupport::Answers;

namespace {

/// The options dialog on the screen; the values that follow from it.
struct Dialog {
    explicit Dialog(const tw::Options& options = {}) {
        state.options = options;
        dialog = std::make_unique<tw::frmOption>(state, [this](bool on) { tracked.push_back(on); });
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }
    template <class Control>
    Control& find(const char* name) const {
        return *dialog->findChild<Control*>(QString::fromLatin1(name));
    }
    QLineEdit& rows() const { return find<QLineEdit>("txtNumShow"); }
    QCheckBox& single() const { return find<QCheckBox>("chkMouseSelectSingle"); }
    QCheckBox& hot() const { return find<QCheckBox>("chkMouseHotTracking"); }
    void click(const char* button) const { QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton); }
    void clickTab(int index) const {
        QTabBar* bar = find<QTabWidget>("tsOptions").tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    }
    /// "rows/click/hot tracking" in force.
    QString values() const {
        const tw::Options& options = state.options;
        return QStringLiteral("%1/%2/%3")
            .arg(options.NumberRecShow)
            .arg(options.MouseClickOption)
            .arg(options.MouseHotTracking);
    }

    QTemporaryDir folder;
    desktop::SettingsStore store{folder.filePath(QStringLiteral("settings"))};
    tw::AppState state{store};
    std::vector<bool> tracked;
    std::unique_ptr<tw::frmOption> dialog;
};

void expectRefusal(Answers& answers) {
    const desktop::MsgBoxRequest box = answers.takeBox();
    QCOMPARE(box.text, QStringLiteral("Please enter numeric data     "));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
}

}  // namespace

class FrmOptionTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void loads_data();
    void loads();
    void tabsChooseFrame();
    void takesNumbers_data();
    void takesNumbers();
    void judgesWhatIsTyped();
    void refusalChangesNothing_data();
    void refusalChangesNothing();
    void storesOneAndZero();
    void leavesByKey_data();
    void leavesByKey();
    void tracksInActiveDocument();
    void failsWithoutChild();
};

void FrmOptionTest::loads_data() {
    const testsupport::Table<int, int, int> row("click", "hot", "rows");
    row("off", 0, 0, 50);
    row("single click", 1, 0, 0);
    row("hot tracking", 0, 1, 2147483647);
    row("neither 0 nor 1", -1, 2, -3);
}

void FrmOptionTest::loads() {
    QFETCH(int, click);
    QFETCH(int, hot);
    QFETCH(int, rows);
    const Answers answers;  // no message for what the settings hold
    const Dialog it(
        {.NumberRecShow = rows, .MouseClickOption = qint16(click), .MouseHotTracking = qint16(hot)});
    QCOMPARE(it.dialog->windowTitle(), QStringLiteral("Tablewright Options"));
    QCOMPARE(it.rows().text(), QString::number(rows));
    QCOMPARE(it.single().isChecked(), click == 1);
    QCOMPARE(it.hot().isChecked(), hot == 1);
    QVERIFY(it.rows().hasFocus());
}

void FrmOptionTest::tabsChooseFrame() {
    const Dialog it;
    const QList<QFrame*> frames = it.dialog->findChildren<QFrame*>(QStringLiteral("fmeOptions"));
    QCOMPARE(frames.size(), 2);
    QVERIFY(frames[0]->isAncestorOf(&it.hot()));
    QVERIFY(frames[1]->isAncestorOf(&it.rows()));
    for (const int tab : {0, 1, 1, 0}) {
        it.clickTab(tab);
        QCOMPARE(frames[0]->isVisible(), tab == 1);
        QCOMPARE(frames[1]->isVisible(), tab == 0);
    }
    for (QWidget* focus : {static_cast<QWidget*>(&it.rows()), it.dialog->findChild<QWidget*>("cmdApply")}) {
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key_Tab, Qt::ControlModifier);
        QVERIFY(frames[0]->isVisible());
        QTest::keyClick(it.dialog->focusWidget(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(frames[1]->isVisible());
    }
}

void FrmOptionTest::takesNumbers_data() {
    const testsupport::TextTable<int> row("text", "rows");  // -1: refused
    row(" 7 ", 7);
    row("2147483647", 2147483647);
    for (const char* refused : {"", "2147483648", "-1", "abc"})
        row(refused, -1);
}

void FrmOptionTest::takesNumbers() {
    QFETCH(QString, text);
    QFETCH(int, rows);
    Answers answers;
    const Dialog it;
    it.rows().setText(text);
    it.click("cmdApply");
    QCOMPARE(it.state.options.NumberRecShow, rows < 0 ? 50 : rows);
    QCOMPARE(it.tracked.size(), rows < 0 ? 0u : 1u);
    if (rows < 0) expectRefusal(answers);
}

void FrmOptionTest::judgesWhatIsTyped() {
    Answers answers;
    const Dialog it;
    QTest::keyClicks(&it.rows(), QStringLiteral("12"));
    QCOMPARE(answers.boxes(), 0);
    answers.whileOpen([&](const auto&) { it.find<QTabWidget>("tsOptions").setFocus(); });
    QTest::keyClicks(&it.rows(), QStringLiteral("x"));
    expectRefusal(answers);
    QCOMPARE(it.rows().text(), QStringLiteral("12x"));
    QCOMPARE(it.rows().selectedText(), QStringLiteral("12x"));
    QVERIFY(it.rows().hasFocus());
    QTest::keyClick(&it.rows(), Qt::Key_Delete);
    expectRefusal(answers);
    QTest::keyClicks(&it.rows(), QStringLiteral("0"));
    QCOMPARE(answers.boxes(), 0);
    QCOMPARE(it.values(), QStringLiteral("50/0/0"));
}

void FrmOptionTest::refusalChangesNothing_data() {
    const testsupport::Table<QString> row("button");
    row("Apply", "cmdApply");
    row("OK", "cmdOK");
}

void FrmOptionTest::refusalChangesNothing() {
    QFETCH(QString, button);
    Answers answers;
    const Dialog it;
    it.rows().setText(QStringLiteral("many"));
    it.clickTab(1);
    it.single().setChecked(true);
    it.hot().setChecked(true);
    answers.whileOpen([&](const auto&) { QVERIFY(it.rows().isVisible()); });
    it.click(qUtf8Printable(button));
    expectRefusal(answers);
    QCOMPARE(it.values(), QStringLiteral("50/0/0"));
    QVERIFY(it.tracked.empty());
    QVERIFY(it.dialog->isVisible());
    QVERIFY(it.rows().hasFocus());
    QCOMPARE(it.rows().selectedText(), QStringLiteral("many"));
}

void FrmOptionTest::storesOneAndZero() {
    const Dialog it({.MouseClickOption = 2, .MouseHotTracking = 1});
    it.clickTab(1);
    QTest::mouseClick(&it.hot(), Qt::LeftButton, {}, {8, it.hot().height() / 2});
    it.click("cmdApply");
    QCOMPARE(it.values(), QStringLiteral("50/0/0"));
    QTest::mouseClick(&it.hot(), Qt::LeftButton, {}, {8, it.hot().height() / 2});
    QTest::mouseClick(&it.single(), Qt::LeftButton, {}, {8, it.single().height() / 2});
    QVERIFY(it.dialog->isVisible());
    it.click("cmdOK");
    QCOMPARE(it.values(), QStringLiteral("50/1/1"));
    QCOMPARE(it.tracked, (std::vector<bool>{false, true}));
    QVERIFY(!it.dialog->isVisible());
}

void FrmOptionTest::leavesByKey_data() {
    const testsupport::Table<int, int, bool> row("key", "modifiers", "taken");
    row("Enter", int(Qt::Key_Return), int(Qt::NoModifier), true);
    row("Alt+O", int(Qt::Key_O), int(Qt::AltModifier), true);
    row("Escape", int(Qt::Key_Escape), int(Qt::NoModifier), false);
    row("Alt+C", int(Qt::Key_C), int(Qt::AltModifier), false);
}

void FrmOptionTest::leavesByKey() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, taken);
    const Dialog it;
    it.single().setChecked(true);
    QTest::keyClicks(&it.rows(), QStringLiteral("7"));
    QTest::keyClick(&it.rows(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTRY_VERIFY(!it.dialog->isVisible());
    QCOMPARE(it.values(), taken ? QStringLiteral("7/1/0") : QStringLiteral("50/0/0"));
    QCOMPARE(it.rows().text(), taken ? QStringLiteral("7") : QStringLiteral("50"));
    QCOMPARE(it.single().isChecked(), taken);
}

/// The dialog as the frame opens it, with hot tracking ticked and OK pressed.
void turnOnHotTracking(FrameFixture& fixture) {
    QTimer::singleShot(0, &fixture.frame, [] {
        auto* dialog = qobject_cast<tw::frmOption*>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        dialog->findChild<QCheckBox*>(QStringLiteral("chkMouseHotTracking"))->setChecked(true);
        dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        dialog->close();
    });
    fixture.action("mnuToolOptions")->trigger();
    QCOMPARE(fixture.state.options.MouseHotTracking, 1);
}

void FrmOptionTest::tracksInActiveDocument() {
    FrameFixture fixture;
    fixture.start();
    tw::frmDocument& other = fixture.open();
    tw::frmDocument& active = fixture.open();
    turnOnHotTracking(fixture);
    QVERIFY(active.tvDB().hotTracking());
    QVERIFY(!other.tvDB().hotTracking());
    QVERIFY(fixture.open().tvDB().hotTracking());
}

void FrmOptionTest::failsWithoutChild() {
    FrameFixture fixture;
    fixture.start();
    std::vector<int> failures;
    const auto previous = desktop::setUnhandledFailureHandler(
        [&](const platform::RuntimeError& error) { failures.push_back(error.number()); });
    turnOnHotTracking(fixture);
    QCOMPARE(failures, std::vector<int>{91});
    // A child that has no tree is passed over.
    addOtherChild(fixture);
    fixture.state.options.MouseHotTracking = 0;
    turnOnHotTracking(fixture);
    QCOMPARE(failures.size(), 1u);
    desktop::setUnhandledFailureHandler(previous);
}

QTEST_MAIN(FrmOptionTest)
#include "test_frmoption.moc"

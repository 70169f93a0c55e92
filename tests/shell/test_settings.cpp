#include "platform/runtimeerror.h"
#include "shell/core/appstate.h"
#include "shell/core/options.h"
#include "shell/core/placement.h"
#include "support/table.h"

#include <QTemporaryDir>
#include <QTest>

using platform::RuntimeError;
using tw::Placement;
using tw::StartPlacement;

namespace {

/// Settings in a file of their own.
struct Fixture {
    QTemporaryDir folder;
    desktop::SettingsStore store{folder.filePath(QStringLiteral("settings.ini"))};
    tw::AppState state{store};

    QString options() const {
        const tw::Options& o = state.options;
        return QStringLiteral("%1 %2 %3 %4 %5")
            .arg(o.Layout)
            .arg(o.NumberRecShow)
            .arg(o.MouseClickOption)
            .arg(o.ToolBarCaption)
            .arg(o.MouseHotTracking);
    }
};

}  // namespace

class SettingsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void optionsComeBack();
    void badNumbersAreRefused_data();
    void badNumbersAreRefused();
    void placementComesBackToTheBit();
    void startPlacement_data();
    void startPlacement();
};

void SettingsTest::optionsComeBack() {
    Fixture fixture;
    fixture.state.options = {2, 7, 1, 0, 1};
    loadOptions(fixture.state);
    QCOMPARE(fixture.options(), QStringLiteral("1 50 0 1 0"));

    fixture.state.options = {2, 2147483647, 1, 0, -3};
    saveOptions(fixture.state);
    QCOMPARE(fixture.state.setting(QStringLiteral("NumberRecShow"), {}), QStringLiteral("2147483647"));
    fixture.state.options = {};
    loadOptions(fixture.state);
    QCOMPARE(fixture.options(), QStringLiteral("2 2147483647 1 0 -3"));
}

void SettingsTest::badNumbersAreRefused_data() {
    const testsupport::Table<QString, QString, QString> row("key", "text", "number");
    row("letters", "NumberRecShow", "many", "13");
    row("empty", "Layout", "", "13");
    row("too large for 16 bits", "ToolBarCaption", "32768", "6");
    row("letters for a coordinate", "MainWidth", "wide", "13");
}

void SettingsTest::badNumbersAreRefused() {
    QFETCH(QString, key);
    QFETCH(QString, text);

    Fixture fixture;
    fixture.state.options.Layout = 2;
    fixture.state.saveSetting(key, text);
    try {
        loadOptions(fixture.state);
        tw::loadPlacement(fixture.state);
        QFAIL("the bad number was taken");
    } catch (const RuntimeError& error) {
        QTEST(QString::number(error.number()), "number");
        const QString place = QStringLiteral("\"%1\" in the file \"%2\" is \"%3\"");
        QVERIFY(error.description().contains(place.arg(key, fixture.store.filePath(), text)));
    }
    QCOMPARE(fixture.state.setting(key, {}), text);
}

void SettingsTest::placementComesBackToTheBit() {
    Fixture fixture;
    const Placement placement{-120.5F, 1.0F / 3, 16777216, 28305};
    savePlacement(fixture.state, placement);
    QCOMPARE(fixture.state.setting(QStringLiteral("MainHeight"), {}), QStringLiteral("28305"));
    QVERIFY(tw::loadPlacement(fixture.state) == placement);
}

void SettingsTest::startPlacement_data() {
    const testsupport::Table<Placement, StartPlacement> row("stored", "expected");

    const Placement inside{0, 0, 19000, 14000};
    row("first run", {9999, 9999, 9999, 9999}, {inside, true});
    row("only the top says that it is a first run", {120, 9999, 8000, 6000}, {inside, true});
    row("9999 elsewhere is a place", {9999, 120, 9999, 9999}, {{9999, 120, 9999, 9999}, false});
    row("as large as the screen", {0, 0, 20000, 15000}, {{0, 0, 20000, 15000}, false});
    row("wider than the screen", {300, 300, 20001, 6000}, {inside, false});
    row("higher than the screen", {300, 300, 8000, 15001}, {inside, false});
    row("off the screen, but not too large", {-9000, 90000, 8000, 6000}, {{-9000, 90000, 8000, 6000}, false});
}

void SettingsTest::startPlacement() {
    QFETCH(Placement, stored);
    QFETCH(StartPlacement, expected);
    QVERIFY(tw::startPlacement(stored, 20000, 15000) == expected);
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "test_settings.moc"

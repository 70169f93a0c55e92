#include "compare/comparison.h"
#include "compare/frmcompareresult.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace tour {

namespace {

/// What is done at a moment of a running comparison: once the bar stands there or further.
struct Moment {
    int bar;
    std::function<void(QDialog& progress)> then;
};

QDialog* progressWindow(const Place& place) {
    const auto* result = place.frame.findChild<tw::frmCompareResult*>();
    return result == nullptr ? nullptr : result->findChild<QDialog*>(QStringLiteral("frmCompareProgress"));
}

tw::frmCompareResult& resultWindow(Place& place) {
    auto* result = qobject_cast<tw::frmCompareResult*>(place.frame.area().activeSubWindow()->widget());
    place.stage.expect(result != nullptr, QStringLiteral("the result window is the active one"));
    return *result;
}

void chooseSystem(Place& place, QWidget& dialog, int number, const QString& database, const QString& table) {
    const auto choose = [&](const QString& list, const QString& text) {
        auto& box = place.stage.find<QComboBox>(dialog, list.arg(number));
        place.stage.pick(box, text);
    };
    choose(QStringLiteral("cbServer%1"), place.server);
    choose(QStringLiteral("cbDatabase%1"), database);
    if (!table.isEmpty()) choose(QStringLiteral("cbTable%1"), table);
}

/// Opens the selection, fills it in, and follows the comparison until it has ended.
void compare(Place& place, const std::function<void(QWidget& dialog)>& fillIn,
             std::vector<Moment> moments = {}) {
    Stage& stage = place.stage;
    size_t next = 0;
    std::exception_ptr failure;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QDialog* progress = progressWindow(place);
        if (progress == nullptr || next == moments.size()) return;
        const auto& bar = stage.find<QProgressBar>(*progress, QStringLiteral("ProgressBar1"));
        if (bar.value() < moments[next].bar) return;
        try {
            moments[next++].then(*progress);
        } catch (...) {
            failure = std::current_exception();
        }
    });
    watch.start(0);
    stage.inDialog(
        [&] { stage.choose(place.frame, QStringLiteral("mnuTool"), QStringLiteral("mnuToolCompare")); },
        [&](QWidget& dialog) {
            fillIn(dialog);
            stage.press(dialog, Qt::Key_Return);
        });
    watch.stop();
    if (failure) std::rethrow_exception(failure);
    stage.expect(next == moments.size(), QStringLiteral("the comparison lasted for every picture"));
}

void select(Place& place, QWidget& dialog) {
    Stage& stage = place.stage;
    stage.expectText(dialog.windowTitle(), QStringLiteral("Databases Selection"),
                     QStringLiteral("the dialog's caption"));
    stage.expectMessage([&] { stage.press(dialog, Qt::Key_Return); },
                        QStringLiteral("Please select server for system 1."));
    stage.picture(QStringLiteral("compare-selection"));
    chooseSystem(place, dialog, 1, QStringLiteral("Workshop"), {});
    chooseSystem(place, dialog, 2, QStringLiteral("Workshop2"), {});
    for (const char* box : {"chkConstraint", "chkIndex", "chkForeignKey"})
        stage.click(stage.find<QCheckBox>(dialog, QLatin1String(box)));
    stage.picture(QStringLiteral("compare-selection-filled"));
}

void expectResult(Place& place, const tw::frmCompareResult& result) {
    Stage& stage = place.stage;
    const QDialog& progress = *progressWindow(place);
    stage.expectText(stage.find<QLabel>(progress, QStringLiteral("lblProgress")).text(),
                     QStringLiteral("Comparing databases finished."), QStringLiteral("the progress"));
    const auto count = [&](int icon) {
        int rows = 0;
        for (const char* name : {"lvSystem1", "lvSystem2"}) {
            const auto& list = stage.find<desktop::ListView>(result, QLatin1String(name));
            const auto& items = static_cast<const controls::ListItems&>(*list.model());
            for (int item = 0; item < items.count(); ++item)
                rows += items.icon(item) == icon ? 1 : 0;
        }
        return QString::number(rows);
    };
    stage.expectText(stage.find<QLabel>(progress, QStringLiteral("lblNumUnmatch")).text(),
                     count(tw::Comparison::Unmatched),
                     QStringLiteral("the number of rows marked as not matching"));
    stage.expect(count(tw::Comparison::Matched).toInt() > 0, QStringLiteral("something matches"));
}

void closeProgress(Place& place) {
    QDialog& progress = *progressWindow(place);
    place.stage.click(place.stage.find<QPushButton>(progress, QStringLiteral("cmdClose")));
    place.stage.waitFor([&] { return !progress.isVisible(); }, QStringLiteral("the progress window closes"));
}

void closeResult(Place& place) {
    resultWindow(place).parentWidget()->close();
    place.stage.waitFor([&] { return place.frame.findChild<tw::frmCompareResult*>() == nullptr; },
                        QStringLiteral("the result window has gone"));
}

/// By keyboard alone.
void findDifferences(Place& place, const tw::frmCompareResult& result) {
    Stage& stage = place.stage;
    auto& list = stage.find<desktop::ListView>(result, QStringLiteral("lvSystem1"));
    list.setFocus();
    for (int i = 0; i < 4; ++i)
        stage.press(list, Qt::Key_F8);
    stage.expectText(list.currentIndex().data().toString(), QStringLiteral("PK_Holiday"),
                     QStringLiteral("the fourth difference"));
    stage.picture(QStringLiteral("compare-next-difference"));
    // The menu serves events by itself until something is chosen from it.
    QTimer::singleShot(0, &list, [&stage] {
        QWidget* menu = QApplication::activePopupWidget();
        if (menu == nullptr) return;
        stage.picture(QStringLiteral("compare-menu"));
        stage.press(*menu, Qt::Key_D);
    });
    QTest::keyClick(&list, Qt::Key_F10, Qt::ShiftModifier);
    stage.expect(list.items()->rowCount() < list.items()->count(), QStringLiteral("only some rows show"));
    stage.picture(QStringLiteral("compare-differences-only"));
    QTest::keyClick(&list, Qt::Key_F, Qt::ControlModifier);
    auto& entry = stage.find<QLineEdit>(result, QStringLiteral("txtFind"));
    stage.type(entry, QStringLiteral("hourlyrate"));
    stage.press(entry, Qt::Key_Return);
    stage.picture(QStringLiteral("compare-found"));
    stage.expectText(list.currentIndex().data().toString(), QStringLiteral("HourlyRate"),
                     QStringLiteral("what was found"));
    stage.press(entry, Qt::Key_Escape);
    QTest::keyClick(&list, Qt::Key_D, Qt::ControlModifier);
}

void compareDatabases(Place& place) {
    Stage& stage = place.stage;
    const auto picture = [&](const char* name) {
        return [&stage, name](QDialog&) { stage.picture(QLatin1String(name)); };
    };
    compare(place, [&](QWidget& dialog) { select(place, dialog); },
            {{0, picture("compare-begins")}, {45, picture("compare-half-way")}});
    const tw::frmCompareResult& result = resultWindow(place);
    expectResult(place, result);
    stage.picture(QStringLiteral("compare-finished"));
    closeProgress(place);
    stage.picture(QStringLiteral("compare-one-above-the-other"));
    stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuViewVertical"));
    place.frame.area().activeSubWindow()->showMaximized();
    stage.picture(QStringLiteral("compare-side-by-side"));
    findDifferences(place, result);
    place.frame.area().activeSubWindow()->showNormal();
    stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuViewHorizontal"));
    closeResult(place);
}

void compareTables(Place& place) {
    compare(place, [&](QWidget& dialog) {
        chooseSystem(place, dialog, 1, QStringLiteral("Workshop"), QStringLiteral("Part"));
        chooseSystem(place, dialog, 2, QStringLiteral("Workshop2"), QStringLiteral("Part"));
    });
    expectResult(place, resultWindow(place));
    closeProgress(place);
    place.stage.picture(QStringLiteral("compare-one-table"));
    closeResult(place);
}

void cancelOne(Place& place) {
    Stage& stage = place.stage;
    compare(place,
            [&](QWidget& dialog) {
                chooseSystem(place, dialog, 1, QStringLiteral("Workshop"), {});
                chooseSystem(place, dialog, 2, QStringLiteral("Workshop2"), {});
            },
            {{0, [&](QDialog& progress) {
                  stage.click(stage.find<QPushButton>(progress, QStringLiteral("cmdClose")));
              }}});
    stage.expectText(stage.find<QLabel>(*progressWindow(place), QStringLiteral("lblProgress")).text(),
                     QStringLiteral("Comparing databases cancelled."),
                     QStringLiteral("what a cancelled comparison says"));
    stage.picture(QStringLiteral("compare-cancelled"));
    closeResult(place);
}

}  // namespace

void walkComparing(Place& place) {
    place.stage.say(QStringLiteral("Two versions of a database are compared"));
    compareDatabases(place);
    place.stage.say(QStringLiteral("One table with one table, and a comparison that is cancelled"));
    compareTables(place);
    cancelOne(place);
}

}  // namespace tour

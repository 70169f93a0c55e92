#include "platform/desktop/datagrid.h"
#include "query/frmquery.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

namespace tour {

namespace {

/// A query window and the hands on it.
struct Window {
    Stage& stage;
    tw::frmQuery& query;

    template <class Control>
    Control& find(const char* name) const {
        return stage.find<Control>(query, QString::fromLatin1(name));
    }
    void pick(const char* list, const QString& entry, const QString& picture = {}) const {
        auto& box = find<QComboBox>(list);
        stage.pick(box, entry, picture);
    }
    void expectText(const char* box, const char* text) const {
        stage.expectText(find<QPlainTextEdit>(box).toPlainText(), QString::fromUtf8(text),
                         QString::fromLatin1(box));
    }
    void press(const char* button) const { stage.click(find<QPushButton>(button)); }
    int page() const { return find<QTabWidget>("tsQuery").currentIndex(); }
    QString count() const { return find<QLabel>("lblRecCount").text(); }
};

tw::frmQuery& openWindow(Place& place) {
    Stage& stage = place.stage;
    stage.clickTool(place.frame, QStringLiteral("Query"));
    QMdiSubWindow* child = place.frame.activeChild();
    auto* query = child == nullptr ? nullptr : qobject_cast<tw::frmQuery*>(child->widget());
    stage.expect(query != nullptr, QStringLiteral("a query window opens"));
    stage.expectText(query->windowTitle(), QStringLiteral("Query Window 1 - ") + place.server,
                     QStringLiteral("the caption"));
    stage.expect(child->y() == 0, QStringLiteral("the window stands at the top"));
    return *query;
}

void build(Window& window) {
    window.stage.expectMessage([&] { window.press("cmdExecute"); },
                               QStringLiteral("Please select a database for the query."),
                               QStringLiteral("query-without-database"));
    window.pick("cbDatabase", QStringLiteral("Workshop"));
    window.pick("cbTable", QStringLiteral("Mechanic"));
    window.pick("cbColumn", QStringLiteral("Name"), QStringLiteral("query-column-list"));
    for (const char* column : {"BossId", "HourlyRate", "Photo"})
        window.pick("cbColumn", QString::fromLatin1(column));
    window.pick("cbConditionTable", QStringLiteral("Mechanic"));
    window.pick("cbConditionColumn", QStringLiteral("HourlyRate"));
    window.pick("cbConditionOperator", QStringLiteral("<= (less than or equal to)"));
    window.expectText("txtColumns",
                      "SELECT [Mechanic].[Name], [Mechanic].[BossId], [Mechanic].[HourlyRate], "
                      "[Mechanic].[Photo]");
    window.expectText("txtTables", "FROM [Mechanic]");
    window.expectText("txtWhereClause", "WHERE [Mechanic].[HourlyRate] <= ");
    auto& conditions = window.find<QPlainTextEdit>("txtWhereClause");
    conditions.setFocus();
    for (const QChar digit : QStringLiteral("100"))
        window.stage.press(conditions, Qt::Key(digit.unicode()));
    window.expectText("txtWhereClause", "WHERE [Mechanic].[HourlyRate] <= 100");
    window.stage.picture(QStringLiteral("query-built"));
}

void lookAtResult(Window& window) {
    Stage& stage = window.stage;
    window.press("cmdExecute");
    stage.expect(window.page() == 1, QStringLiteral("the result shows"));
    stage.expectText(window.count(), QStringLiteral("Number of rows returned: 4"),
                     QStringLiteral("the number of rows"));
    auto& grid = window.find<desktop::DataGrid>("dgrResult");
    grid.setFocus();
    grid.selectRow(0);
    grid.copySelection();
    stage.expectText(
        QGuiApplication::clipboard()->text(),
        QStringLiteral("Name\tBossId\tHourlyRate\tPhoto\nGreta Lindqvist\tNULL\t42.5000\t<Binary>\n"),
        QStringLiteral("the row copied with the names"));
    stage.picture(QStringLiteral("query-result"));
    window.press("cmdBack");
    stage.expect(window.page() == 0, QStringLiteral("the query page is back"));
}

void meetAnError(Window& window) {
    Stage& stage = window.stage;
    auto& columns = window.find<QPlainTextEdit>("txtColumns");
    stage.type(columns, QStringLiteral("delete"));
    stage.expectMessage([&] { window.press("cmdExecute"); },
                        QStringLiteral("Sorry, only select statements are allowed."));
    stage.type(columns, QStringLiteral("select Name, Wage"));
    stage.inDialog([&] { window.press("cmdExecute"); },
                   [&](QWidget& box) {
                       const QString text = stage.messageOf(box);
                       stage.expect(text.contains(QStringLiteral("Invalid column name 'Wage'.")),
                                    QStringLiteral("the server's own words: ") + text);
                       stage.picture(QStringLiteral("query-error"));
                       stage.press(box, Qt::Key_Return);
                   });
    stage.expect(window.page() == 0, QStringLiteral("the query page stays"));
    stage.expectText(window.count(), QStringLiteral("Number of rows returned: 4"),
                     QStringLiteral("the number of rows stays"));
}

void limitRows(Place& place, Window& window) {
    Stage& stage = place.stage;
    auto& most = window.find<QLineEdit>("txtMaxRows");
    stage.expectMessage([&] { stage.type(most, QStringLiteral("x")); },
                        QStringLiteral("Please enter numeric data"), QStringLiteral("query-numeric"));
    stage.type(most, QStringLiteral("2"));
    stage.expectText(place.state.setting(QStringLiteral("QueryMaxRows"), {}), QStringLiteral("2"),
                     QStringLiteral("the limit that is kept"));
    window.press("cmdReset");
    window.expectText("txtTables", "");
    window.expectText("txtColumns", "SELECT *");
    stage.expectText(window.find<QComboBox>("cbDatabase").currentText(), QStringLiteral("Workshop"),
                     QStringLiteral("the database stays chosen"));
    stage.picture(QStringLiteral("query-reset"));
    window.pick("cbTable", QStringLiteral("Customer"));
    // The Enter key executes where no box has use for it.
    stage.press(window.find<QComboBox>("cbTable"), Qt::Key_Return);
    stage.expectText(window.count(), QStringLiteral("Number of rows returned: 2"),
                     QStringLiteral("the limited number of rows"));
    stage.picture(QStringLiteral("query-limited"));
}

}  // namespace

void walkQuerying(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("A query: picked, edited, run, mended"));
    Window window{stage, openWindow(place)};
    stage.picture(QStringLiteral("query-window"));
    build(window);
    lookAtResult(window);
    meetAnError(window);
    limitRows(place, window);
    const qsizetype windows = place.frame.area().subWindowList().size();
    window.press("cmdClose");
    stage.waitFor([&] { return place.frame.area().subWindowList().size() == windows - 1; },
                  QStringLiteral("the query window has closed"));
}

}  // namespace tour

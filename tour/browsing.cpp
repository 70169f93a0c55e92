#include "browse/frmdocument.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/treeview.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTest>

namespace tour {

namespace {

constexpr QSize UsualSize(1000, 700);
constexpr QSize Border(16, 48);  // room for a window manager's frame
constexpr QSize SmallestDocument(200, 200);

/// A document window and what the user sees of it.
struct View {
    Stage& stage;
    tw::frmDocument& document;

    QString title(int index) const {
        return stage.find<QLabel>(document, QStringLiteral("lblTitle%1").arg(index)).text();
    }
    void open(const QStringList& path) const {
        auto& tree = document.tvDB();
        stage.clickNode(tree, QStringList{tree.model()->index(0, 0).data().toString()} + path, true);
        const controls::ListItems& rows = document.lvTblDataItems();
        stage.waitFor([&] { return rows.rowCount() == rows.count(); }, QStringLiteral("the rows show"));
    }
};

QString rowOf(const controls::ListItems& list, int item) {
    QStringList texts;
    for (int column = 0; column < list.headerCount(); ++column)
        texts += list.subItem(item, column);
    return texts.join(u'|');
}

void openTable(View& view) {
    Stage& stage = view.stage;
    view.open({QStringLiteral("Workshop"), QStringLiteral("RepairLine")});
    stage.expectText(view.title(0), QStringLiteral("Database: Workshop"), QStringLiteral("the first title"));
    stage.expectText(view.title(1), QStringLiteral("Table Definition: RepairLine"),
                     QStringLiteral("the second title"));
    const controls::ListItems& columns = view.document.lvTblDefItems();
    stage.expect(columns.count() == 5, QStringLiteral("the table has five columns"));
    stage.expectText(rowOf(columns, 0), QStringLiteral("OrderId|Integer||Yes"),
                     QStringLiteral("the first column"));
    stage.expect(columns.icon(0) == 5 && columns.icon(1) == 5 && columns.icon(2) == 0,
                 QStringLiteral("both columns of the key have a key"));
    stage.expect(view.title(2).startsWith(QStringLiteral("Table: RepairLine.  Total rows: ")),
                 QStringLiteral("the title of the rows: ") + view.title(2));
    const controls::ListItems& rows = view.document.lvTblDataItems();
    stage.expect(rows.headerCount() == columns.count() && rows.count() > 1,
                 QStringLiteral("the rows are listed under the table's columns"));
}

void openDatabase(View& view) {
    view.open({QStringLiteral("Workshop")});
    view.stage.expectText(
        view.title(2),
        QStringLiteral("Constraints, Indexes and Foreign keys definitions in Workshop database"),
        QStringLiteral("the title of the details"));
    view.stage.expect(view.document.lvTblDefItems().count() == 0,
                      QStringLiteral("the list of columns is empty"));
    view.stage.expect(view.document.lvTblDataItems().headerCount() == 11,
                      QStringLiteral("the details have eleven columns"));
}

void copyRows(View& view) {
    Stage& stage = view.stage;
    auto& list = view.document.lvTblData();
    const controls::ListItems& rows = view.document.lvTblDataItems();
    const auto place = [&](int row) { return list.visualRect(rows.index(row, 1)).center(); };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place(0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ShiftModifier, place(1));
    stage.picture(QStringLiteral("two-rows-selected"));
    QTest::keySequence(&list, QKeySequence::Copy);
    const QString copied = rowOf(rows, 0) + u'\n' + rowOf(rows, 1) + u'\n';
    stage.expectText(QGuiApplication::clipboard()->text().replace(u'\t', u'|'), copied,
                     QStringLiteral("the copied rows"));
}

/// Drags the bar between the two lists up a third.
void dragSplitter(View& view) {
    Stage& stage = view.stage;
    auto& handle = stage.find<QWidget>(view.document, QStringLiteral("imgSplitter2"));
    const int before = handle.y();
    QTest::mousePress(&handle, Qt::LeftButton, {}, {5, 0});
    QTest::mouseMove(&handle, {5, -before / 3});
    stage.picture(QStringLiteral("bar-being-dragged"));
    QTest::mouseRelease(&handle, Qt::LeftButton, {}, {5, 0});
    stage.expect(handle.y() < before, QStringLiteral("the splitter has moved up"));
    stage.expect(view.document.lvTblData().geometry().bottom() == view.document.rect().bottom(),
                 QStringLiteral("the rows take the room that the columns gave up"));
}

void openClosedDatabase(View& view) {
    Stage& stage = view.stage;
    view.open({QStringLiteral("Payroll"), QStringLiteral("<No Permission>")});
    stage.expect(view.document.lvTblDefItems().count() + view.document.lvTblDataItems().count() == 0,
                 QStringLiteral("a table that is a marker empties both lists"));
    view.open({QStringLiteral("Payroll")});
    stage.expectText(view.document.lvTblDataItems().text(0), QStringLiteral("<No Permission>"),
                     QStringLiteral("the details of a closed database"));
    stage.picture(QStringLiteral("closed-database"));
}

}  // namespace

void walkBrowsing(Place& place) {
    Stage& stage = place.stage;
    QMdiSubWindow& child = *place.frame.area().activeSubWindow();
    View view{stage, *qobject_cast<tw::frmDocument*>(child.widget())};

    stage.say(QStringLiteral("A table's columns and rows, a database's details, in both layouts"));
    place.frame.showNormal();
    const QSize size = UsualSize.boundedTo(place.frame.screen()->availableSize() - Border);
    place.frame.resize(size);
    child.showMaximized();
    stage.waitFor([&] { return place.frame.size() == size; }, QStringLiteral("the frame is smaller"));
    for (const char* layout : {"Horizontal", "Vertical"}) {
        const QString name = QString::fromLatin1(layout);
        stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuView") + name);
        openTable(view);
        stage.picture(QStringLiteral("table-") + name.toLower());
        openDatabase(view);
        stage.picture(QStringLiteral("details-") + name.toLower());
    }
    openTable(view);
    copyRows(view);
    dragSplitter(view);
    openClosedDatabase(view);

    stage.say(QStringLiteral("The smallest window"));
    child.showNormal();
    child.resize(child.minimumSizeHint());
    for (const char* layout : {"Vertical", "Horizontal"}) {
        const QString name = QString::fromLatin1(layout);
        stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuView") + name);
        openTable(view);
        stage.expect(view.document.size() == SmallestDocument,
                     QStringLiteral("the document is as small as it gets"));
        stage.picture(QStringLiteral("smallest-") + name.toLower());
    }
    place.frame.showMaximized();
    stage.waitFor([&] { return place.frame.isMaximized(); }, QStringLiteral("the frame is large again"));
    stage.clickTool(place.frame, QStringLiteral("CenterChild"));
}

}  // namespace tour

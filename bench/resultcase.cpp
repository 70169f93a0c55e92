#include "resultcase.h"

#include "compare/comparison.h"
#include "compare/markwords.h"
#include "compare/resultcommands.h"
#include "figures.h"
#include "platform/controls/gridrows.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/finder.h"
#include "platform/desktop/listview.h"

#include <QAction>
#include <QCoreApplication>
#include <QScrollBar>

namespace bench {

namespace {

constexpr int ColumnsOfTable = 28;
constexpr int DifferentOf = 10;

void fill(controls::ListItems& items, qint64 rows) {
    items.addHeader(QStringLiteral("Names"));
    for (int i = 0; i < 4; ++i)
        items.addHeader(QStringLiteral("Attribute"));
    for (int row = 0; row < rows; ++row) {
        const int place = row % ColumnsOfTable;
        if (place == 0) {
            items.addItem(QStringLiteral("Table: Table%1").arg(row / ColumnsOfTable), tw::Comparison::Table);
            continue;
        }
        const bool different = row % DifferentOf == 0;
        const int item = items.addItem(QStringLiteral("Column%1").arg(place),
                                       different ? tw::Comparison::Unmatched : tw::Comparison::Matched);
        items.setSubItem(item, 1, QStringLiteral("VarChar(%1)").arg(place));
        items.setSubItem(item, 2, u"Yes");
    }
}

/// Sorting the rows of a query by a number and by a text.
void measureSorting(Result& result, qint64 rows) {
    controls::RowStore store;
    for (int row = 0; row < rows; ++row) {
        store.addRow(0);
        const auto mixed = static_cast<quint32>(row) * 2654435761U;
        store.appendText(QString::number(mixed));
        store.appendText(QStringLiteral("Name %1").arg(mixed));
    }
    controls::GridRows grid;
    grid.reset({{QStringLiteral("Number"), controls::GridColumnKind::Number}, {QStringLiteral("Text")}},
               std::move(store));
    for (const int column : {0, 1}) {
        const double seconds = secondsOf([&] { grid.sort(column, Qt::AscendingOrder); });
        result.figures.push_back({column == 0 ? QStringLiteral("sorting a grid by numbers")
                                              : QStringLiteral("sorting a grid by texts"),
                                  seconds * 1000, QStringLiteral("ms")});
    }
}

}  // namespace

Result runResultCase(const Request& request) {
    const qint64 rows = request.measures[0];
    std::array<controls::ListItems, 2> items;
    QWidget window;
    window.resize(1000, 700);
    std::array<desktop::ListView*, 2> lists{};
    for (const size_t side : {0, 1}) {
        fill(items[side], rows);
        items[side].setMarkWords(tw::markWords());
        lists[side] = new desktop::ListView(&window);
        lists[side]->setGeometry(static_cast<int>(side) * 500, 0, 500, 700);
        lists[side]->setItems(&items[side]);
    }
    Result result;
    result.scale = QStringLiteral("%1 rows a side").arg(rows);
    const auto add = [&](const char* name, const std::function<void()>& work) {
        const double seconds = secondsOf([&] {
            work();
            QCoreApplication::processEvents();
            window.grab();
        });
        result.figures.push_back({QString::fromLatin1(name), seconds * 1000, QStringLiteral("ms")});
    };
    window.show();
    lists[0]->setFocus();
    add("first paint", [] {});
    const size_t before = heapBytes();
    auto* commands = new tw::ResultCommands(&window, lists);  // owned by the window
    const auto trigger = [&](const char* name) {
        commands->findChild<QAction*>(QLatin1String(name))->trigger();
    };
    add("index of the differences", [&] { commands->update(); });
    add("next difference", [&] { trigger("mnuNextDifference"); });
    add("next difference from the last row", [&] {
        lists[0]->setCurrentIndex(items[0].index(items[0].rowCount() - 1, 0));
        trigger("mnuNextDifference");
    });
    add("a linked step", [&] { lists[0]->verticalScrollBar()->setValue(static_cast<int>(rows / 2)); });
    add("differences only", [&] { trigger("mnuDifferencesOnly"); });
    result.complete =
        items[1].rowCount() < rows / DifferentOf * 2 && items[1].rowCount() > rows / DifferentOf;
    result.figures.push_back({QStringLiteral("memory of index and differences"),
                              static_cast<double>(heapBytes() - before) / (1024 * 1024),
                              QStringLiteral("MiB")});
    add("all rows again", [&] { trigger("mnuDifferencesOnly"); });
    result.complete = result.complete && items[1].rowCount() == rows;
    add("finding what is nowhere",
        [&] { desktop::findText(items[0], {}, QStringLiteral("nowhere"), false); });
    measureSorting(result, rows);
    for (desktop::ListView* list : lists)
        list->setItems(nullptr);
    return result;
}

}  // namespace bench

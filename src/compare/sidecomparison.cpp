#include "compare/sidecomparison.h"

#include "compare/comparison.h"
#include "dbaccess/failingstep.h"
#include "platform/controls/listitems.h"

#include <QHash>

#include <algorithm>

namespace tw {

namespace {

/// How often each item is there.
QHash<QStringList, int> countsOf(const ComparedItems& items) {
    QHash<QStringList, int> counts;
    counts.reserve(static_cast<qsizetype>(items.size()));
    for (const ComparedItem& item : items)
        ++counts[item.texts];
    return counts;
}

}  // namespace

void addResult(controls::ListItems& results, const QStringList& texts, int icon) {
    const int row = results.addItem(texts.first(), icon);
    for (int column = 1; column < texts.size(); ++column) {
        if (!texts[column].isEmpty()) results.setSubItem(row, column, texts[column]);
    }
}

bool compareSide(const ComparedItems& items, const ComparedItems& others, controls::ListItems& results,
                 const SideReport& report, ComparisonProgress& progress, const std::function<bool()>& goOn) {
    const auto show = [&](const ComparedItem& item, int icon, ComparedState state, const QString& text) {
        skipFailing([&] { addResult(results, item.shown, icon); });
        skipFailing([&] { progress.UpdateForm(state, text); });
    };
    const QHash<QStringList, int> counts = countsOf(others);
    for (const ComparedItem& item : items) {
        if (!goOn()) return false;
        const int equal = counts.value(item.texts);
        const int rows = report.everyMatch ? equal : std::min(equal, 1);
        for (int i = 0; i < rows; ++i) {
            if (!goOn()) return false;
            show(item, Comparison::Matched, report.matchedState, report.matchedText);
        }
        if (rows == 0) show(item, Comparison::Unmatched, ComparedState::Unmatched, report.unmatchedText);
    }
    return true;
}

}  // namespace tw

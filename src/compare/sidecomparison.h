#pragma once

#include "compare/compareditems.h"
#include "compare/comparisonprogress.h"

#include <functional>

namespace tw {

/// How the items of one side are told of.
struct SideReport {
    ComparedState matchedState;  ///< Matched or MatchedCounted
    QString matchedText;         ///< progress text of a matched item, empty to leave the last one standing
    QString unmatchedText;
    bool everyMatch;  ///< a row for every equal item of the other side, or one for all of them
};

/// Adds a row to a list: a text, its sub-items and an icon number.
void addResult(controls::ListItems& results, const QStringList& texts, int icon);

/// Looks for each item of one side on the other and adds it, marked matched or unmatched, to the side's
/// results. Candidates are found by their hash, so the work grows with the rows.
///
/// `goOn` is asked before each item and each row for a match; when it says no, the comparison ends there and
/// the result is false.
bool compareSide(const ComparedItems& items, const ComparedItems& others, controls::ListItems& results,
                 const SideReport& report, ComparisonProgress& progress, const std::function<bool()>& goOn);

}  // namespace tw

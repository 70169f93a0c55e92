#pragma once

#include <QString>

namespace tw {

/// What UpdateForm is told of an item.
enum class ComparedState : qint16 {
    Unmatched = 0,
    Matched = 1,         ///< found from system 1's side: counted
    MatchedCounted = 2,  ///< found from system 2's side: counted already
    Finished = 9,
};

/// Who follows a comparison: the progress window, or a test.
class ComparisonProgress {
  public:
    virtual ~ComparisonProgress() = default;
    /// The comparison is about to begin: to be seen from now on.
    virtual void begin() = 0;
    virtual void SetNumberNeed(qint32 expectedItems) = 0;
    virtual void InitFormLables(const QString& system1, const QString& system2) = 0;
    virtual void UpdateForm(ComparedState state, const QString& item) = 0;
    /// Cancels the comparison as the window's button does: a system can no longer be reached, which the user
    /// has been told. Comes at most once, after InitFormLables.
    virtual void cancel() = 0;
};

}  // namespace tw

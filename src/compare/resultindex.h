#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <vector>

namespace controls {
class ListItems;
}

namespace tw {

/// Where headings and differences are among the rows of one system's results. Reads each row once, as they
/// come.
class ResultIndex {
  public:
    /// The results must outlive the index.
    explicit ResultIndex(const controls::ListItems& results) : m_results(results) {}

    /// Takes in the rows added since the last time; whether there were any.
    bool update();

    const controls::ListItems& results() const { return m_results; }
    /// Rows without an equal on the other side, ascending.
    const std::vector<int>& differences() const { return m_differences; }
    /// The number of the heading that a row is or stands under; -1 above the first.
    int headingOf(int row) const;
    int headingCount() const { return static_cast<int>(m_headings.size()); }
    int headingRow(int heading) const { return m_headings[static_cast<size_t>(heading)]; }
    /// The row behind the last one under a heading.
    int endOf(int heading) const;
    /// The heading of a text, -1 when there is none; of equal ones the first.
    int headingWith(const QString& text) const { return m_byText.value(text, -1); }

  private:
    const controls::ListItems& m_results;
    int m_seen = 0;
    std::vector<int> m_headings;
    std::vector<int> m_differences;
    QHash<QString, int> m_byText;
};

using ResultIndexes = std::array<ResultIndex, 2>;

/// The heading of the other side (1 or 0) that belongs to one of `side`: of the same text, or the one table
/// heading where each side has but one table. -1 when the other side has none.
int partnerHeading(const ResultIndexes& indexes, size_t side, int heading);

/// The rows of each side to show for the differences alone: what is not matched, under its headings, and the
/// headings of the same tables on the other side.
std::array<std::vector<int>, 2> differencesOnly(const ResultIndexes& indexes);

/// The row of the other side that a row belongs to: the equal one, else the nearest of its name under the
/// same heading, else the one that the nearest row above belongs to. -1 when its table is not there.
int partnerRow(const ResultIndexes& indexes, size_t side, int row);

}  // namespace tw

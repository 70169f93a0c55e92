#include "compare/resultindex.h"

#include "compare/comparison.h"
#include "platform/controls/listitems.h"

#include <algorithm>

namespace tw {

namespace {

using controls::ListItems;

/// How far a partner is looked for, up and down from the place where it would stand if both sides were equal:
/// sections of a database's indexes may have a hundred thousand rows.
constexpr int FarthestPartner = 20'000;

bool isHeading(int icon) {
    return icon != Comparison::Matched && icon != Comparison::Unmatched;
}

bool areEqual(const ListItems& one, int row, const ListItems& other, int otherRow) {
    for (int column = 1; column < one.headerCount(); ++column)
        if (one.subItem(row, column) != other.subItem(otherRow, column)) return false;
    return true;
}

/// The best row of a name under a heading: -1 when there is none.
int namesakeUnder(const ResultIndex& index, int heading, const ListItems& from, int row, int offset) {
    const ListItems& there = index.results();
    const int first = index.headingRow(heading) + 1;
    const int end = index.endOf(heading);
    const int expected = index.headingRow(heading) + offset;
    const QString name = from.text(row);
    int nearest = -1;
    for (int distance = 0; distance <= FarthestPartner; ++distance) {
        const int above = expected - distance;
        const int below = expected + distance;
        if (above < first && below >= end) break;
        for (const int candidate : {above, below}) {
            if (candidate < first || candidate >= end || there.text(candidate) != name) continue;
            if (areEqual(from, row, there, candidate)) return candidate;
            if (nearest < 0) nearest = candidate;
        }
    }
    return nearest;
}

/// By heading: whether there is a difference under it.
std::vector<bool> headingsWithDifferences(const ResultIndex& index) {
    std::vector<bool> differing(static_cast<size_t>(index.headingCount()));
    for (const int row : index.differences()) {
        const int heading = index.headingOf(row);
        if (heading >= 0) differing[static_cast<size_t>(heading)] = true;
    }
    return differing;
}

}  // namespace

bool ResultIndex::update() {
    const int count = m_results.count();
    if (m_seen == count) return false;
    for (; m_seen < count; ++m_seen) {
        const int icon = m_results.icon(m_seen);
        if (icon == Comparison::Unmatched) m_differences.push_back(m_seen);
        if (!isHeading(icon)) continue;
        const QString text = m_results.text(m_seen);
        if (!m_byText.contains(text)) m_byText.insert(text, headingCount());
        m_headings.push_back(m_seen);
    }
    return true;
}

int ResultIndex::headingOf(int row) const {
    const auto behind = std::upper_bound(m_headings.begin(), m_headings.end(), row);
    return static_cast<int>(behind - m_headings.begin()) - 1;
}

int ResultIndex::endOf(int heading) const {
    return heading + 1 < headingCount() ? headingRow(heading + 1) : m_seen;
}

int partnerHeading(const ResultIndexes& indexes, size_t side, int heading) {
    if (heading < 0) return -1;
    const ResultIndex& here = indexes[side];
    const ResultIndex& there = indexes[1 - side];
    const int same = there.headingWith(here.results().text(here.headingRow(heading)));
    if (same >= 0) return same;
    // Two tables under names of their own, which come behind the other kinds.
    const auto onlyTable = [](const ResultIndex& index) {
        int only = -1;
        for (int i = 0; i < index.headingCount(); ++i) {
            if (index.results().icon(index.headingRow(i)) != Comparison::Table) continue;
            if (only >= 0) return -1;
            only = i;
        }
        return only;
    };
    return onlyTable(here) == heading ? onlyTable(there) : -1;
}

std::array<std::vector<int>, 2> differencesOnly(const ResultIndexes& indexes) {
    const std::array<std::vector<bool>, 2> differing{headingsWithDifferences(indexes[0]),
                                                     headingsWithDifferences(indexes[1])};
    const auto differs = [&](size_t side, int heading) {
        return heading >= 0 && differing[side][static_cast<size_t>(heading)];
    };
    std::array<std::vector<int>, 2> shown;
    for (size_t side = 0; side < 2; ++side) {
        const ResultIndex& index = indexes[side];
        const std::vector<int>& differences = index.differences();
        std::vector<int> headings;
        for (int heading = 0; heading < index.headingCount(); ++heading) {
            if (differs(side, heading) || differs(1 - side, partnerHeading(indexes, side, heading)))
                headings.push_back(index.headingRow(heading));
        }
        shown[side].resize(headings.size() + differences.size());
        std::merge(headings.begin(), headings.end(), differences.begin(), differences.end(),
                   shown[side].begin());
    }
    return shown;
}

int partnerRow(const ResultIndexes& indexes, size_t side, int row) {
    const ResultIndex& here = indexes[side];
    const ResultIndex& there = indexes[1 - side];
    const int heading = here.headingOf(row);
    const int partner = partnerHeading(indexes, side, heading);
    if (partner < 0) return -1;
    const int top = here.headingRow(heading);
    static constexpr int RowsTried = 16;
    for (int tried = 0; tried < RowsTried && row - tried > top; ++tried) {
        const int found = namesakeUnder(there, partner, here.results(), row - tried, row - tried - top);
        if (found >= 0) return found;
    }
    return there.headingRow(partner);
}

}  // namespace tw

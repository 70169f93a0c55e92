// What the formats of a report have in common: its rows in the order in which they are written.
#include "compare/markwords.h"
#include "compare/reportformats.h"
#include "compare/resultindex.h"
#include "platform/controls/listitems.h"
#include "platform/showntext.h"

#include <algorithm>

namespace tw {

namespace {

ReportSection::Side sideOf(const ResultIndex& index, int heading) {
    if (heading < 0) return {};
    const int row = index.headingRow(heading);
    const int end = index.endOf(heading);
    const std::vector<int>& all = index.differences();
    const auto first = std::lower_bound(all.begin(), all.end(), row);
    return {row, end, static_cast<int>(std::lower_bound(first, all.end(), end) - first)};
}

QStringList textsOf(const controls::ListItems& results, int row) {
    QStringList texts;
    for (int column = 0; column < results.headerCount(); ++column)
        texts.append(results.subItem(row, column));
    while (texts.size() > 1 && texts.constLast().isEmpty())
        texts.removeLast();
    return texts;
}

}  // namespace

std::vector<ReportSection> sectionsOf(const ComparisonReport& report) {
    ResultIndexes indexes{ResultIndex(*report.systems[0].results), ResultIndex(*report.systems[1].results)};
    for (ResultIndex& index : indexes)
        index.update();
    std::vector<ReportSection> sections;
    const auto add = [&](int heading1, int heading2) {
        const ReportSection section{{sideOf(indexes[0], heading1), sideOf(indexes[1], heading2)}};
        if (!report.differencesOnly || section.differences() > 0) sections.push_back(section);
    };
    std::vector<bool> taken(static_cast<size_t>(indexes[1].headingCount()));
    for (int heading = 0; heading < indexes[0].headingCount(); ++heading) {
        const int partner = partnerHeading(indexes, 0, heading);
        if (partner >= 0) taken[static_cast<size_t>(partner)] = true;
        add(heading, partner);
    }
    for (int heading = 0; heading < indexes[1].headingCount(); ++heading)
        if (!taken[static_cast<size_t>(heading)]) add(-1, heading);
    return sections;
}

QStringList headingOf(const ComparisonReport& report, const ReportSection& section) {
    const size_t side = section.headedSide();
    QStringList texts = textsOf(*report.systems[side].results, section.sides[side].heading);
    // Two tables under names of their own.
    if (section.sides[0].heading >= 0 && section.sides[1].heading >= 0) {
        const QString other = report.systems[1].results->text(section.sides[1].heading);
        if (other != texts[0]) texts[0] += QStringLiteral(" / ") + other;
    }
    return texts;
}

bool differs(const controls::ListItems& results, int row) {
    return results.icon(row) == Comparison::Unmatched;
}

ReportRow reportRow(const controls::ListItems& results, int row) {
    static const QStringList words = markWords();
    return {words.value(results.icon(row) - 1), differs(results, row), textsOf(results, row)};
}

QString pageText(const QString& text) {
    QString shown = platform::shownLine(text, text.size() * 8);
    for (const QChar unheld : {QChar(0xfffe), QChar(0xffff)})
        shown.replace(unheld, QChar(QChar::ReplacementCharacter));
    return shown;
}

}  // namespace tw

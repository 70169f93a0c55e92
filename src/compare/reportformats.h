#pragma once

#include "compare/comparisonreport.h"

namespace tw {

/// A heading of one side or of both, with the rows under it.
struct ReportSection {
    struct Side {
        int heading = -1;  ///< its row, -1 when this side has none
        int end = -1;      ///< behind the last row under it
        int differences = 0;
    };
    std::array<Side, 2> sides;

    int differences() const { return sides[0].differences + sides[1].differences; }
    /// One of the systems that have the heading.
    size_t headedSide() const { return sides[0].heading >= 0 ? 0 : 1; }
};

/// The sections of a report as they are compared: those of both systems, or of the first only, then those of
/// the second only. Of the differences only: those with a difference.
std::vector<ReportSection> sectionsOf(const ComparisonReport& report);

/// The texts of a section's heading: its own, and the captions of the columns below.
QStringList headingOf(const ComparisonReport& report, const ReportSection& section);

/// One row under a heading.
struct ReportRow {
    QString mark;  ///< "matched" or "unmatched"
    bool differs = false;
    QStringList texts;  ///< at least a name
};

/// A text for a page or a terminal, of which nothing is obeyed: also without what XML 1.0 cannot hold.
QString pageText(const QString& text);

void writeTextReport(const ComparisonReport& report, QIODevice& device);
void writeCsvReport(const ComparisonReport& report, QIODevice& device);
void writeJsonReport(const ComparisonReport& report, QIODevice& device);
void writeHtmlReport(const ComparisonReport& report, QIODevice& device);
void writeJUnitReport(const ComparisonReport& report, QIODevice& device);

/// The row of a system's results, which is no heading.
ReportRow reportRow(const controls::ListItems& results, int row);
bool differs(const controls::ListItems& results, int row);

/// Calls `take` with each row that is to be written of a section's side.
template <class Take>
void forEachRow(const ComparisonReport& report, const ReportSection& section, size_t side, Take&& take) {
    const controls::ListItems& results = *report.systems[side].results;
    const ReportSection::Side& rows = section.sides[side];
    for (int row = rows.heading + 1; rows.heading >= 0 && row < rows.end; ++row)
        if (!report.differencesOnly || differs(results, row)) take(reportRow(results, row));
}

}  // namespace tw

#pragma once

#include "compare/comparison.h"
#include "compare/completeness.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <utility>
#include <vector>

class QIODevice;

namespace tw {

/// What a comparison compared and found, to be written.
struct ComparisonReport {
    struct System {
        QString server;
        QString database;
        QString table;  ///< or "(All Tables)"
        const controls::ListItems* results = nullptr;

        QString title() const;
    };

    std::array<System, 2> systems;
    ComparedKinds kinds;
    QDateTime begun;
    qint64 milliseconds = 0;
    qint64 matched = 0;
    qint64 unmatched = 0;
    Completeness completeness = Completeness::Cancelled;
    QStringList unread;  ///< what could not be read, as Comparison tells it
    bool differencesOnly = false;
};

enum class ReportFormat { Text, Csv, Json, Html, JUnit };

/// "text", "csv", "json", "html" or "junit"; nothing for another name.
std::optional<ReportFormat> reportFormat(const QString& name);
/// By the ending of a file's name: .csv, .json, .html or .htm, .xml; else plain text.
ReportFormat reportFormatOf(const QString& fileName);

/// Writes a report, row by row, as UTF-8; what the device refuses is left to its error(). CSV and JSON hold
/// every name to the letter, the others show control characters as signs.
void writeReport(const ComparisonReport& report, ReportFormat format, QIODevice& device);
/// Writes a report to a file, whole or not at all; throws RuntimeError as platform::throwWriteFailure does.
void saveReport(const ComparisonReport& report, ReportFormat format, const QString& path);

/// What stands above the rows: captions and values.
std::vector<std::pair<QString, QString>> summaryOf(const ComparisonReport& report);

}  // namespace tw

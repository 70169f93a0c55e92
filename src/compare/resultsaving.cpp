#include "compare/resultsaving.h"

#include "compare/comparisonrun.h"
#include "shell/core/fileasking.h"
#include "shell/core/reporterror.h"

namespace tw {

void saveResult(const std::shared_ptr<const ComparisonRun>& run, bool differencesOnly) {
    // The window may go while it is asked for the file.
    const std::shared_ptr<const ComparisonRun> held = run;
    try {
        ComparisonReport report = held->report();
        report.differencesOnly = differencesOnly;
        // Without a dot: what stands behind one would count as the ending.
        QString name = report.systems[0].database + QStringLiteral(" and ") + report.systems[1].database;
        name = fileNameAfter(name.replace(u'.', u'_'));
        const std::optional<QString> path =
            askFileToWrite(QStringLiteral("Save Comparison"), name,
                           QStringLiteral("Web page (*.html);;Comma-separated values (*.csv);;JSON (*.json);;"
                                          "JUnit results (*.xml);;Text files (*.txt);;All files (*)"));
        if (path) saveReport(report, reportFormatOf(*path), *path);
    } catch (...) {
        QString noExtraText;
        ReportError(QStringLiteral("mnuSaveAs_Click"), QStringLiteral("frmCompareResult"), noExtraText);
    }
}

}  // namespace tw

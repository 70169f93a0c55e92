#pragma once

#include "result.h"
#include "table.h"

#include <QJsonObject>

namespace bench {

/// All results as tables for a reader.
struct Report {
    Table ratios;
    Table growth;
    Table figures;  ///< what is no ratio
};

Report reportOf(const std::vector<Result>& results);
/// The tables that have rows, in a form of toText() or toMarkdown().
QString written(const Report& report, QString (*form)(const Table& table));

/// All results with every run's time, the growth, and what they were measured on.
QJsonObject jsonOf(const std::vector<Result>& results);

}  // namespace bench

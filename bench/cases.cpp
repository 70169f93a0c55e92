#include "cases.h"

#include "columnscase.h"
#include "comparecase.h"
#include "detailscase.h"
#include "enginecase.h"
#include "exportcase.h"
#include "livenesscase.h"
#include "querycase.h"
#include "resultcase.h"
#include "rowscase.h"
#include "startcase.h"
#include "treecase.h"

#include <stdexcept>

namespace bench {

namespace {

const QString BareLoop = QStringLiteral("bare loop");

/// The cases whose work crosses the wire only to fill one view; each is measured from afar too.
std::vector<Case> fillingCases() {
    return {{QStringLiteral("tree"),
             BareLoop,
             runTreeCase,
             {{{1, 20}}, {{50, 20}}, {{500, 20}}, {{50, 20}, 5}, {{50, 20}, 30}},
             {{{1, 5}}, {{5, 5}}, {{5, 5}, 5}}},
            {QStringLiteral("tables"),
             BareLoop,
             runTablesCase,
             {{{100}}, {{1000}}, {{10000}}},
             {{{20}}, {{200}}}},
            {QStringLiteral("columns"),
             BareLoop,
             runColumnsCase,
             {{{5}}, {{50}}, {{500}}, {{50}, 5}, {{50}, 30}},
             {{{5}}, {{50}}, {{50}, 5}}},
            {QStringLiteral("rows"),
             BareLoop,
             runRowsCase,
             {{{50, 8}},
              {{10'000, 8}},
              {{1'000'000, 8}},
              {{50, 8}, 5},
              {{50, 8}, 30},
              {{10'000, 8}, 5},
              {{10'000, 8}, 30}},
             {{{50, 8}}, {{2000, 8}}, {{50, 8}, 5}}},
            {QStringLiteral("details"),
             BareLoop,
             runDetailsCase,
             {{{50, 200, 50}},
              {{500, 2000, 500}},
              {{5000, 20'000, 5000}},
              {{5000, 20'000, 5000}, 5},
              {{5000, 20'000, 5000}, 30}},
             {{{20, 80, 20}}, {{100, 400, 100}}, {{100, 400, 100}, 5}}}};
}

std::vector<Case> otherCases() {
    return {{QStringLiteral("compare"),
             BareLoop,
             runCompareCase,
             {{{100, 15}}, {{1000, 15}}, {{4000, 15}}, {{100, 15}, 5}, {{100, 15}, 30}},
             {{{10, 5}}, {{30, 5}}, {{10, 5}, 5}}},
            {QStringLiteral("compare-client"),
             QStringLiteral("tsql, sort, diff"),
             runCompareClientCase,
             {{{100, 15}}, {{1000, 15}}, {{4000, 15}}},
             {{{10, 5}}, {{30, 5}}}},
            {QStringLiteral("engine"), QString(), runEngineCase, {{{100'000}}}, {{{1000}}}},
            {QStringLiteral("result"), QString(), runResultCase, {{{10'000}}, {{1'000'000}}}, {{{2000}}}},
            {QStringLiteral("liveness"), QString(), runLivenessCase, {{{1000}}, {{50}, 30}}, {{{400}}}, true},
            {QStringLiteral("query"),
             BareLoop,
             runQueryCase,
             {{{10'000, 8}}, {{1'000'000, 8}}},
             {{{50, 8}}, {{2000, 8}}}},
            {QStringLiteral("export"),
             QStringLiteral("plain file"),
             runExportCase,
             {{{1000}}, {{10'000}}, {{100'000}}},
             {{{100}}, {{1000}}}}};
}

}  // namespace

std::vector<Case> allCases() {
    std::vector<Case> cases{
        {QStringLiteral("start"), QStringLiteral("empty window"), runStartCase, {{}}, {{}}}};
    for (const std::vector<Case>& more : {fillingCases(), otherCases()})
        cases.insert(cases.end(), more.begin(), more.end());
    return cases;
}

Case caseNamed(const QString& name) {
    for (const Case& candidate : allCases())
        if (candidate.name == name) return candidate;
    throw std::out_of_range("no such case: " + name.toStdString());
}

Result measure(const Request& request) {
    const Case its = caseNamed(request.name);
    Result result = its.run(request);
    result.name = its.name;
    result.yardstick = its.yardstick;
    result.delay = request.delay;
    result.measure = request.measures.empty() ? 0 : static_cast<double>(request.measures.front());
    return result;
}

}  // namespace bench

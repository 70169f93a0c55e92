#include "compare/comparison.h"

#include "dbaccess/schemareader.h"
#include "platform/controls/listitems.h"

namespace tw {

class Comparison::Run {
  public:
    Run(const ComparedSystem& system1, const ComparedSystem& system2, ComparisonProgress& progress)
        : m_system1(system1), m_system2(system2), m_progress(progress) {}

    void run() {
        for (controls::ListItems* results : {&m_system1.results, &m_system2.results}) {
            results->addHeader(QStringLiteral("Names"));
            for (int i = 0; i < 4; ++i)
                results->addHeader(QStringLiteral("Attribute"));
        }
        m_progress.begin();
        m_progress.InitFormLables(m_system1.caption, m_system2.caption);
    }

  private:
    ComparedSystem m_system1;
    ComparedSystem m_system2;
    ComparisonProgress& m_progress;
};

Comparison::Comparison(const ComparedSystem& system1, const ComparedSystem& system2, ComparedKinds,
                       ComparisonProgress& progress, std::function<void()>, std::function<bool()>)
    : m_run(std::make_unique<Run>(system1, system2, progress)) {}

Comparison::~Comparison() = default;

void Comparison::run() {
    m_run->run();
}

}  // namespace tw

#include "terminalprogress.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace comparetool {

namespace {

constexpr qint64 MillisecondsBetween = 100;

bool standardErrorIsTerminal() {
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

TerminalProgress::TerminalProgress() : m_onTerminal(standardErrorIsTerminal()) {
    m_sinceShown.start();
}

void TerminalProgress::clear() {
    if (m_shown) std::fprintf(stderr, "\r\033[K");
    m_shown = false;
}

void TerminalProgress::UpdateForm(tw::ComparedState state, const QString&) {
    if (state == tw::ComparedState::Matched) ++m_matched;
    if (state == tw::ComparedState::Unmatched) ++m_unmatched;
    ++m_processed;
    if (state == tw::ComparedState::Finished) return clear();
    if (!m_onTerminal || !m_sinceShown.hasExpired(MillisecondsBetween)) return;
    m_sinceShown.restart();
    m_shown = true;
    // The number expected is an estimate.
    constexpr qint64 MostPercent = 99;
    const qint64 percent = m_expected > 0 ? std::min(m_processed * 100 / m_expected, MostPercent) : 0;
    std::fprintf(stderr, "\r\033[K%lld %%, %lld matched, %lld unmatched", static_cast<long long>(percent),
                 static_cast<long long>(m_matched), static_cast<long long>(m_unmatched));
    std::fflush(stderr);
}

}  // namespace comparetool

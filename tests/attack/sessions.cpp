#include "sessions.h"

#include "replyserver.h"
#include "support/sampleserverprocess.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QTemporaryFile>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace attack {

Sessions::Sessions(quint32 seed) : m_seed(seed) {
    QTemporaryFile file;
    if (!file.open()) qFatal("No temporary file.");
    const pid_t learner = fork();
    if (learner == 0) {
        int argc = 0;
        const QCoreApplication application(argc, nullptr);
        learn();
        QDataStream out(&file);
        out << m_replies;
        for (const Part& part : m_parts)
            out << part.turns << part.texts;
        file.flush();
        _exit(0);
    }
    int status = 0;
    if (waitpid(learner, &status, 0) != learner || status != 0)
        qFatal("The sessions could not be rehearsed.");
    file.seek(0);  // where both processes stand is one place
    QDataStream in(&file);
    in >> m_replies;
    for (const Routine& routine : allRoutines()) {
        Part& part = m_parts.emplace_back(Part{routine});
        in >> part.turns >> part.texts;
    }
}

/// With the answers of a sample server, and then with those that were learnt.
void Sessions::learn() {
    static testsupport::SampleServerProcess sample;
    if (!sample.start({"--no-sample-data", "--script", QStringLiteral(TW_ATTACK_WORLD)}))
        qFatal("%s", qUtf8Printable(sample.errorText()));
    static ReplyServer learning(m_replies, sample.port());
    m_parts = playAll(learning);
    static ReplyServer knowing(m_replies, 0);
    const std::vector<Part> again = playAll(knowing);
    for (size_t i = 0; i < again.size(); ++i)
        if (again[i].texts != m_parts[i].texts || again[i].turns != m_parts[i].turns)
            qFatal("%s does not repeat itself.", again[i].routine.name);
}

std::vector<Sessions::Part> Sessions::playAll(ReplyServer& server) const {
    std::vector<Part> parts;
    for (const Routine& routine : allRoutines()) {
        server.begin({});
        const Outcome outcome = routine.run(server.connectionString());
        if (outcome.tellsFailure() || outcome.escaped)
            qFatal("%s: %s", routine.name, qUtf8Printable(outcome.boxes.join(u' ')));
        parts.push_back({routine, server.turns(), outcome.texts});
    }
    return parts;
}

Sessions::Session Sessions::session(qint64 number) const {
    const quint32 seeds[]{m_seed, quint32(number), quint32(number >> 32)};
    QRandomGenerator random(seeds);
    const Part& part = m_parts[random.bounded(quint32(m_parts.size()))];
    const auto quick = std::ranges::find(kinds(), Kind::Waits, &Kind::effect) - kinds().begin();
    const auto all = std::ssize(kinds());
    const auto kind = isSlow(number) ? random.bounded(int(quick), int(all)) : random.bounded(int(quick));
    return {part, {size_t(kind), random.bounded(part.turns), random.generate()}};
}

QByteArray Sessions::Session::name() const {
    return QByteArray(part.routine.name) + ", " + kinds()[mutation.kind].name + " of reply " +
           QByteArray::number(mutation.turn + 1) + " of " + QByteArray::number(part.turns);
}

Verdict Sessions::Session::judge(const Outcome& outcome) const {
    const bool internal = !outcome.boxes.filter(QStringLiteral("Error: 51.")).isEmpty();
    if (outcome.escaped || internal) return Verdict::Fault;
    if (outcome.texts == part.texts) return Verdict::Whole;
    if (outcome.tellsFailure()) return Verdict::Told;
    return kinds()[mutation.kind].effect == Kind::Lies ? Verdict::Lie : Verdict::Lost;
}

}  // namespace attack

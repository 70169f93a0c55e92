#include "sessions.h"

#include "support/sampleserverprocess.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QTemporaryFile>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace attack {

Stage::Stage(Replies& replies, quint16 upstream) : m_server(replies, upstream) {
    m_idle.Open(connectionString("First"));
}

QString Stage::connectionString(const char* database) const {
    return QStringLiteral("driver={SQL Server};server=127.0.0.1,%1;uid=sa;pwd=%2")
        .arg(m_server.port())
        .arg(database ? QStringLiteral(";database=") + QLatin1StringView(database) : QString());
}

Outcome Stage::play(const Routine& routine, const std::optional<Mutation>& mutation) {
    m_server.begin(mutation);
    Outcome outcome = routine.run(connectionString(nullptr));
    outcome.texts.replaceInStrings(QString::number(m_server.port()), QStringLiteral("PORT"));
    return outcome;
}

void Sessions::rehearse() {
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

void Sessions::learn() {
    testsupport::SampleServerProcess sample;
    if (!sample.start({"--no-sample-data", "--script", QStringLiteral(TW_ATTACK_WORLD)}))
        qFatal("%s", qUtf8Printable(sample.errorText()));
    const auto playAll = [this](Stage& stage) {
        std::vector<Part> parts;
        for (const Routine& routine : allRoutines()) {
            const Outcome outcome = stage.play(routine, {});
            if (outcome.tellsFailure() || outcome.escaped)
                qFatal("%s: %s", routine.name, qUtf8Printable(outcome.boxes.join(u' ')));
            parts.push_back({routine, stage.turns(), outcome.texts});
        }
        return parts;
    };
    {
        Stage learning(m_replies, sample.port());
        m_parts = playAll(learning);
        learning.play(refusedQuery(), {});
        const QString name = QStringLiteral("Nowhere");
        const QByteArray ending(reinterpret_cast<const char*>(name.utf16()), 2 * name.size());
        const QList<QByteArray> questions = m_replies.keys();
        m_replies.insert(unknownQuestion,
                         m_replies.value(*std::ranges::find_if(questions, [&](const QByteArray& question) {
                             return question.endsWith(ending);
                         })));
    }
    Stage knowing(m_replies, 0);
    const std::vector<Part> again = playAll(knowing);
    for (size_t i = 0; i < again.size(); ++i)
        if (again[i].texts != m_parts[i].texts || again[i].turns != m_parts[i].turns)
            qFatal("%s does not repeat itself.", again[i].routine.name);
}

std::pair<const Part&, Mutation> Sessions::session(qint64 number) const {
    const quint32 seeds[]{m_seed, quint32(number), quint32(number >> 32)};
    QRandomGenerator random(seeds);
    const Part& part = m_parts[random.bounded(quint32(m_parts.size()))];
    const int slow = static_cast<int>(firstSlow);
    const int kind =
        number % slowEach == slowEach - 1 ? slow + random.bounded(kinds - slow) : random.bounded(slow);
    return {part, {static_cast<Kind>(kind), random.bounded(part.turns), random.generate()}};
}

Verdict Sessions::judge(const Part& part, Kind kind, const Outcome& outcome) const {
    // Numbers that stand for a failure of ours, whatever a server says.
    const bool internal = !outcome.boxes.filter(QStringLiteral("Error: 51.")).isEmpty();
    if (outcome.escaped || internal) return Verdict::Fault;
    if (outcome.texts == part.texts) return Verdict::Whole;
    if (outcome.tellsFailure()) return Verdict::Told;
    return kind >= firstFaithful ? Verdict::Lost : Verdict::Lie;
}

}  // namespace attack

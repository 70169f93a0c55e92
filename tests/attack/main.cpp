#include "supervisor.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>

namespace {

/// Plays one session in this process and prints what came of it.
int playOne(attack::Sessions& sessions, qint64 number) {
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    attack::Stage stage(sessions.replies(), 0);
    const auto [part, mutation] = sessions.session(number);
    printf("%s, %s of reply %d of %d\n", part.routine.name, nameOf(mutation.kind), mutation.turn + 1,
           part.turns);
    fflush(stdout);
    const attack::Outcome outcome = stage.play(part.routine, mutation);
    printf("verdict %d\n%s\n--- boxes\n%s\n", int(sessions.judge(part, mutation.kind, outcome)),
           qUtf8Printable(outcome.texts.join(u'\n')), qUtf8Printable(outcome.boxes.join(u'\n')));
    return 0;
}

}  // namespace

/// Plays sessions with mutated replies in front of all that reads from a server.
int main(int argc, char** argv) {
    const QCommandLineOption count("count", "Plays <N> sessions.", "N", "20000");
    const QCommandLineOption seed("seed", "Of the sessions' mutations.", "S", "1");
    const QCommandLineOption workers("workers", "Processes besides those that wait for time-outs.", "N",
                                     QString::number(3 * QThread::idealThreadCount()));
    const QCommandLineOption session("session", "Plays this one alone, and shows it.", "I");
    QCommandLineParser parser;
    parser.addOptions({count, seed, workers, session});
    if (!parser.parse(QStringList(argv, argv + argc))) {
        fprintf(stderr, "%s\n%s", qUtf8Printable(parser.errorText()), qUtf8Printable(parser.helpText()));
        return 2;
    }
    attack::Sessions sessions(parser.value(seed).toUInt());
    sessions.rehearse();
    if (parser.isSet(session)) return playOne(sessions, parser.value(session).toLongLong());

    QElapsedTimer timer;
    timer.start();
    const qint64 number = parser.value(count).toLongLong();
    attack::Supervisor supervisor(sessions, number, parser.value(workers).toInt());
    printf("Seed %s, %lld sessions\n", qUtf8Printable(parser.value(seed)), static_cast<long long>(number));
    supervisor.run();
    const bool good = supervisor.report();
    printf("%.0f sessions a second\n", 1000.0 * double(number) / double(timer.elapsed()));
    return good ? 0 : 1;
}

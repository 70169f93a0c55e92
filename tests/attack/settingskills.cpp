// Kills programs while they save settings, and looks what becomes of these: no value that was saved may be
// lost, nobody may wait for a dead writer, others may not read the file, and nothing may stay behind.

#include "platform/desktop/settingsstore.h"
#include "platform/runtimeerror.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

const QString Application = QStringLiteral("App");
const QString Section = QStringLiteral("Settings");

/// Saves one number after the other under a key of its own, and tells each that was saved.
[[noreturn]] void write(const QString& file, const QString& key, int number) {
    desktop::SettingsStore store(file);
    for (;; ++number) {
        store.SaveSetting(Application, Section, key, QString::number(number));
        if (::write(STDOUT_FILENO, &number, sizeof number) != sizeof number) ::_exit(0);
    }
}

/// A process that runs write().
class Writer {
  public:
    Writer(const QString& file, const QString& key, int first) : m_last(first - 1) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) qFatal("no pipe");
        const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
        const QByteArray place = QFile::encodeName(file);
        const QByteArray name = key.toUtf8();
        const QByteArray start = QByteArray::number(first);
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::execl(program, program.data(), "--writer", place.data(), name.data(), start.data(), nullptr);
            ::_exit(1);
        }
        ::close(ends[1]);
        m_told = ends[0];
    }

    /// Waits for the first number.
    void awaitWriting() {
        pollfd told{m_told, POLLIN, 0};
        ::poll(&told, 1, -1);
    }

    /// The last number that it saved for certain.
    int last() {
        while (::read(m_told, &m_last, sizeof m_last) == sizeof m_last) {
        }
        return m_last;
    }

    /// Returns whether it was still writing.
    bool kill() {
        ::kill(m_process, SIGKILL);
        int status = 0;
        ::waitpid(m_process, &status, 0);
        last();
        ::close(m_told);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

  private:
    pid_t m_process = -1;
    int m_told = -1;
    int m_last;
};

struct Figures {
    int lost = 0;
    int blocked = 0;
    int readable = 0;
    int failed = 0;
    int behind = 0;
    int found = 0;  ///< files of killed writers, before they are cleaned up
    qint64 longest = 0;

    int faults() const { return lost + blocked + readable + failed + behind; }
};

class Attack {
  public:
    explicit Attack(quint32 seed) : m_random(seed) {}

    Figures run(int count) {
        Writer steady(m_file, QStringLiteral("steady"), 1);
        steady.awaitWriting();
        for (int round = 1; round <= count; ++round) {
            killOne();
            save(round);
            const int told = steady.last();
            if (stored("steady") < told) ++m_figures.lost;
            if (mode() != (S_IRUSR | S_IWUSR)) ++m_figures.readable;
            if (round % 100 == 0) std::fprintf(stderr, "%d kills\n", round);
        }
        if (!steady.kill()) ++m_figures.failed;
        m_figures.found = strangers();
        m_store.tidy();
        m_figures.behind = strangers();
        return m_figures;
    }

  private:
    void killOne() {
        static constexpr int MostMicroseconds = 10'000;
        Writer victim(m_file, QStringLiteral("victim"), m_victims + 1);
        victim.awaitWriting();
        QThread::usleep(m_random.bounded(MostMicroseconds));
        if (!victim.kill()) ++m_figures.failed;
        // It may have been killed between a save and telling it.
        const int number = stored("victim");
        if (number < victim.last() || number > victim.last() + 1) ++m_figures.lost;
        m_victims = number;
    }

    /// What another program has to wait for, now that a writer is dead.
    void save(int round) {
        static constexpr int LongestMilliseconds = 5000;
        QElapsedTimer time;
        time.start();
        try {
            m_store.SaveSetting(Application, Section, QStringLiteral("other"), QString::number(round));
        } catch (const platform::RuntimeError& error) {
            std::fprintf(stderr, "%s\n", error.what());
            ++m_figures.failed;
        }
        m_figures.longest = std::max(m_figures.longest, time.elapsed());
        if (time.elapsed() > LongestMilliseconds) ++m_figures.blocked;
        if (stored("other") != round) ++m_figures.lost;
    }

    int stored(const char* key) const {
        return m_store.GetSetting(Application, Section, QString::fromLatin1(key), QStringLiteral("0"))
            .toInt();
    }

    /// The files beside the settings and their lock.
    int strangers() const {
        return static_cast<int>(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden).size()) - 2;
    }

    mode_t mode() const {
        struct stat status {};
        return ::stat(QFile::encodeName(m_file).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
    }

    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(QStringLiteral("settings.json"));
    desktop::SettingsStore m_store{m_file};
    QRandomGenerator m_random;
    int m_victims = 0;
    Figures m_figures;
};

}  // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QStringLiteral("--writer"))
        write(arguments.value(2), arguments.value(3), arguments.value(4).toInt());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Kills programs while they save settings."));
    parser.addHelpOption();
    const QCommandLineOption count(QStringLiteral("count"), QStringLiteral("How many."), QStringLiteral("N"),
                                   QStringLiteral("200"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("For the moments of the kills."),
                                  QStringLiteral("S"), QStringLiteral("1"));
    parser.addOptions({count, seed});
    parser.process(application);

    const Figures figures = Attack(parser.value(seed).toUInt()).run(parser.value(count).toInt());
    std::printf(
        "seed %s, kills %s\nvalues lost %d\nsaves blocked for more than 5 s %d (longest %lld ms)\n"
        "files others may read %d\nsaves failed %d\nfiles of killed writers %d, left after cleaning up %d\n",
        qPrintable(parser.value(seed)), qPrintable(parser.value(count)), figures.lost, figures.blocked,
        static_cast<long long>(figures.longest), figures.readable, figures.failed, figures.found,
        figures.behind);
    return figures.faults() == 0 ? 0 : 1;
}

#include "platform/desktop/settingslock.h"
#include "platform/desktop/settingsstore.h"
#include "platform/runtimeerror.h"
#include "support/table.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

using desktop::SettingsStore;
using testsupport::Table;

namespace {

const QString Application = QStringLiteral("App");
const QString Section = QStringLiteral("Settings");
const QString Key = QStringLiteral("A %1");
/// What is in the folder of settings that were written.
const QStringList Files = {QStringLiteral("settings.json"), QStringLiteral("settings.json.lock")};

QString read(const SettingsStore& store, const QString& missing = {}) {
    return store.GetSetting(Application, Section, Key, missing);
}

void save(SettingsStore& store, const QString& text) {
    store.SaveSetting(Application, Section, Key, text);
}

// The number of the failure that an action ends with, 0 for none; its description goes to `description`.
int numberOf(const std::function<void()>& action, QString* description = nullptr) {
    try {
        action();
    } catch (const platform::RuntimeError& error) {
        if (description) *description = error.description();
        return error.number();
    }
    return 0;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeContent(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// Runs an action in a child process, which limits or rights can be taken from; its result.
#ifdef Q_OS_UNIX
int inChild(const std::function<int()>& action) {
    const pid_t child = fork();
    if (child == 0) _exit(action());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

}  // namespace

class SettingsStoreTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init();
    void keepsTexts_data();
    void keepsTexts();
    void defaults();
    void processesKeepEachOthersKeys();
    void killedWritersLeaveNothing();
    void onlyItsUserReadsIt();
    void onlyAFileIsRead_data();
    void onlyAFileIsRead();
    void damagedFileStaysAsItIs_data();
    void damagedFileStaysAsItIs();
    void fullDiskKeepsOldValues_data();
    void fullDiskKeepsOldValues();
    void noPermission();
    void folderThatCannotBeMade();

  private:
    QString path() const { return m_folder->filePath(QStringLiteral("a folder/settings.json")); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void SettingsStoreTest::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void SettingsStoreTest::keepsTexts_data() {
    const Table<QString> row("text");
    row("empty", QString());
    row("blanks around", "  a b \t");
    row("lines", "one\r\ntwo\nthree\r");
    row("quotes and backslashes", "\"'\\\\server\\x%1\"");
    row("outside the basic plane", QStringLiteral("Łódź \U0001F600 \u2028"));
    row("half a pair", QStringLiteral("a").append(QChar(0xdc00)));
    row("null character", QStringLiteral("a").append(QChar(0)).append(u'b'));
}

void SettingsStoreTest::keepsTexts() {
    QFETCH(QString, text);
    SettingsStore store(path());
    save(store, text);
    QCOMPARE(read(SettingsStore(path()), QStringLiteral("missing")), text);
}

void SettingsStoreTest::defaults() {
    SettingsStore store(path());
    const QString missing = QStringLiteral("50");
    QCOMPARE(read(store, missing), missing);
    QVERIFY(!QFileInfo::exists(path()));
    save(store, QStringLiteral("1"));
    QCOMPARE(store.GetSetting(Application, Section, QStringLiteral("B"), missing), missing);
    QCOMPARE(store.GetSetting(Application, QStringLiteral("Other"), Key, missing), missing);
    QCOMPARE(store.GetSetting(QStringLiteral("Other"), Section, Key, missing), missing);
}

void SettingsStoreTest::processesKeepEachOthersKeys() {
#ifdef Q_OS_UNIX
    constexpr int Processes = 4;
    constexpr int Keys = 20;
    std::vector<pid_t> children;
    for (int process = 0; process < Processes; ++process) {
        const pid_t child = fork();
        if (child == 0) {
            SettingsStore store(path());
            _exit(numberOf([&] {
                for (int key = 0; key < Keys; ++key) {
                    store.SaveSetting(Application, Section, QStringLiteral("%1-%2").arg(process).arg(key),
                                      QString::number(key));
                }
            }));
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        QCOMPARE(status, 0);
    }
    const SettingsStore store(path());
    for (int process = 0; process < Processes; ++process) {
        for (int key = 0; key < Keys; ++key) {
            const QString name = QStringLiteral("%1-%2").arg(process).arg(key);
            QCOMPARE(store.GetSetting(Application, Section, name, QStringLiteral("lost")),
                     QString::number(key));
        }
    }
    QCOMPARE(QFileInfo(path()).dir().entryList(QDir::Files), Files);
#else
    QSKIP("needs fork");
#endif
}

void SettingsStoreTest::killedWritersLeaveNothing() {
#ifdef Q_OS_UNIX
    SettingsStore store(path());
    save(store, QStringLiteral("1"));
    const QString unfinished = path() + QStringLiteral(".new-AbCdEf");
    const QString others = path() + QStringLiteral(".backup");
    for (const QString& file : {path() + QStringLiteral(".lock"), unfinished, others})
        writeContent(file, "x");
    {
        const desktop::SettingsLock writing(path(), 0);
        inChild([&] { return numberOf([&] { store.tidy(); }); });
        QVERIFY(QFileInfo::exists(unfinished));
    }
    QCOMPARE(numberOf([&] { save(store, QStringLiteral("2")); }), 0);
    store.tidy();
    QVERIFY(!QFileInfo::exists(unfinished));
    QVERIFY(QFileInfo::exists(others));
#else
    QSKIP("needs fork");
#endif
}

void SettingsStoreTest::onlyItsUserReadsIt() {
#ifdef Q_OS_UNIX
    const mode_t before = umask(0);
    SettingsStore store(path());
    save(store, QStringLiteral("1"));
    umask(before);
    const auto modeOf = [](const QString& name) {
        struct stat status {};
        return stat(QFile::encodeName(name).constData(), &status) == 0 ? status.st_mode & 0777 : 0u;
    };
    QCOMPARE(modeOf(path()), 0600u);
    QCOMPARE(modeOf(QFileInfo(path()).path()), 0700u);

    const std::function<void()> change = [&] { save(store, QStringLiteral("2")); };
    const std::function<void()> roads[] = {change, change, [&] { store.tidy(); }};
    for (const auto& road : roads) {
        QCOMPARE(chmod(QFile::encodeName(path()).constData(), 0644), 0);
        road();
        QCOMPARE(modeOf(path()), 0600u);
    }
#else
    QSKIP("needs file modes");
#endif
}

void SettingsStoreTest::onlyAFileIsRead_data() {
    const Table<int, std::function<bool(const QString&)>> row("number", "make");
    row("folder", 75, [](const QString& path) { return QDir().mkdir(path); });
#ifdef Q_OS_UNIX
    row("pipe", 75, [](const QString& path) { return mkfifo(QFile::encodeName(path), 0644) == 0; });
    row("link to a file", 0, [](const QString& path) {
        writeContent(path + u'2', "{}");
        return QFile::link(path + u'2', path);
    });
#endif
}

void SettingsStoreTest::onlyAFileIsRead() {
    QFETCH(std::function<bool(const QString&)>, make);
    const QString file = m_folder->filePath(QStringLiteral("settings.json"));
    QVERIFY(make(file));
    SettingsStore store(file);
    const bool link = QFileInfo(file).isSymLink();
    const auto permissions = QFile::permissions(file);
    store.tidy();
    if (!link) QCOMPARE(QFile::permissions(file), permissions);
    QTEST(numberOf([&] { read(store); }), "number");
    QTEST(numberOf([&] { save(store, QString()); }), "number");
    QCOMPARE(QFileInfo(file).isSymLink(), link);
}

void SettingsStoreTest::damagedFileStaysAsItIs_data() {
    const Table<QByteArray> row("content");
    row("empty", QByteArray());
    row("cut off", QByteArray("{\"App\": {\"Settings\": {\"A\": \"1\""));
    row("a list", QByteArray("[1, 2]"));
    row("application is no object", QByteArray("{\"App\": 1}"));
    row("section is no object", QByteArray("{\"App\": {\"Settings\": []}}"));
    row("value is no text", QByteArray("{\"App\": {\"Settings\": {\"A %1\": 1}}}"));
    row("bytes", QByteArray("\x7f\x45\x4c\x46\x00\xff", 6));
}

void SettingsStoreTest::damagedFileStaysAsItIs() {
    QFETCH(QByteArray, content);
    const QString file = m_folder->filePath(QStringLiteral("settings.json"));
    writeContent(file, content);
    SettingsStore store(file);
    QString description;
    QCOMPARE(numberOf([&] { read(store); }, &description), 75);
    QVERIFY2(description.contains(file) && description.contains(QStringLiteral("move it away")),
             qPrintable(description));
    QCOMPARE(numberOf([&] { save(store, QString()); }), 75);
    QCOMPARE(contentOf(file), content);
}

void SettingsStoreTest::fullDiskKeepsOldValues_data() {
    const Table<int, int> row("bytesFree", "length");
    row("no room for the lock", 0, 2000);
    row("room for a part of the lock", 5, 2000);
    row("room for a part of a short text", 1000, 2000);
    row("room for a part of a long text", 5000, 20000);
}

void SettingsStoreTest::fullDiskKeepsOldValues() {
#ifdef Q_OS_UNIX
    QFETCH(int, bytesFree);
    QFETCH(int, length);
    SettingsStore store(path());
    save(store, QStringLiteral("old"));
    const QByteArray before = contentOf(path());
    const auto change = [&] { save(store, QString(length, u'x')); };
    const int number = inChild([&] {
        const rlimit fileSize{rlim_t(bytesFree), rlim_t(bytesFree)};
        std::signal(SIGXFSZ, SIG_IGN);
        return setrlimit(RLIMIT_FSIZE, &fileSize) == 0 ? numberOf(change) : -1;
    });
    QCOMPARE(number, 61);
    QCOMPARE(contentOf(path()), before);
    QCOMPARE(QFileInfo(path()).dir().entryList(QDir::Files), Files);
    change();
    QCOMPARE(read(store), QString(length, u'x'));
#else
    QSKIP("needs a limit of file sizes");
#endif
}

void SettingsStoreTest::noPermission() {
#ifdef Q_OS_UNIX
    SettingsStore store(path());
    save(store, QStringLiteral("old"));
    const QByteArray before = contentOf(path());
    QCOMPARE(chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
    const QByteArray folder = QFile::encodeName(QFileInfo(path()).path());
    const auto asNobody = [&](const std::function<void()>& action) {
        return inChild([&] {
            if (geteuid() == 0 && setuid(65534) != 0) return -1;
            return numberOf(action);
        });
    };
    const auto change = [&] { save(store, QStringLiteral("new")); };
    const auto look = [&] { read(store); };
    QCOMPARE(chmod(folder.constData(), 0555), 0);
    QCOMPARE(asNobody(change), 70);
    QCOMPARE(chmod(folder.constData(), 0000), 0);
    QCOMPARE(asNobody(look), 75);
    QCOMPARE(asNobody(change), 70);
    QCOMPARE(chmod(folder.constData(), 0700), 0);
    QCOMPARE(contentOf(path()), before);
#else
    QSKIP("needs file modes");
#endif
}

void SettingsStoreTest::folderThatCannotBeMade() {
    const QString file = m_folder->filePath(QStringLiteral("file"));
    writeContent(file, "x");
    SettingsStore below(file + QStringLiteral("/settings.json"));
    QString description;
    QCOMPARE(numberOf([&] { save(below, QString()); }, &description), 75);
    QVERIFY2(description.contains(QDir::toNativeSeparators(file)), qPrintable(description));
    QCOMPARE(contentOf(file), QByteArray("x"));

    SettingsStore folder(m_folder->path());
    QCOMPARE(numberOf([&] { read(folder); }), 75);
}

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "test_settingsstore.moc"

#include "livenesscase.h"

#include "compare/frmcompareresult.h"
#include "comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "figures.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <atomic>
#include <chrono>
#include <thread>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsBetween(Clock::time_point start, Clock::time_point end) {
    return std::chrono::duration<double, std::milli>(end - start).count();
}

/// The longest time between two of something.
class LongestGap {
  public:
    void seen() {
        const Clock::time_point now = Clock::now();
        if (m_count++ > 0) m_longest = std::max(m_longest, millisecondsBetween(m_last, now));
        m_last = now;
    }
    double milliseconds() const { return m_longest; }
    int count() const { return m_count; }

  private:
    Clock::time_point m_last;
    double m_longest = 0;
    int m_count = 0;
};

QDialog* progressWindow() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("frmCompareProgress") && window->isVisible())
            return static_cast<QDialog*>(window);
    return nullptr;
}

/// Sees the paints of the progress window, and each time that events are served.
class Watch : public QObject {
  public:
    Watch() {
        qApp->installEventFilter(this);
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, [this] {
            if (m_painted != nullptr) served.seen();
        });
    }

    LongestGap paints;
    LongestGap served;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest && object == progressWindow()) {
            m_painted = object;
            paints.seen();
        }
        return false;
    }

  private:
    QObject* m_painted = nullptr;
};

/// A frame of the program's, and what it compares.
class Desk {
  public:
    explicit Desk(const QString& serverText) : m_serverText(serverText) {
        m_state.connectionPool = std::make_shared<tw::ConnectionPool>();
        m_frame.Form_Load();
        m_frame.show();
    }

    /// Compares in a window, which is closed again; `atTheEnd` sees the progress window's text and the rows.
    template <class AtTheEnd>
    void compare(AtTheEnd&& atTheEnd) {
        auto* result = new tw::frmCompareResult(m_state);  // owned by its sub-window
        configure(result->DBConn1(), comparedDatabases()[0]);
        configure(result->DBConn2(), comparedDatabases()[1]);
        QMdiSubWindow* child = m_frame.findChild<QMdiArea*>()->addSubWindow(result);
        child->show();
        result->Form_Load();
        const Clock::time_point end = Clock::now();
        const QString text = progressWindow()->findChild<QLabel*>(QStringLiteral("lblProgress"))->text();
        atTheEnd(end, text,
                 qobject_cast<controls::ListItems*>(
                     result->findChild<desktop::ListView*>(QStringLiteral("lvSystem1"))->model())
                     ->count());
        child->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

  private:
    void configure(tw::DBConnection& connection, const QString& database) const {
        connection.setConnectionString(
            QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(m_serverText));
        connection.setServer(m_serverText);
        connection.setDatabase(database);
        connection.setTable(QStringLiteral("(All Tables)"));
    }

    QString m_serverText;
    QTemporaryDir m_folder;
    desktop::SettingsStore m_settings{m_folder.filePath(QStringLiteral("settings.json"))};
    tw::AppState m_state{m_settings};
    tw::frmMain m_frame{m_state};
};

/// A user who clicks the progress window's button after a while; the click comes in as a queued event, as
/// one of the mouse does.
class User {
  public:
    explicit User(double milliseconds)
        : m_thread([this, milliseconds] {
              std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(milliseconds));
              m_clicked = Clock::now();
              QMetaObject::invokeMethod(
                  qApp,
                  [] {
                      if (QDialog* window = progressWindow())
                          window->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
                  },
                  Qt::QueuedConnection);
          }) {}
    ~User() {
        m_thread.join();
        // A click that came too late is not one on the next comparison.
        QCoreApplication::sendPostedEvents(qApp);
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    Clock::time_point clicked() const { return m_clicked; }

  private:
    std::atomic<Clock::time_point> m_clicked{};
    std::thread m_thread;
};

struct WholeRun {
    bool finished = false;
    int rows = 0;
    double milliseconds = 0;
    double paintGap = 0;
    double eventGap = 0;
};

WholeRun compareToTheEnd(Desk& desk) {
    WholeRun whole;
    const Watch watch;
    const Clock::time_point start = Clock::now();
    desk.compare([&](Clock::time_point end, const QString& text, int rows) {
        whole = {text == QStringLiteral("Comparing databases finished."), rows,
                 millisecondsBetween(start, end), watch.paints.milliseconds(), watch.served.milliseconds()};
    });
    return whole;
}

/// Milliseconds from each click to the end of the comparison, of so many that did not come too late; `good`
/// becomes false when a comparison did not stop.
std::vector<double> cancelAtRandom(Desk& desk, const WholeRun& whole, int cancels, bool* good) {
    QRandomGenerator random(20);
    std::vector<double> delays;
    for (int attempt = 0; attempt < 2 * cancels && static_cast<int>(delays.size()) < cancels; ++attempt) {
        const User user((0.05 + 0.9 * random.generateDouble()) * whole.milliseconds);
        desk.compare([&](Clock::time_point end, const QString& text, int) {
            if (text == QStringLiteral("Comparing databases finished.")) return;
            delays.push_back(millisecondsBetween(user.clicked(), end));
            *good = *good && text == QStringLiteral("Comparing databases cancelled.");
        });
    }
    return delays;
}

}  // namespace

Result runLivenessCase(const Request& request) {
    constexpr int cancels = 20;
    const qint64 tables = request.measures[0];
    Result result;
    result.scale = QStringLiteral("%1 tables of 15 columns a side").arg(tables);
    testsupport::SampleServerProcess server;
    if (!server.start(QStringList{QStringLiteral("--no-sample-data")} + comparedDatabasesOptions(tables, 15),
                      600'000)) {
        QTextStream(stderr) << "The sample server did not start: " << server.errorText() << '\n';
        return result;
    }
    testsupport::Relay relay(server.port());
    relay.keepNothing();
    relay.setDelay(request.delay);
    Desk desk(request.delay > 0 ? relay.serverText() : server.serverText());

    compareToTheEnd(desk);  // the first is slower than those that follow
    const WholeRun whole = compareToTheEnd(desk);
    result.complete = whole.finished && whole.rows >= tables * 16;
    const std::vector<double> delays = cancelAtRandom(desk, whole, cancels, &result.complete);
    result.complete = result.complete && !delays.empty();
    if (!result.complete) return result;
    const Spread delay = spreadOf(delays);
    const QString milliseconds = QStringLiteral("ms");
    result.figures = {
        {QStringLiteral("whole comparison"), whole.milliseconds, milliseconds},
        {QStringLiteral("longest gap between two paints of its progress"), whole.paintGap, milliseconds},
        {QStringLiteral("longest time without serving events"), whole.eventGap, milliseconds},
        {QStringLiteral("from Cancel to the return, median of %1").arg(delays.size()), delay.median,
         milliseconds},
        {QStringLiteral("from Cancel to the return, longest of %1").arg(delays.size()), delay.maximum,
         milliseconds}};
    return result;
}

}  // namespace bench

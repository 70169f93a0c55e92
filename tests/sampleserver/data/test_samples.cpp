#include "data/samplescripts.h"
#include "engine/catalog/world.h"
#include "engine/session/scriptreader.h"
#include "engine/session/session.h"
#include "engine/store/rowstore.h"
#include "engine/values/sqlerror.h"
#include "support/table.h"

#include <QSet>
#include <QTest>

using namespace engine;

namespace {

/// Keeps the first value of a session's answer and its first error.
class FirstValue : public ResultSink {
  public:
    Value value;
    int error = 0;

    void columns(const std::vector<ResultColumn>&) override {}
    void row(std::span<const Value> values) override {
        if (value.index() == 0) value = values.front();
    }
    void statementDone(qint64, bool) override {}
    void message(const SqlMessage& message) override {
        if (error == 0 && message.severity > 10) error = message.number;
    }
    void databaseChanged(const QString&, const QString&) override {}
    bool cancelled() override { return false; }
};

}  // namespace

/// The sample databases that come with the server.
class TestSamples : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void hasTheDatabases();
    void doors_data();
    void doors();
    void nodeKeysCollide();
    void editionsDiffer_data();
    void editionsDiffer();
    void typesAreAllThere();
    void longTextsArriveWhole();
    void rowsMeetTheirChecks();

  private:
    const Table* table(const char* database, const char* name, const char* owner = "") const;
    std::shared_ptr<World> m_world = std::make_shared<World>();
};

void TestSamples::initTestCase() {
    const auto scripts = sampledata::sampleScripts();
    QVERIFY(scripts.size() >= 8);
    for (const auto& script : scripts) {
        try {
            engine::runScript(*m_world, script.text);
        } catch (const SqlError& error) {
            QFAIL(qPrintable(
                QStringLiteral("%1, line %2: %3")
                    .arg(script.name, QString::number(error.message().line), error.message().text)));
        }
    }
    m_world->seal();
}

const Table* TestSamples::table(const char* database, const char* name, const char* owner) const {
    const Database* found = m_world->findDatabase(QString::fromUtf8(database));
    return found == nullptr
               ? nullptr
               : found->findTable(QString::fromUtf8(owner), QString::fromUtf8(name), QStringLiteral("dbo"));
}

void TestSamples::hasTheDatabases() {
    QStringList names;
    for (const auto& database : m_world->databases())
        names.append(database->name);
    QCOMPARE(names.mid(5),
             QStringLiteral("Workshop,Workshop2,Payroll,Odd Names,Stock,Stockroom,Archive,TypeSamples")
                 .split(QLatin1Char(',')));
    for (const auto& table : m_world->findDatabase(QStringLiteral("Archive"))->tables)
        QVERIFY(table->system);
}

void TestSamples::doors_data() {
    const testsupport::Table<QString, bool> row("database", "open");
    row("own user", "Workshop", true);
    row("user of another name", "Odd Names", true);
    row("guest", "Archive", true);
    row("closed", "Payroll", false);
}

void TestSamples::doors() {
    QFETCH(QString, database);
    const Database& found = *m_world->findDatabase(database);
    QTEST(found.guest || found.userOfLogin.contains(QStringLiteral("clerk")), "open");
    QVERIFY(m_world->findLogin(QStringLiteral("CLERK")) != nullptr);
    QCOMPARE(table("Workshop", "SupplierTerms")->deniedUsers, QStringList{QStringLiteral("clerk")});
}

void TestSamples::nodeKeysCollide() {
    QVERIFY(table("Stock", "room1") != nullptr);
    QVERIFY(table("Stockroom", "1") != nullptr);
    // The same table name under two owners, and one that only another owner has.
    QVERIFY(table("Odd Names", "Notes", "dbo") != table("Odd Names", "Notes", "maria"));
    QVERIFY(table("Odd Names", "Sketches") == nullptr);
    QVERIFY(table("Odd Names", "Sketches", "maria") != nullptr);
}

void TestSamples::editionsDiffer_data() {
    const testsupport::Table<QString> row("what");
    // A set of facts that each edition has; the cases say which side must have some of its own.
    for (const char* kind : {"table", "column", "type", "null", "index", "check", "key", "primary"}) {
        row(kind, QString::fromLatin1(kind));
    }
}

void TestSamples::editionsDiffer() {
    QFETCH(QString, what);
    const auto facts = [this, &what](const char* name) {
        QSet<QString> all;
        for (const auto& table : m_world->findDatabase(QString::fromLatin1(name))->tables) {
            if (table->system) continue;
            const QString prefix = table->name + QLatin1Char('.');
            if (what == QLatin1String("table")) all.insert(table->name);
            for (const Column& column : table->columns) {
                if (what == QLatin1String("column")) all.insert(prefix + column.name);
                if (what == QLatin1String("type")) {
                    all.insert(prefix + column.name +
                               QStringLiteral(" %1 %2")
                                   .arg(static_cast<int>(column.type.id))
                                   .arg(column.type.length));
                }
                if (what == QLatin1String("null"))
                    all.insert(prefix + column.name + QString::number(column.nullable));
            }
            for (const Index& index : table->indexes) {
                QString text = prefix + index.name;
                for (const int column : index.columns)
                    text += QLatin1Char(' ') + QString::number(column);
                if (what == QLatin1String("index") && !index.primaryKey) all.insert(text);
                if (what == QLatin1String("primary") && index.primaryKey) all.insert(text);
            }
            for (const Check& check : table->checks) {
                if (what == QLatin1String("check")) all.insert(prefix + check.name + check.text);
            }
            for (const ForeignKey& key : table->foreignKeys) {
                if (what == QLatin1String("key")) all.insert(prefix + key.name + key.referencedTable);
            }
        }
        return all;
    };
    const QSet<QString> first = facts("Workshop");
    const QSet<QString> second = facts("Workshop2");
    QVERIFY2(!(first - second).isEmpty(), "nothing only in the first edition");
    QVERIFY2(!(second - first).isEmpty(), "nothing only in the second edition");
    QVERIFY2((first & second).size() > 5, "too little in common");
}

void TestSamples::typesAreAllThere() {
    QSet<int> types;
    for (const Column& column : table("TypeSamples", "AllTypes")->columns)
        types.insert(static_cast<int>(column.type.id));
    QCOMPARE(types.size(), static_cast<int>(TypeId::UniqueIdentifier) + 1);
}

void TestSamples::longTextsArriveWhole() {
    const Table& all = *table("TypeSamples", "AllTypes");
    const auto column = [&all](const char* name) {
        return QByteArray("c") + QByteArray::number(all.columnIndex(QString::fromLatin1(name)));
    };
    StoreStatement row(m_world->findDatabase(QStringLiteral("TypeSamples"))->keeper,
                       "SELECT length(" + column("AText") + "), length(" + column("AnImage") + "), " +
                           column("ANText") + " FROM \"" + all.storage.toUtf8() + "\" WHERE c0 = 7");
    QVERIFY(row.step());
    QCOMPARE(row.integer(0), 131072);
    QCOMPARE(row.integer(1), 100000);
    const QString text = std::get<QString>(row.value(2, {.id = TypeId::NText}));
    QVERIFY(text.startsWith(QStringLiteral("Länge über alles 🚲 Länge")));
    QCOMPARE(text.size(), 5000 * QStringLiteral("Länge über alles 🚲 ").size());
}

// Scripts keep checks without evaluating them.
void TestSamples::rowsMeetTheirChecks() {
    Session session(m_world, 51);
    const LoginRequest login{
        .user = QStringLiteral("sa"), .password = {}, .database = {}, .clientHost = {}, .application = {}};
    QVERIFY(session.login(login).empty());
    int checks = 0;
    for (const auto& database : m_world->databases()) {
        for (const auto& table : database->tables) {
            for (const Check& check : table->checks) {
                FirstValue answer;
                session.execute(QStringLiteral("select count(*) from [%1].[%2].[%3] where not %4")
                                    .arg(database->name, table->owner, table->name, check.text),
                                answer);
                QCOMPARE(answer.error, 0);
                QVERIFY2(answer.value == Value(0), qPrintable(check.name));
                ++checks;
            }
        }
    }
    QVERIFY(checks > 15);
}

QTEST_GUILESS_MAIN(TestSamples)
#include "test_samples.moc"

#include "data/samplescripts.h"
#include "engine/catalog/world.h"
#include "engine/session/scriptreader.h"
#include "engine/values/sqlerror.h"
#include "support/table.h"

#include <QSet>
#include <QTest>

using namespace engine;

/// The sample databases that come with the server.
class TestSamples : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void hasTheDatabases();
    void doors_data();
    void doors();
    void nodeKeysCollide();
    void typesAreAllThere();

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

void TestSamples::typesAreAllThere() {
    QSet<int> types;
    for (const Column& column : table("TypeSamples", "AllTypes")->columns)
        types.insert(static_cast<int>(column.type.id));
    QCOMPARE(types.size(), static_cast<int>(TypeId::UniqueIdentifier) + 1);
}

QTEST_GUILESS_MAIN(TestSamples)
#include "test_samples.moc"

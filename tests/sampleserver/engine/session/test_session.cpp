#include "engine/session/generated.h"
#include "recordingsink.h"
#include "shopworld.h"
#include "support/table.h"

#include <QTest>

#include <thread>

/// Coming in, moving between databases, options, and the course of a batch.
class SessionTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { m_world = shopWorld(); }
    void login_data();
    void login();
    void users();
    void use();
    void rowCount();
    void quotedIdentifiers();
    void options();
    void batchAfterFailure_data();
    void batchAfterFailure();
    void messagesOfStatements();
    void procedures();
    void calls_data();
    void calls();
    void cancels_data();
    void cancels();
    void sideBySide();
    void limits_data();
    void limits();

  private:
    std::shared_ptr<const engine::World> m_world;
};

void SessionTest::login_data() {
    const testsupport::Table<QString, QString, QString, QString, QString> row("user", "password", "database",
                                                                              "errors", "entered");
    row("sa", "sa", "", "", "", "master");
    row("case of names", "SA", "", "SHOP", "", "shop");
    row("default database", "clerk", "till", "", "", "shop");
    row("as guest", "visitor", "", "shop", "", "shop");
    row("wrong password", "clerk", "x", "", "18456", "");
    row("nobody", "nobody", "", "", "18456", "");
    row("no such database", "sa", "", "nodb", "4060 18456", "");
    row("closed to guests", "visitor", "", "vault", "4060 18456", "");
}

void SessionTest::login() {
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, database);
    QFETCH(QString, errors);
    QFETCH(QString, entered);
    engine::Session session(m_world, 51);
    const auto messages = session.login(
        {.user = user, .password = password, .database = database, .clientHost = {}, .application = {}});
    QStringList numbers;
    for (const engine::SqlMessage& message : messages)
        numbers += QString::number(message.number);
    QCOMPARE(numbers.join(u' '), errors);
    QCOMPARE(session.database(), entered);
    if (errors.isEmpty()) return;
    QCOMPARE(messages.back().text, QStringLiteral("Login failed for user '%1'.").arg(user));
    RecordingSink sink;
    session.execute(QStringLiteral("SELECT 1"), sink);
    QVERIFY(sink.rows.isEmpty());
}

void SessionTest::users() {
    auto clerk = shopSession(m_world, QStringLiteral("clerk"));
    RecordingSink sink;
    clerk->execute(QStringLiteral("SELECT USER, SYSTEM_USER SELECT nick FROM customers SELECT name FROM "
                                  "dbo.customers WHERE id = 1"),
                   sink);
    QCOMPARE(sink.rows,
             QStringList({QStringLiteral("clerk|clerk"), QStringLiteral("Cl"), QStringLiteral("Ann")}));

    RecordingSink denied;
    clerk->execute(QStringLiteral("SELECT * FROM secrets"), denied);
    QCOMPARE(denied.errorNumbers(), QStringLiteral("229"));
    QCOMPARE(denied.errors[0].text,
             QStringLiteral("SELECT permission denied on object 'secrets', database 'shop', owner 'dbo'."));
    RecordingSink owner;
    shopSession(m_world)->execute(QStringLiteral("SELECT * FROM secrets"), owner);
    QCOMPARE(owner.rows, QStringList{QStringLiteral("1")});
}

void SessionTest::use() {
    auto session = shopSession(m_world, QStringLiteral("clerk"));
    RecordingSink sink;
    session->execute(QStringLiteral("USE [master]; SELECT DB_NAME() + USER"), sink);
    QCOMPARE(sink.changes, QStringList{QStringLiteral("shop > master")});
    QCOMPARE(sink.informations, QStringList{QStringLiteral("Changed database context to 'master'.")});
    QCOMPARE(sink.rows, QStringList{QStringLiteral("masterguest")});
    RecordingSink refused;
    session->execute(QStringLiteral("USE vault SELECT bars FROM vault..gold"), refused);
    QCOMPARE(refused.errorNumbers(), QStringLiteral("916 916"));
    QCOMPARE(session->database(), QStringLiteral("master"));
}

void SessionTest::rowCount() {
    auto session = shopSession(m_world);
    RecordingSink sink;
    session->execute(QStringLiteral("SET ROWCOUNT 2 SELECT id FROM customers ORDER BY id DESC"), sink);
    QCOMPARE(sink.rows, QStringList({QStringLiteral("3"), QStringLiteral("2")}));
    QCOMPARE(sink.dones, QStringList({QStringLiteral("-1"), QStringLiteral("2 rows")}));
    const auto rows = [&](const char* statement) {
        RecordingSink next;
        session->execute(QString::fromLatin1(statement), next);
        return next.rows.join(u' ');
    };
    QCOMPARE(rows("SELECT TOP 3 id FROM customers ORDER BY id"), QStringLiteral("1 2"));
    QCOMPARE(rows("SELECT TOP 1 id FROM customers ORDER BY id"), QStringLiteral("1"));
    QCOMPARE(rows("SELECT id FROM customers UNION ALL SELECT 0 ORDER BY id"), QStringLiteral("0 1"));
    QCOMPARE(rows("SELECT count(*) FROM customers"), QStringLiteral("3"));
    QCOMPARE(rows("SET ROWCOUNT 0 SELECT id FROM customers ORDER BY id"), QStringLiteral("1 2 3"));
}

void SessionTest::quotedIdentifiers() {
    auto session = shopSession(m_world);
    RecordingSink off;
    session->execute(QStringLiteral("SET QUOTED_IDENTIFIER OFF SELECT \"name\" + 'x'"), off);
    QCOMPARE(off.rows, QStringList{QStringLiteral("namex")});
    RecordingSink stays;
    session->execute(QStringLiteral("SELECT \"name\""), stays);
    QCOMPARE(stays.rows, QStringList{QStringLiteral("name")});
    RecordingSink on;
    session->execute(QStringLiteral("SET QUOTED_IDENTIFIER ON SELECT \"name\" FROM customers WHERE id = 1"),
                     on);
    QCOMPARE(on.rows, QStringList{QStringLiteral("Ann")});
}

void SessionTest::options() {
    auto session = shopSession(m_world);
    RecordingSink sink;
    session->execute(
        QStringLiteral(
            "SET ANSI_NULLS, ANSI_PADDING ON SET IMPLICIT_TRANSACTIONS OFF SET LANGUAGE us_english "
            "SET DATEFORMAT mdy SET LOCK_TIMEOUT -1 SET TRANSACTION ISOLATION LEVEL READ COMMITTED "
            "SET NOCOUNT ON SELECT 1 SET NOCOUNT OFF SET FMTONLY ON SELECT id FROM customers "
            "SET FMTONLY OFF SET DATEFIRST 1"),
        sink);
    QCOMPARE(sink.rows, QStringList{QStringLiteral("1")});
    QCOMPARE(sink.names, QStringList{QStringLiteral("id")});
    QCOMPARE(sink.dones[7], QStringLiteral("-1 rows"));
    QCOMPARE(sink.errorNumbers(), QStringLiteral("2741"));
}

void SessionTest::batchAfterFailure_data() {
    const testsupport::TextTable<QString, QString> row("batch", "errors", "rows");
    row("SELECT 1 SELECT 1 / 0 SELECT @@ERROR", "8134", "1;8134");
    row("SELECT 1 EXEC nosuch SELECT 2", "2812", "1;2");
    row("SELECT 1 SELECT * FROM nothere SELECT 2", "208", "1");
    row("SELECT 1 SELECT CONVERT(int, 'x') SELECT 2", "245", "1");
    row("SELECT 1 SELECT 2 +", "170", "");
    row("SELECT 1 DELETE customers SELECT 2", "3906", "1");
    row("IF @@TRANCOUNT > 0 ROLLBACK ELSE BEGIN SELECT 1 SELECT 2 END SELECT 3", "", "1;2;3");
    row("SET IMPLICIT_TRANSACTIONS ON COMMIT ROLLBACK SELECT @@TRANCOUNT", "", "0");
    row("SET DATEFORMAT dmy SELECT MONTH('3/2/2001') + ISDATE('31/12/2001') SELECT MONTH('2001-02-03') "
        "SET DATEFORMAT xyz",
        "2741", "3;3");
    row("SET TEXTSIZE 5 SELECT note, name FROM customers WHERE id = 1 SELECT @@TEXTSIZE", "", "hello|Ann;5");
    row("SELECT 1 / (id - 2) FROM customers WHERE id < 3 ORDER BY id", "8134", "-1");
}

void SessionTest::batchAfterFailure() {
    QFETCH(QString, batch);
    QFETCH(QString, errors);
    QFETCH(QString, rows);
    RecordingSink sink;
    shopSession(m_world)->execute(batch, sink);
    QCOMPARE(sink.errorNumbers(), errors);
    QCOMPARE(sink.rows.join(u';'), rows);
}

void SessionTest::messagesOfStatements() {
    auto session = shopSession(m_world);
    RecordingSink sink;
    session->execute(QStringLiteral("SELECT 1\n\nPRINT 'a' + 'b'\nSELECT nothere\nFROM customers"), sink);
    QCOMPARE(sink.informations, QStringList{QStringLiteral("ab")});
    QCOMPARE(sink.errors.size(), size_t(1));
    QCOMPARE(sink.errors[0].line, 4);
    QCOMPARE(sink.errors[0].text, QStringLiteral("Invalid column name 'nothere'."));
    RecordingSink syntax;
    session->execute(QStringLiteral("SELECT 1\nSELECT * FRM customers"), syntax);
    QCOMPARE(syntax.errors[0].text, QStringLiteral("Line 2: Incorrect syntax near 'FRM'."));
    QCOMPARE(syntax.errors[0].severity, 15);
    QCOMPARE(syntax.dones, QStringList{QStringLiteral("-1")});
}

void SessionTest::procedures() {
    auto session = shopSession(m_world);
    for (const char* batch : {"sp_columns 'orders'", "EXEC sp_columns @table_name = N'orders'",
                              "EXECUTE dbo.sp_columns orders", "USE master EXEC shop..sp_columns 'orders'",
                              "USE shop DECLARE @t varchar(20) SET @t = 'orders' EXEC sp_columns @t"}) {
        RecordingSink sink;
        session->execute(QString::fromLatin1(batch), sink);
        QVERIFY2(sink.errors.empty(), batch);
        QCOMPARE(sink.rows.size(), 8);
    }
    RecordingSink unclosed;
    session->execute(QStringLiteral("sp_columns 'O'Brien'"), unclosed);
    QCOMPARE(unclosed.errorNumbers(), QStringLiteral("105"));
}

// Each step is "procedure|value|value": i is a number, o the same for output, ~ a null, anything else a text.
void SessionTest::calls_data() {
    const testsupport::Table<QStringList, QString, QString, QString> row("steps", "rows", "returned",
                                                                         "errors");
    const auto step = [](const char* text) { return QString::fromLatin1(text); };
    const QString prepare = step("sp_prepare|o0|@n int|SELECT name FROM customers WHERE id = @n");
    row("catalog procedure", {step("sp_tables|customers|dbo")}, "shop|dbo|customers|TABLE|NULL", "", "");
    row("of another database", {step("[shop]..sp_tables|gold|%|vault")}, "", "", "15250");
    row("statement", {step("sp_executesql|SELECT 1")}, "1", "", "");
    row("parameters", {step("sp_executesql|SELECT @b + @a, @c|@a int, @b decimal(5,1), @c bigint|i1|2.5|i3")},
        "3.5|3", "", "");
    row("output", {step("sp_executesql|SET @a = @a * 2|@a int OUTPUT|o21")}, "", "2 42", "");
    row("a statement that fails", {step("sp_executesql|SELECT 1/@a|@a int|i0")}, "", "", "8134");
    row("prepared",
        {prepare, step("sp_execute|i1|i2"), step("sp_execute|i1|i3"), step("sp_unprepare|i1"),
         step("sp_execute|i1|i2")},
        "bob;Cid", "0 1", "8179");
    row("prepared and run", {step("sp_prepexec|o0|@n int|SELECT @n|i5"), step("sp_execute|i1|~")}, "5;NULL",
        "0 1", "");
    row("reset", {prepare, step("sp_reset_connection"), step("sp_execute|i1|i2")}, "", "0 1", "8179");
    row("too many", {step("sp_executesql|SELECT @a|@a int|i1|i2")}, "", "", "8144");
    row("too few", {step("sp_executesql|SELECT @a|@a int")}, "", "", "8178");
    row("no statement", {step("sp_executesql|i1")}, "", "", "214");
    row("nothing of that name", {step("sp_nothing")}, "", "", "2812");
}

void SessionTest::calls() {
    QFETCH(QStringList, steps);
    auto session = shopSession(m_world);
    RecordingSink sink;
    for (const QString& step : steps) {
        QStringList parts = step.split(u'|');
        engine::ProcedureRequest request{.name = parts.takeFirst(), .parameters = {}};
        for (const QString& part : parts) {
            engine::Parameter& parameter = request.parameters.emplace_back();
            parameter.type = {.id = engine::TypeId::NVarChar, .length = 4000};
            parameter.output = part.startsWith(u'o');
            if (part.startsWith(u'i') || parameter.output) {
                parameter.type = {.id = engine::TypeId::Int};
                parameter.value = part.mid(1).toLongLong();
            } else if (part != QLatin1String("~")) {
                parameter.value = part;
            }
        }
        session->call(request, sink);
    }
    QTEST(sink.rows.join(u';'), "rows");
    QTEST(sink.returned.join(u';'), "returned");
    QTEST(sink.errorNumbers(), "errors");
}

void SessionTest::cancels_data() {
    const testsupport::TextTable<int> row("batch", "most");
    row("WAITFOR DELAY '01:00:00' SELECT 1", 0);
    row("SELECT a.id FROM sysobjects a, sysobjects b, sysobjects c", 1000);
    row("SELECT count(*) FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d, syscolumns e", 0);
}

void SessionTest::cancels() {
    QFETCH(QString, batch);
    QFETCH(int, most);
    auto session = shopSession(m_world);
    RecordingSink sink;
    int looks = 0;
    sink.isCancelled = [&] { return ++looks > 5; };
    session->execute(batch, sink);
    QVERIFY(sink.rows.size() <= most);
    QVERIFY(sink.errors.empty());
    RecordingSink next;
    session->execute(QStringLiteral("WAITFOR DELAY '00:00:00.010' SELECT 1"), next);
    QCOMPARE(next.rows.size(), 1);
}

void SessionTest::limits_data() {
    const testsupport::Table<QString, QString> row("batch", "errors");
    const QString many =
        QStringLiteral("%1 FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d, syscolumns e%2");
    row("work", many.arg(QStringLiteral("SELECT COUNT(*)"), QString()), "8649");
    row("work for a variable",
        QStringLiteral("DECLARE @n int ") + many.arg(QStringLiteral("SELECT @n = COUNT(*)"), QString()),
        "8649");
    row("waiting", "WAITFOR DELAY '23:00'", "8649");
    row("sorting", many.arg(QStringLiteral("SELECT REPLICATE('x', 8000)"), QStringLiteral(" ORDER BY 1")),
        "701");
    row("a long batch", QStringLiteral("SELECT 1") + QStringLiteral(",1").repeated(600'000), "701");
    row("little", "SELECT 1", "");
}

void SessionTest::limits() {
    QFETCH(QString, batch);
    QFETCH(QString, errors);
    engine::Session session(m_world, 51, {.milliseconds = 300, .bytes = 1024 * 1024});
    session.login(
        {.user = QStringLiteral("sa"), .password = {}, .database = {}, .clientHost = {}, .application = {}});
    RecordingSink sink;
    session.execute(batch, sink);
    QCOMPARE(sink.errorNumbers(), errors);
    RecordingSink next;
    session.execute(QStringLiteral("SELECT 1"), next);
    QCOMPARE(next.rows.size(), 1);
}

/// Sessions on threads of their own read one world at once.
void SessionTest::sideBySide() {
    auto world = std::make_shared<engine::World>();
    engine::addLargeDatabase(*world, QStringLiteral("shop"), 60, 8, 20);
    world->seal();
    const QString query = QStringLiteral(
        "SELECT count(*), count(DISTINCT o.name) FROM sysobjects o, syscolumns c "
        "WHERE o.id = c.id AND o.type = 'U'");
    std::vector<QStringList> results(4);
    std::vector<std::thread> threads;
    for (QStringList& result : results) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                RecordingSink sink;
                shopSession(world)->execute(query, sink);
                result += sink.rows;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const QStringList& result : results)
        QCOMPARE(result, QStringList(20, QStringLiteral("480|60")));
}

QTEST_APPLESS_MAIN(SessionTest)
#include "test_session.moc"

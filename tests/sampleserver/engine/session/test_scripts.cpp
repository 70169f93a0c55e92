#include "engine/session/scriptreader.h"
#include "engine/values/sqlerror.h"
#include "sampleserver/engine/worldprobe.h"

#include <QTest>

using engine::SqlError;

/// What a script may say, what it must not, and what stands in the tables afterwards.
class TestScripts : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void accepts_data();
    void accepts();
    void refuses_data();
    void refuses();
    void insertsRows_data();
    void insertsRows();
    void readsOn();
    void keepsWhatStoodBeforeAFailure();
    void refusesScriptsOnceSealed();
};

void TestScripts::accepts_data() {
    QTest::addColumn<QString>("script");
    const auto row = [](const char* name, const char* script) {
        QTest::newRow(name) << QString::fromUtf8(script);
    };
    row("nothing", "");
    row("comments and empty batches", "GO\n-- a\n/* b /* nested */ */\nGO\n;\nGO");
    row("session settings", "SET ANSI_NULLS, QUOTED_IDENTIFIER ON\nSET NOCOUNT OFF; PRINT 'done'");
    row("files of a database",
        "CREATE DATABASE d ON PRIMARY (NAME = a, FILENAME = 'c:\\d.mdf', SIZE = 5MB), "
        "(NAME = b) LOG ON (NAME = l)");
    row("storage options",
        "create table t (a int primary key nonclustered with fillfactor = 80, pad_index on [default], "
        "b text) on [PRIMARY] textimage_on [PRIMARY]");
    row("no comma between table constraints",
        "create table t (a int not null constraint x primary key (a) check (a > 0))");
    row("trailing comma", "create table t (a int,)");
    row("not for replication",
        "create table t (a int identity (1, 1) not for replication, b int check not for "
        "replication (b > 0))");
    row("no action",
        "create table t (a int primary key, b int references t on delete no action on update no action)");
    row("index on a keyword", "create table [order] ([group] int)\ncreate index [key] on [order] ([group])");
    row("drop of what is not there",
        "if exists (select * from sysobjects where id = object_id('t')) drop table [t]\n"
        "if exists (select 1) drop database Nowhere");
    row("bracketed types",
        "create table [dbo].[t] ([a] [nvarchar] (5) null, [b] [decimal](9, 2), [c] [sysname])");
    row("enabling a constraint",
        "create table t (a int, constraint c check (a > 0))\n"
        "alter table t check constraint c\nalter table t nocheck constraint all");
    row("a table of another database",
        "create database d\ncreate table d..t (a int)\ninsert d.dbo.t values (1)");
    row("same name for two owners",
        "exec sp_addlogin 'x' exec sp_grantdbaccess 'x'\n"
        "create table t (a int)\ncreate table x.t (a int)");
    row("as people write",
        "create table t (a int identity, b varchar(max) collate x, c bigint, d as a + 1 persisted, e "
        "rowversion, "
        "primary key clustered (a desc) with (pad_index = off) on [primary])\n"
        "create table u (a int references t on delete cascade on update set null)\n"
        "create nonclustered index i on t (c asc) include (b) with (fillfactor = 80)\n"
        "if not exists (select * from sysobjects where name = 'v') begin\n create table v (a int)\nend\n"
        "GO 2\nexec sp_addtype 'money2', 'decimal(9,2)', 'not null'\ncreate table w (a money2)");
    row("permissions",
        "exec sp_addlogin 'x'\nexec sp_grantdbaccess 'x'\ncreate table t (a int)\n"
        "grant all on t to x, public\ndeny select, update on dbo.t to x\nrevoke select on t from x");
}

void TestScripts::accepts() {
    QFETCH(QString, script);
    QCOMPARE(WorldProbe::failure(script), QString());
}

void TestScripts::refuses_data() {
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char* failure, const char* name, const char* script) {
        QTest::newRow(name) << QString::fromUtf8(script) << QString::fromLatin1(failure);
    };
    // Syntax: the line is that of the token.
    row("102 at 2", "unknown statement", "print 'a'\nfrobnicate");
    row("50000 at 4", "line in a later batch", "print 'a'\nGO\nprint 'b'\nselect 1");
    row("105 at 2", "open quotation", "print 'a'\nprint 'b");
    row("113 at 1", "open comment", "/* never ends");
    row("102 at 1", "missing parenthesis", "create table t (a int");
    row("102 at 1", "constraint without a kind", "create table t (a int constraint c)");
    row("50000 at 1", "update", "update t set a = 1");
    row("2715 at 1", "unknown type", "create table t (a frob(3))");
    row("156 at 1", "senseless check", "create table t (a int check (a > 0 and or))");
    row("207 at 1", "check of no column", "create table t (a int check (b > 0))");
    row("1046 at 1", "check by a query", "create table t (a int check (a > (select 1)))");
    row("547 at 2", "check against rows",
        "create table t (a int) insert t values (-1)\nalter table t add check (a > 0)");
    row("4917 at 1", "constraint that is not there",
        "create table t (a int) alter table t nocheck constraint c");
    row("156 at 1", "reserved word as a name", "create table order (a int)");
    // Types.
    row("131 at 1", "varchar too long", "create table t (a varchar(8001))");
    row("131 at 1", "nvarchar too long", "create table t (a nvarchar(4001))");
    row("1001 at 1", "length zero", "create table t (a char(0))");
    row("2716 at 1", "length of an int", "create table t (a int(4))");
    row("2750 at 1", "precision", "create table t (a decimal(39))");
    row("2751 at 1", "scale", "create table t (a decimal(5, 6))");
    // Names.
    row("1801 at 1", "database twice", "create database PROBE");
    row("911 at 1", "unknown database", "use Nowhere");
    row("2714 at 2", "table twice", "create table t (a int)\ncreate table T (a int)");
    row("2714 at 2", "constraint named like a table",
        "create table t (a int)\ncreate table u (a int constraint t check (a > 0))");
    row("2714 at 1", "system table", "create table SysObjects (a int)");
    row("2705 at 1", "column twice", "create table t (a int, A int)");
    row("2760 at 1", "unknown owner", "create table nobody.t (a int)");
    row("208 at 1", "unknown table", "insert t values (1)");
    row("4902 at 1", "alter of nothing", "alter table t add a int");
    row("1906 at 1", "index on nothing", "create index i on t (a)");
    row("1913 at 1", "index twice", "create table t (a int) create index i on t (a) create index I on t (a)");
    // Keys.
    row("1911 at 1", "key on no column", "create table t (a int, primary key (b))");
    row("1909 at 1", "key column twice", "create table t (a int, primary key (a, A))");
    row("1919 at 1", "text in a key", "create table t (a text unique)");
    row("1904 at 1", "seventeen columns",
        "create table t (a int) create index i on t (a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q)");
    row("8110 at 1", "two primary keys", "create table t (a int primary key, b int primary key)");
    row("1779 at 2", "a second primary key",
        "create table t (a int primary key, b int not null)\nalter table t add primary key (b)");
    row("8111 at 1", "nullable primary key", "create table t (a int null primary key)");
    row("1902 at 1", "two clustered",
        "create table t (a int primary key, b int) create clustered index i on t (b)");
    row("1505 at 2", "unique over equal rows",
        "create table t (a int) insert t values (null), (null)\ncreate unique index i on t (a)");
    row("2744 at 1", "two identities", "create table t (a int identity, b int identity)");
    row("2749 at 1", "identity of a text", "create table t (a varchar(5) identity)");
    row("8147 at 1", "nullable identity", "create table t (a int identity null)");
    row("2738 at 1", "two timestamps", "create table t (a timestamp, b timestamp)");
    row("4901 at 2", "not null without default",
        "create table t (a int) insert t values (1)\nalter table t add b int not null");
    // Foreign keys.
    row("1767 at 1", "reference to nothing", "create table t (a int references u)");
    row("1769 at 1", "referencing nothing",
        "create table t (a int primary key, foreign key (b) references t)");
    row("1770 at 1", "reference to no column", "create table t (a int primary key, b int references t (c))");
    row("1773 at 1", "no primary key there", "create table t (a int, b int references t)");
    row("1776 at 1", "no candidate key there",
        "create table t (a int primary key, b int, c int references t (b))");
    row("1778 at 1", "other type", "create table t (a int primary key, b smallint references t)");
    row("1753 at 1", "other length", "create table t (a char(5) primary key, b char(6) references t)");
    row("8139 at 1", "other number",
        "create table t (a int, b int, primary key (a, b), foreign key (a) references t)");
    row("1763 at 2", "other database", "create database d\ncreate table t (a int references d.dbo.t)");
    row("547 at 3", "orphans present",
        "create table t (a int primary key) create table u (b int)\ninsert u values (1)\n"
        "alter table u add foreign key (b) references t");
    // Rows: the line is that of the row.
    row("515 at 4", "null", "create table t (a int not null)\ninsert t values\n(1),\n(null)");
    row("2627 at 2", "primary key",
        "create table t (a varchar(5) primary key)\ninsert t values ('a'), ('A ')");
    row("2627 at 1", "two nulls", "create table t (a int unique) insert t values (null), (null)");
    row("2601 at 1", "unique index",
        "create table t (a int) create unique index i on t (a) insert t values (1), (1)");
    row("547 at 1", "check", "create table t (a int check (a > 0), b int) insert t values (null, 1), (0, 1)");
    row("547 at 3", "check switched on again",
        "create table t (a int, constraint c check (a > 0)) alter table t nocheck constraint c\n"
        "insert t values (-1)\nalter table t with check check constraint all");
    row("547 at 1", "foreign key",
        "create table t (a int primary key, b int references t) insert t values (1, 2)");
    row("544 at 1", "identity given", "create table t (a int identity, b int) insert t (a, b) values (1, 1)");
    row("545 at 1", "identity missing",
        "create table t (a int identity, b int) set identity_insert t on insert t (b) values (1)");
    row("8107 at 2", "identity insert of two",
        "create table t (a int identity) create table u (a int identity)\n"
        "set identity_insert t on set identity_insert u on");
    row("273 at 1", "timestamp given", "create table t (a timestamp) insert t values (0x01)");
    row("213 at 1", "too few values", "create table t (a int, b int) insert t values (1)");
    row("109 at 1", "fewer values than named", "create table t (a int, b int) insert t (a, b) values (1)");
    row("110 at 1", "more values than named", "create table t (a int, b int) insert t (a) values (1, 2)");
    row("207 at 1", "unknown column", "create table t (a int) insert t (b) values (1)");
    row("264 at 1", "column named twice", "create table t (a int) insert t (a, A) values (1, 2)");
    row("128 at 1", "a name for a value", "create table t (a int) insert t values (a)");
    row("195 at 1", "a function it does not know", "create table t (a int) insert t values (rand())");
    QTest::newRow("nested too deeply")
        << QStringLiteral("create table t (a int) insert t values (") + QString(100000, QLatin1Char('('))
        << QStringLiteral("102 at 1");
    row("220 at 1", "too great", "create table t (a tinyint) insert t values (256)");
    row("8152 at 1", "too long", "create table t (a varchar(3)) insert t values ('abcd')");
    row("241 at 1", "no date", "create table t (a datetime) insert t values ('yesterday')");
    // Logins.
    row("15025 at 1", "login twice", "exec sp_addlogin 'SA'");
    row("15007 at 1", "user of no login", "exec sp_grantdbaccess 'nobody'");
    row("15023 at 1", "user twice",
        "exec sp_addlogin 'x' exec sp_grantdbaccess 'x' exec sp_grantdbaccess 'x'");
    row("15063 at 1", "login with two users",
        "exec sp_addlogin 'x' exec sp_grantdbaccess 'x' exec sp_grantdbaccess 'x', 'y'");
    row("15010 at 1", "default database", "exec sp_addlogin 'x', '', 'Nowhere'");
    row("15014 at 1", "unknown role", "exec sp_addrolemember 'r', 'dbo'");
    row("201 at 1", "no argument", "exec sp_addlogin");
    row("4604 at 1", "deny to nobody", "create table t (a int) deny select on t to nobody");
    row("50000 at 1", "unknown procedure", "exec sp_nothing 1");
    row("3701 at 2", "drop of what is there", "create table t (a int)\nif exists (select 1) drop table t");
}

void TestScripts::refuses() {
    QFETCH(QString, script);
    QTEST(WorldProbe::failure(script), "failure");
}

void TestScripts::insertsRows_data() {
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("rows");
    const auto row = [](const char* name, const char* script, const QStringList& rows) {
        QTest::newRow(name) << QString::fromUtf8(script) << rows;
    };
    const auto texts = [](const char* lines) { return QString::fromUtf8(lines).split(QLatin1Char('\n')); };
    row("identity of its own steps",
        "create table t (a int identity (10, -5), b char(1))\n"
        "insert t values ('x'), ('y')\ninsert into t (b) values ('z')",
        texts("10|x\n5|y\n0|z"));
    row("identity goes on behind a chosen value",
        "create table t (a int identity, b int)\nset identity_insert t on\ninsert t (b, a) values (1, 7)\n"
        "set identity_insert t off\ninsert t values (2)",
        texts("7|1\n8|2"));
    row("defaults",
        "create table t (a int default -1, b varchar(5) default 'x', c int, d bit default (1))\n"
        "insert t default values\ninsert t values (default, null, default, 0)\ninsert t (b) values ('y')",
        texts("-1|x|~|1\n-1|~|~|0\n-1|y|~|1"));
    row("constants",
        "create table t (a money, b nvarchar(20), c float, d decimal(9, 2), e int)\n"
        "insert t values ($1.5, N'a' + 'b' + nchar(233), -1e3, +.5, (3))",
        texts("15000|abé|-1000.0|50|3"));
    row("conversions",
        "create table t (a int, b char(3), c bit, d varchar(9))\n"
        "insert t values ('12', 'x', 5, 1.50)\ninsert t values (cast('7' as int), convert(char(3), 8), 0, "
        "'')",
        texts("12|x|1|1.50\n7|8|0|"));
    row("rows of a query",
        "create table s (a int, b varchar(9))\ninsert s select 1, 'x' union all select 2, 'y'\n"
        "create table t (a int, b varchar(9)) insert t (b, a) select upper(b), a * 10 from s order by a desc",
        texts("20|Y\n10|X"));
    row("computed", "create table t (a int, b as a * 2) insert t values (4) insert t (a) values (1 + 2)",
        texts("4|8\n3|6"));
    row("unchecked",
        "create table t (a int, constraint c check (a > 0), constraint d check (a < 9))\n"
        "alter table t nocheck constraint c\ninsert t values (-1)",
        texts("-1"));
    row("long values",
        "create table t (a int, t ntext) insert t values (1, replicate(N'ab', 40000))\n"
        "create table n (a int) ",
        texts("1|80000"));
    row("column added to rows",
        "create table t (a int) insert t values (1)\nalter table t add b int not null default 5, c int "
        "default 6, d int default 7 with values\ninsert t (a) values (2)",
        texts("1|5|~|7\n2|5|6|7"));
}

void TestScripts::insertsRows() {
    QFETCH(QString, script);
    WorldProbe probe(script);
    const bool longText = script.contains(QLatin1String("ntext"));
    QTEST(probe.rows(longText ? QStringLiteral("select a, length(t) from t")
                              : QStringLiteral("select * from t")),
          "rows");
}

void TestScripts::readsOn() {
    engine::World world;
    const engine::ScriptReport report = engine::ScriptReader(world).read(QStringLiteral(
        ":setvar name shelf\n:on error exit\nCREATE DATABASE d\nGO\nUSE d\nGO\n"
        "CREATE VIEW v AS\nSELECT 1\nGO\nCREATE TABLE $(name) (a int)\nUPDATE shelf\nSET a = 1\n"
        "IF @@ERROR <> 0\nBEGIN\n  RAISERROR ('no', 16, 1)\nEND\nCREATE TABLE bad (a nosuch)\n"
        "GRANT EXECUTE ON p TO public\nINSERT shelf VALUES ('x')\nCREATE TABLE last (a int)\n"));
    QStringList passed;
    for (const engine::SqlMessage& message : report.passedOver)
        passed += QString::number(message.line) + u' ' + message.text;
    QCOMPARE(passed.join(u';'), QStringLiteral("2 :on error exit;7 CREATE VIEW v;11 UPDATE shelf SET;"
                                               "13 IF @@ERROR <>;18 GRANT EXECUTE ON"));
    QStringList mistakes;
    for (const engine::SqlMessage& message : report.mistakes)
        mistakes += QStringLiteral("%1 %2").arg(message.line).arg(message.number);
    QCOMPARE(mistakes.join(u';'), QStringLiteral("17 2715;19 245"));
    QCOMPARE(report.understood, 4);
    QVERIFY(world.findDatabase(QStringLiteral("d"))->findTable({}, QStringLiteral("last"), {}) != nullptr);
}

void TestScripts::keepsWhatStoodBeforeAFailure() {
    engine::World world;
    const QString script = QStringLiteral(
        "create database d\nGO\nuse d\ncreate table t (a int not null)\n"
        "insert t values (1)\ninsert t values (2), (null), (3)\ncreate table u (a int)");
    QVERIFY_EXCEPTION_THROWN(engine::runScript(world, script), SqlError);
    const engine::Database& database = *world.findDatabase(QStringLiteral("D"));
    QVERIFY(database.findTable({}, QStringLiteral("T"), QStringLiteral("dbo")) != nullptr);
    QVERIFY(database.findTable({}, QStringLiteral("u"), QStringLiteral("dbo")) == nullptr);
    // The failing statement is taken back as a whole, and the world still takes scripts.
    engine::runScript(world, QStringLiteral("insert d..t values (4)"));
    world.seal();
    QCOMPARE(database.findTable({}, QStringLiteral("sysindexes"), {})->system, true);
}

void TestScripts::refusesScriptsOnceSealed() {
    WorldProbe probe(QString{});
    QVERIFY_EXCEPTION_THROWN(engine::runScript(probe.world(), QStringLiteral("create database late")),
                             SqlError);
}

QTEST_GUILESS_MAIN(TestScripts)
#include "test_scripts.moc"

#include "engine/session/scriptreader.h"
#include "engine/values/sqlerror.h"
#include "sampleserver/engine/worldprobe.h"
#include "support/table.h"

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
    const testsupport::Table<QString> row("script");
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
        "GO 2\nexec sp_addtype 'money2', 'decimal(9,2)', 'not null'\ncreate table w (a money2)\n"
        "create type dbo.code from char(3) not null\ncreate table x (a code primary key)");
    row("permissions",
        "exec sp_addlogin 'x'\nexec sp_grantdbaccess 'x'\ncreate table t (a int)\n"
        "grant all on t to x, public\ndeny select, update on dbo.t to x\nrevoke select on t from x");
}

void TestScripts::accepts() {
    QFETCH(QString, script);
    QCOMPARE(WorldProbe::failure(script), QString());
}

void TestScripts::refuses_data() {
    const testsupport::Table<QString, QString> row("failure", "script");
    // Syntax: the line is that of the token.
    row("unknown statement", "170 at 2", "print 'a'\nfrobnicate");
    row("line in a later batch", "50000 at 4", "print 'a'\nGO\nprint 'b'\nselect 1");
    row("open quotation", "105 at 2", "print 'a'\nprint 'b");
    row("open comment", "113 at 1", "/* never ends");
    row("missing parenthesis", "170 at 1", "create table t (a int");
    row("constraint without a kind", "170 at 1", "create table t (a int constraint c)");
    row("update", "50000 at 1", "update t set a = 1");
    row("unknown type", "2715 at 1", "create table t (a frob(3))");
    row("senseless check", "156 at 1", "create table t (a int check (a > 0 and or))");
    row("check of no column", "207 at 1", "create table t (a int check (b > 0))");
    row("check by a query", "1046 at 1", "create table t (a int check (a > (select 1)))");
    row("check against rows", "547 at 2",
        "create table t (a int) insert t values (-1)\nalter table t add check (a > 0)");
    row("constraint that is not there", "4917 at 1",
        "create table t (a int) alter table t nocheck constraint c");
    row("reserved word as a name", "156 at 1", "create table order (a int)");
    // Types.
    row("varchar too long", "131 at 1", "create table t (a varchar(8001))");
    row("nvarchar too long", "131 at 1", "create table t (a nvarchar(4001))");
    row("length zero", "1001 at 1", "create table t (a char(0))");
    row("length of an int", "2716 at 1", "create table t (a int(4))");
    row("precision", "2750 at 1", "create table t (a decimal(39))");
    row("scale", "2751 at 1", "create table t (a decimal(5, 6))");
    // Names.
    row("database twice", "1801 at 1", "create database PROBE");
    row("unknown database", "911 at 1", "use Nowhere");
    row("table twice", "2714 at 2", "create table t (a int)\ncreate table T (a int)");
    row("constraint named like a table", "2714 at 2",
        "create table t (a int)\ncreate table u (a int constraint t check (a > 0))");
    row("system table", "2714 at 1", "create table SysObjects (a int)");
    row("column twice", "2705 at 1", "create table t (a int, A int)");
    row("unknown owner", "2760 at 1", "create table nobody.t (a int)");
    row("unknown table", "208 at 1", "insert t values (1)");
    row("alter of nothing", "4902 at 1", "alter table t add a int");
    row("index on nothing", "1906 at 1", "create index i on t (a)");
    row("index twice", "1913 at 1", "create table t (a int) create index i on t (a) create index I on t (a)");
    // Keys.
    row("key on no column", "1911 at 1", "create table t (a int, primary key (b))");
    row("key column twice", "1909 at 1", "create table t (a int, primary key (a, A))");
    row("text in a key", "1919 at 1", "create table t (a text unique)");
    row("seventeen columns", "1904 at 1",
        "create table t (a int) create index i on t (a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q)");
    row("two primary keys", "8110 at 1", "create table t (a int primary key, b int primary key)");
    row("a second primary key", "1779 at 2",
        "create table t (a int primary key, b int not null)\nalter table t add primary key (b)");
    row("nullable primary key", "8111 at 1", "create table t (a int null primary key)");
    row("two clustered", "1902 at 1",
        "create table t (a int primary key, b int) create clustered index i on t (b)");
    row("unique over equal rows", "1505 at 2",
        "create table t (a int) insert t values (null), (null)\ncreate unique index i on t (a)");
    row("two identities", "2744 at 1", "create table t (a int identity, b int identity)");
    row("identity of a text", "2749 at 1", "create table t (a varchar(5) identity)");
    row("nullable identity", "8147 at 1", "create table t (a int identity null)");
    row("two timestamps", "2738 at 1", "create table t (a timestamp, b timestamp)");
    row("not null without default", "4901 at 2",
        "create table t (a int) insert t values (1)\nalter table t add b int not null");
    // Foreign keys.
    row("reference to nothing", "1767 at 1", "create table t (a int references u)");
    row("referencing nothing", "1769 at 1",
        "create table t (a int primary key, foreign key (b) references t)");
    row("reference to no column", "1770 at 1", "create table t (a int primary key, b int references t (c))");
    row("no primary key there", "1773 at 1", "create table t (a int, b int references t)");
    row("no candidate key there", "1776 at 1",
        "create table t (a int primary key, b int, c int references t (b))");
    row("other type", "1778 at 1", "create table t (a int primary key, b smallint references t)");
    row("other length", "1753 at 1", "create table t (a char(5) primary key, b char(6) references t)");
    row("other number", "8139 at 1",
        "create table t (a int, b int, primary key (a, b), foreign key (a) references t)");
    row("other database", "1763 at 2", "create database d\ncreate table t (a int references d.dbo.t)");
    row("orphans present", "547 at 3",
        "create table t (a int primary key) create table u (b int)\ninsert u values (1)\n"
        "alter table u add foreign key (b) references t");
    // Rows: the line is that of the row.
    row("null", "515 at 4", "create table t (a int not null)\ninsert t values\n(1),\n(null)");
    row("primary key", "2627 at 2",
        "create table t (a varchar(5) primary key)\ninsert t values ('a'), ('A ')");
    row("two nulls", "2627 at 1", "create table t (a int unique) insert t values (null), (null)");
    row("unique index", "2601 at 1",
        "create table t (a int) create unique index i on t (a) insert t values (1), (1)");
    row("check", "547 at 1", "create table t (a int check (a > 0), b int) insert t values (null, 1), (0, 1)");
    row("check switched on again", "547 at 3",
        "create table t (a int, constraint c check (a > 0)) alter table t nocheck constraint c\n"
        "insert t values (-1)\nalter table t with check check constraint all");
    row("foreign key", "547 at 1",
        "create table t (a int primary key, b int references t) insert t values (1, 2)");
    row("identity given", "544 at 1", "create table t (a int identity, b int) insert t (a, b) values (1, 1)");
    row("identity missing", "545 at 1",
        "create table t (a int identity, b int) set identity_insert t on insert t (b) values (1)");
    row("identity insert of two", "8107 at 2",
        "create table t (a int identity) create table u (a int identity)\n"
        "set identity_insert t on set identity_insert u on");
    row("timestamp given", "273 at 1", "create table t (a timestamp) insert t values (0x01)");
    row("too few values", "213 at 1", "create table t (a int, b int) insert t values (1)");
    row("fewer values than named", "109 at 1", "create table t (a int, b int) insert t (a, b) values (1)");
    row("more values than named", "110 at 1", "create table t (a int, b int) insert t (a) values (1, 2)");
    row("unknown column", "207 at 1", "create table t (a int) insert t (b) values (1)");
    row("column named twice", "264 at 1", "create table t (a int) insert t (a, A) values (1, 2)");
    row("a name for a value", "207 at 1", "create table t (a int) insert t values (a)");
    row("a function it does not know", "195 at 1", "create table t (a int) insert t values (rand())");
    row("nested too deeply", "191 at 1",
        QStringLiteral("create table t (a int) insert t values (") + QString(100000, QLatin1Char('(')));
    row("too great", "220 at 1", "create table t (a tinyint) insert t values (256)");
    row("too long", "8152 at 1", "create table t (a varchar(3)) insert t values ('abcd')");
    row("no date", "241 at 1", "create table t (a datetime) insert t values ('yesterday')");
    // Logins.
    row("login twice", "15025 at 1", "exec sp_addlogin 'SA'");
    row("user of no login", "15007 at 1", "exec sp_grantdbaccess 'nobody'");
    row("user twice", "15023 at 1",
        "exec sp_addlogin 'x' exec sp_grantdbaccess 'x' exec sp_grantdbaccess 'x'");
    row("login with two users", "15063 at 1",
        "exec sp_addlogin 'x' exec sp_grantdbaccess 'x' exec sp_grantdbaccess 'x', 'y'");
    row("default database", "15010 at 1", "exec sp_addlogin 'x', '', 'Nowhere'");
    row("unknown role", "15014 at 1", "exec sp_addrolemember 'r', 'dbo'");
    row("no argument", "201 at 1", "exec sp_addlogin");
    row("deny to nobody", "4604 at 1", "create table t (a int) deny select on t to nobody");
    row("unknown procedure", "50000 at 1", "exec sp_nothing 1");
    row("drop of what is there", "3701 at 2", "create table t (a int)\nif exists (select 1) drop table t");
}

void TestScripts::refuses() {
    QFETCH(QString, script);
    QTEST(WorldProbe::failure(script), "failure");
}

void TestScripts::insertsRows_data() {
    const testsupport::Table<QString, QStringList> row("script", "rows");
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
    row("conditions",
        "create table s (a int)\nif object_id('s') is null drop table s else create table t (a int, b int)\n"
        "if exists (select * from sysobjects where name = 's' and xtype = 'U') insert t values (1, "
        "col_length('s', 'a'))\n"
        "if not exists (select * from information_schema.tables where table_name = 's') insert t values (2, "
        "0)\n"
        "if db_id('Probe') is not null and not exists (select * from sys.columns where object_id = "
        "object_id(N'[dbo].[s]', 'U') and name = 'b') begin\n insert t values (3, 0)\nend",
        texts("1|4\n3|0"));
    row("dates as they are formatted",
        "set dateformat dmy create table t (a datetime, b as month(a)) insert t values ('3/2/2001')",
        texts("957044160000|2"));
    row("unchecked",
        "create table t (a int, constraint c check (a > 0), constraint d check (a < 9))\n"
        "alter table t nocheck constraint c\ninsert t values (-1)",
        texts("-1"));
    row("long values",
        "create table t (a int, t ntext) insert t values (1, replicate(cast(N'ab' as ntext), 40000))\n"
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
        "CREATE VIEW v AS\nSELECT 1\nGO\nCREATE INDEX i ON v (a)\nCREATE TABLE $(name) (a int)\n"
        "UPDATE shelf\nSET a = 1\n"
        "IF @@ERROR <> 0\nBEGIN\n  RAISERROR ('no', 16, 1)\nEND\nCREATE TABLE bad (a nosuch)\n"
        "GRANT EXECUTE ON p TO public\nINSERT shelf VALUES ('x')\nCREATE TABLE last (a int)\n"));
    QStringList passed;
    for (const engine::SqlMessage& message : report.passedOver)
        passed += QString::number(message.line) + u' ' + message.text;
    QCOMPARE(passed.join(u';'), QStringLiteral("2 :on error exit;7 CREATE VIEW v;10 CREATE INDEX i;"
                                               "12 UPDATE shelf SET;19 GRANT EXECUTE ON"));
    QStringList mistakes;
    for (const engine::SqlMessage& message : report.mistakes)
        mistakes += QStringLiteral("%1 %2").arg(message.line).arg(message.number);
    QCOMPARE(mistakes.join(u';'), QStringLiteral("18 2715;20 245"));
    QCOMPARE(report.understood, 5);
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

#include "sampleserver/engine/worldprobe.h"
#include "support/table.h"

#include <QRegularExpression>
#include <QTest>

namespace {

QStringList lines(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

const char* const shop =
    "exec sp_addlogin 'bob', 'secret', 'Probe'\n"
    "exec sp_grantdbaccess 'bob', 'robert'\n"
    "exec sp_addrolemember 'db_datareader', 'robert'\n"
    "create table Customer (Id int identity constraint PK_Customer primary key, Name nvarchar (50) not null "
    "unique,\n"
    "  Price money constraint DF_Price default 0 constraint CK_Price check (Price >= 0), Memo text)\n"
    "create table Line (A int, B smallint not null, Cust int constraint FK_Cust references Customer,\n"
    "  Up int, UpB smallint, constraint PK_Line primary key nonclustered (B, A))\n"
    "create table robert.Notes (Body ntext)\n"
    "create clustered index IX_Line_Cust on Line (Cust)\n"
    "create index IX_Line on Line (UpB, Up, B)\n"
    "create statistics _WA_Sys_Up on Line (Up)\n"
    "GO\n"
    "alter table Line add constraint FK_Line foreign key (UpB, Up) references Line (B, A), check (Up <> A)\n"
    "insert Customer (Name) values ('x'), ('y')\n";

}  // namespace

/// The system tables, asked with the statements that clients of the catalog use.
class TestCatalog : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { m_probe = std::make_unique<WorldProbe>(QString::fromLatin1(shop)); }
    void answers_data();
    void answers();
    void columnsOfTypes_data();
    void columnsOfTypes();
    void everyTableIsDescribed();
    void longCheckGoesOnInFurtherRows();
    void idsAreStable();
    void namesAreMadeUp();
    void nullability_data();
    void nullability();

  private:
    std::unique_ptr<WorldProbe> m_probe;
};

void TestCatalog::answers_data() {
    const testsupport::Table<QString, QString> row("query", "rows");
    row("user tables", "select name from sysobjects where type = 'U' order by name",
        "Customer\nLine\nNotes\n");
    row("objects of a table",
        "select o.name, o.xtype, o.type from sysobjects o join sysobjects p on o.parent_obj = p.id "
        "where p.name = 'LINE' order by o.xtype, o.name",
        "CK__Line|C|C\nFK_Cust|F|F\nFK_Line|F|F\nPK_Line|PK|K\n");
    row("owners",
        "select o.name, u.name from sysobjects o join sysusers u on u.uid = o.uid where o.xtype = 'U'",
        "Customer|dbo\nLine|dbo\nNotes|robert\n");
    row("checks",
        "select p.name, o.name, c.text from sysobjects o, syscomments c, sysobjects p where o.xtype = 'C' "
        "and o.id = c.id and o.parent_obj = p.id order by 1, 2",
        "Customer|CK_Price|(Price >= 0)\nLine|CK__Line|(Up <> A)\n");
    row("defaults",
        "select c.name, o.name, m.text from syscolumns c join sysobjects o on o.id = c.cdefault join "
        "syscomments m on "
        "m.id = o.id",
        "Price|DF_Price|(0)\n");
    row("indexes",
        "select o.name, i.name, i.indid, i.status, i.keycnt, i.rows from sysindexes i join sysobjects o on "
        "o.id = i.id "
        "where o.xtype = 'u' order by 1, 3",
        "Customer|PK_Customer|1|2066|1|2\nCustomer|UQ__Customer|2|4098|1|2\nCustomer|tCustomer|255|0|0|0\n"
        "Line|IX_Line_Cust|1|16|1|0\nLine|PK_Line|2|2050|2|0\nLine|IX_Line|3|0|3|0\nLine|_WA_Sys_Up|4|"
        "8388704|1|0\n"
        "Notes|Notes|0|0|0|0\nNotes|tNotes|255|0|0|0\n");
    row("index columns",
        "select o.name, i.name, c.name from sysindexes i, sysobjects o, syscolumns c, sysindexkeys k "
        "where i.indid <> 255 and i.name not like '\\_WA\\_Sys%' escape '\\' and o.name not like 'sys%' "
        "and o.xtype = 'u' and o.id = i.id and o.id = c.id and o.id = k.id and i.indid = k.indid "
        "and k.colid = c.colid and i.name <> o.name",
        "Customer|PK_Customer|Id\nCustomer|UQ__Customer|Name\nLine|IX_Line_Cust|Cust\nLine|PK_Line|B\nLine|"
        "PK_Line|A\n"
        "Line|IX_Line|UpB\nLine|IX_Line|Up\nLine|IX_Line|B\n");
    row("foreign keys",
        "select k.name, f.name, fc.name, r.name, rc.name, keyno from sysforeignkeys s, sysobjects k, "
        "sysobjects f, "
        "sysobjects r, syscolumns fc, syscolumns rc where s.constid = k.id and s.fkeyid = f.id and s.rkeyid "
        "= r.id "
        "and s.fkeyid = fc.id and s.rkeyid = rc.id and s.fkey = fc.colid and s.rkey = rc.colid",
        "FK_Cust|Line|Cust|Customer|Id|1\nFK_Line|Line|UpB|Line|B|1\nFK_Line|Line|Up|Line|A|2\n");
    row("references",
        "select o.name, keycnt, rkeyindid, fkey1, fkey2, fkey3, rkey1, rkey2, rkey3, rkey16 "
        "from sysreferences join sysobjects o on o.id = constid",
        "FK_Cust|1|1|3|0|0|1|0|0|0\nFK_Line|2|2|5|4|0|2|1|0|0\n");
    row("users", "select uid, name, hasdbaccess from sysusers where islogin = 1 order by uid",
        "1|dbo|1\n2|guest|0\n3|INFORMATION_SCHEMA|0\n5|robert|1\n");
    row("members",
        "select u.name, r.name from sysmembers join sysusers u on u.uid = memberuid join sysusers r on "
        "r.uid = groupuid order by 1",
        "dbo|db_owner\nrobert|db_datareader\n");
    row("types", "select count(*), sum(variable), min(name), max(xusertype) from systypes",
        "24|4|binary|256\n");
}

void TestCatalog::answers() {
    QFETCH(QString, query);
    QStringList answer = m_probe->rows(query);
    // Made-up names end in the object's number.
    answer.replaceInStrings(QRegularExpression(QStringLiteral("__[0-9A-F]{8}")), QString());
    QFETCH(QString, rows);
    QCOMPARE(answer, lines(qUtf8Printable(rows)));
}

void TestCatalog::columnsOfTypes_data() {
    // xtype, xusertype, usertype, type, length, prec, scale, status, isnullable
    const testsupport::TextTable<QString> row("declaration", "row");
    row("bit", "104|104|16|50|1|1|~|8|1");
    row("tinyint not null", "48|48|5|48|1|3|0|0|0");
    row("int identity", "56|56|7|56|4|10|0|128|0");
    row("int", "56|56|7|38|4|10|0|8|1");
    row("decimal(9,2)", "106|106|24|106|5|9|2|8|1");
    row("numeric(38,10)", "108|108|10|108|17|38|10|8|1");
    row("money", "60|60|11|110|8|19|4|8|1");
    row("smallmoney not null", "122|122|21|122|4|10|4|0|0");
    row("float(24)", "59|59|23|109|4|24|~|8|1");
    row("float(25)", "62|62|8|109|8|53|~|8|1");
    row("datetime", "61|61|12|111|8|23|3|8|1");
    row("char(7)", "175|175|1|39|7|7|~|8|1");
    row("varchar(8000)", "167|167|2|39|8000|8000|~|8|1");
    row("nvarchar(50)", "231|231|0|39|100|50|~|8|1");
    row("sysname", "231|256|18|39|256|128|~|0|0");
    row("text", "35|35|19|35|16|~|~|8|1");
    row("binary(3)", "173|173|3|37|3|3|~|8|1");
    row("timestamp", "189|189|80|45|8|8|~|0|0");
    row("uniqueidentifier", "36|36|0|37|16|16|~|8|1");
}

void TestCatalog::columnsOfTypes() {
    QFETCH(QString, declaration);
    WorldProbe probe(QStringLiteral("create table t (a %1)").arg(declaration));
    const QStringList rows = probe.rows(QStringLiteral(
        "select c.xtype, c.xusertype, c.usertype, c.type, length, prec, scale, c.status, isnullable "
        "from syscolumns c join sysobjects o on o.id = c.id where o.name = 't' and colid = 1"));
    QTEST(rows.value(0), "row");
    QCOMPARE(rows.size(), 1);
}

void TestCatalog::everyTableIsDescribed() {
    // System tables stand in their own catalog, and each has its columns.
    QCOMPARE(m_probe->rows(
                 QStringLiteral("select count(*) from sysobjects o where xtype in ('S', 'U') and not exists "
                                "(select 1 from syscolumns c where c.id = o.id)")),
             lines("0"));
    QCOMPARE(
        m_probe->rows(QStringLiteral("select name from sysobjects where type = 'S' and name like 'sysd%'"),
                      QStringLiteral("master")),
        lines("sysdatabases"));
    QCOMPARE(m_probe->rows(QStringLiteral("select name, dbid, cmptlevel from sysdatabases order by dbid"),
                           QStringLiteral("master")),
             lines("master|1|70\ntempdb|2|70\nmodel|3|70\nmsdb|4|70\ndistribution|5|70\nProbe|6|70"));
}

void TestCatalog::longCheckGoesOnInFurtherRows() {
    const QString text =
        QLatin1Char('(') + QStringLiteral("a <> 1 AND ").repeated(800) + QStringLiteral("a > 0)");
    WorldProbe probe(QStringLiteral("create table t (a int constraint c check %1)").arg(text));
    const QStringList rows = probe.rows(QStringLiteral("select colid, text from syscomments order by colid"));
    QCOMPARE(rows.size(), 3);
    QString joined;
    // The probe trims each row's text.
    for (const QString& row : rows)
        joined += row.mid(2).remove(QLatin1Char(' '));
    QCOMPARE(joined, QString(text).remove(QLatin1Char(' ')));
}

void TestCatalog::idsAreStable() {
    const QString query = QStringLiteral("select name, id, parent_obj from sysobjects order by id");
    WorldProbe again(QString::fromLatin1(shop));
    QCOMPARE(again.rows(query), m_probe->rows(query));
    QCOMPARE(m_probe->rows(QStringLiteral("select id from sysobjects group by id having count(*) > 1")),
             QStringList());
}

void TestCatalog::namesAreMadeUp() {
    WorldProbe probe(QStringLiteral(
        "create table titleauthor (title_id int check (title_id > 0), hire_date int default 1, "
        "unique (hire_date), foreign key (title_id) references titleauthor (hire_date))"));
    QStringList names =
        probe.rows(QStringLiteral("select name from sysobjects where parent_obj <> 0 order by name"));
    for (const QString& name : names)
        QVERIFY2(name.size() <= 30, qPrintable(name));
    names.replaceInStrings(QRegularExpression(QStringLiteral("[0-9A-F]{8}$")), QStringLiteral("#"));
    QCOMPARE(
        names,
        lines("CK__titleauth__title__#\nDF__titleauth__hire___#\nFK__titleauthor__#\nUQ__titleauthor__#"));
}

void TestCatalog::nullability_data() {
    const testsupport::Table<QString, QString> row("columns", "nullable");
    row("plain", "a int", "1");
    row("primary key of the column", "a int primary key", "0");
    row("primary key of the table", "a int, primary key (A)", "0");
    row("unique", "a int unique", "1");
    row("identity", "a int identity", "0");
}

void TestCatalog::nullability() {
    QFETCH(QString, columns);
    WorldProbe probe(QStringLiteral("create table t (%1)").arg(columns));
    const QString query = QStringLiteral("select isnullable from syscolumns where id > 100");
    QTEST(probe.rows(query).value(0), "nullable");
}

QTEST_GUILESS_MAIN(TestCatalog)
#include "test_catalog.moc"

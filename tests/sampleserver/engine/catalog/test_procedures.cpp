#include "sampleserver/engine/worldprobe.h"
#include "support/table.h"

#include <QTest>

namespace {

QStringList lines(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// The given columns of a procedure's rows.
QStringList chosen(const QStringList& answer, const QStringList& columns) {
    const QStringList names = answer.value(0).split(QLatin1Char('|'));
    QStringList rows;
    for (const QString& line : answer.mid(1)) {
        const QStringList values = line.split(QLatin1Char('|'));
        QStringList row;
        for (const QString& column : columns)
            row.append(values.value(names.indexOf(column)));
        rows.append(row.join(QLatin1Char('|')));
    }
    return rows;
}

}  // namespace

/// Stored procedures against a small schema.
class TestProcedures : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void columnsOfTypes_data();
    void columnsOfTypes();
    void findsTables_data();
    void findsTables();
    void namesItsColumns();
    void refusesBadArguments_data();
    void refusesBadArguments();
    void listsUsers();
    void listsTables();

  private:
    std::unique_ptr<WorldProbe> m_probe;
};

void TestProcedures::initTestCase() {
    m_probe = std::make_unique<WorldProbe>(QStringLiteral(
        "exec sp_addlogin 'ann' exec sp_grantdbaccess 'ann' exec sp_addlogin 'bob', '', 'Probe'\n"
        "exec sp_grantdbaccess 'bob', 'robert' exec sp_addrolemember 'db_owner', 'ann'\n"
        "exec sp_addrolemember 'db_ddladmin', 'ann'\n"
        "create table Orders (Id int identity primary key, Note nvarchar (50) default N'x')\n"
        "create table ann.Orders (Mine int)\ncreate table ann.Secret (S int)\n"
        "create table order_items (I int)\ncreate table orderXitems (X int)\n"
        "create table [100%] (P int)"));
}

void TestProcedures::columnsOfTypes_data() {
    // TYPE_NAME, DATA_TYPE, PRECISION, LENGTH, SCALE, RADIX, NULLABLE, SQL_DATA_TYPE, SQL_DATETIME_SUB,
    // CHAR_OCTET_LENGTH, SS_DATA_TYPE
    const testsupport::TextTable<QString, QString> row("declaration", "version2", "version3");
    const auto same = [&](const char* declaration, const char* inBoth) { row(declaration, inBoth, inBoth); };
    same("bit not null", "bit|-7|1|1|~|~|0|-7|~|~|50");
    same("tinyint", "tinyint|-6|3|1|0|10|1|-6|~|~|38");
    same("smallint", "smallint|5|5|2|0|10|1|5|~|~|38");
    same("int identity", "int identity|4|10|4|0|10|0|4|~|~|56");
    same("decimal(9,2)", "decimal|3|9|11|2|10|1|3|~|~|106");
    same("numeric(10) identity", "numeric() identity|2|10|12|0|10|0|2|~|~|63");
    same("money", "money|3|19|21|4|10|1|3|~|~|110");
    same("smallmoney", "smallmoney|3|10|12|4|10|1|3|~|~|110");
    row("float", "float|6|15|8|~|10|1|6|~|~|109", "float|6|53|8|~|2|1|6|~|~|109");
    row("real", "real|7|7|4|~|10|1|7|~|~|109", "real|7|24|4|~|2|1|7|~|~|109");
    row("datetime", "datetime|11|23|16|3|~|1|9|3|~|111", "datetime|93|23|16|3|~|1|9|3|~|111");
    row("smalldatetime", "smalldatetime|11|16|16|0|~|1|9|3|~|111", "smalldatetime|93|16|16|0|~|1|9|3|~|111");
    same("char(10)", "char|1|10|10|~|~|1|1|~|10|39");
    same("varchar(8000)", "varchar|12|8000|8000|~|~|1|12|~|8000|39");
    same("text", "text|-1|2147483647|2147483647|~|~|1|-1|~|2147483647|35");
    same("nchar", "nchar|-8|1|2|~|~|1|-8|~|2|39");
    same("nvarchar(50)", "nvarchar|-9|50|100|~|~|1|-9|~|100|39");
    same("sysname", "sysname|-9|128|256|~|~|0|-9|~|256|39");
    same("ntext", "ntext|-10|1073741823|2147483646|~|~|1|-10|~|2147483646|35");
    same("binary(4)", "binary|-2|4|4|~|~|1|-2|~|4|37");
    same("varbinary(16)", "varbinary|-3|16|16|~|~|1|-3|~|16|37");
    same("image", "image|-4|2147483647|2147483647|~|~|1|-4|~|2147483647|34");
    same("timestamp", "timestamp|-2|8|8|~|~|0|-2|~|8|45");
    same("uniqueidentifier", "uniqueidentifier|-11|36|16|~|~|1|-11|~|~|37");
}

void TestProcedures::columnsOfTypes() {
    QFETCH(QString, declaration);
    QFETCH(QString, version2);
    QFETCH(QString, version3);
    WorldProbe probe(QStringLiteral("create table t (a %1)").arg(declaration));
    const QStringList columns = QStringLiteral(
                                    "TYPE_NAME DATA_TYPE PRECISION LENGTH SCALE RADIX NULLABLE SQL_DATA_TYPE "
                                    "SQL_DATETIME_SUB CHAR_OCTET_LENGTH SS_DATA_TYPE")
                                    .split(QLatin1Char(' '));
    const QString procedure = QStringLiteral("sp_columns");
    QCOMPARE(chosen(probe.call(procedure, {QStringLiteral("t")}), columns), QStringList{version2});
    QCOMPARE(chosen(probe.call(procedure, {QStringLiteral("t"), QStringLiteral("@ODBCVer=3")}), columns),
             QStringList{version3});
}

void TestProcedures::findsTables_data() {
    const testsupport::Table<QString, QString, QString> row("arguments", "user", "rows");
    row("a table of dbo", "orders", "dbo", "dbo|Orders|Id|1\ndbo|Orders|Note|2");
    row("one's own table first", "orders", "ann", "ann|Orders|Mine|1");
    row("a table that only another has", "Secret", "dbo", "ann|Secret|S|1");
    row("with an owner", "Orders,ann", "dbo", "ann|Orders|Mine|1");
    row("an underscore makes a pattern", "order_items", "dbo", "dbo|order_items|I|1\ndbo|orderXitems|X|1");
    row("a pattern over owners", "Orders%", "dbo", "ann|Orders|Mine|1\ndbo|Orders|Id|1\ndbo|Orders|Note|2");
    row("an underscore in brackets", "order[_]items", "dbo", "dbo|order_items|I|1");
    row("one column", "@column_name=N%,@table_name=Orders", "dbo", "dbo|Orders|Note|2");
    row("nothing", "Nowhere", "dbo", "");
}

void TestProcedures::findsTables() {
    QFETCH(QString, arguments);
    QFETCH(QString, user);
    QFETCH(QString, rows);
    QCOMPARE(chosen(m_probe->call(QStringLiteral("SP_Columns"), arguments.split(u','), user),
                    {"TABLE_OWNER", "TABLE_NAME", "COLUMN_NAME", "ORDINAL_POSITION"}),
             lines(qUtf8Printable(rows)));
}

void TestProcedures::namesItsColumns() {
    const QStringList answer = m_probe->call(QStringLiteral("sp_columns"), {QStringLiteral("Orders")});
    QCOMPARE(
        answer.value(0),
        QStringLiteral(
            "TABLE_QUALIFIER|TABLE_OWNER|TABLE_NAME|COLUMN_NAME|DATA_TYPE|TYPE_NAME|PRECISION|LENGTH|SCALE|"
            "RADIX|NULLABLE|REMARKS|COLUMN_DEF|SQL_DATA_TYPE|SQL_DATETIME_SUB|CHAR_OCTET_LENGTH|"
            "ORDINAL_POSITION|IS_NULLABLE|SS_DATA_TYPE"));
    QCOMPARE(answer.value(2),
             QStringLiteral("Probe|dbo|Orders|Note|-9|nvarchar|50|100|~|~|1|~|(N'x')|-9|~|100|2|YES|39"));
}

void TestProcedures::refusesBadArguments_data() {
    const testsupport::Table<QString, QStringList, QString> row("procedure", "arguments", "number");
    const QString text = QStringLiteral("x");
    row("unknown procedure", "sp_unheard", {}, "2812");
    row("no table", "sp_columns", {}, "201");
    row("too many", "sp_helpuser", {text, text}, "8144");
    row("unknown parameter", "sp_columns", {QStringLiteral("@tabel=x")}, "8145");
    row("twice", "sp_columns", {text, QStringLiteral("@TABLE_NAME=x")}, "8143");
    row("other database", "sp_tables", {QStringLiteral("@table_qualifier=master")}, "15250");
    row("unknown user", "sp_helpuser", {text}, "15198");
}

void TestProcedures::refusesBadArguments() {
    QFETCH(QString, procedure);
    QFETCH(QStringList, arguments);
    QFETCH(QString, number);
    QCOMPARE(m_probe->call(procedure, arguments), QStringList{number});
}

void TestProcedures::listsUsers() {
    const QStringList columns{"UserName", "GroupName", "LoginName", "DefDBName", "UserID"};
    QCOMPARE(chosen(m_probe->call(QStringLiteral("sp_helpuser"), {}), columns),
             lines("dbo|db_owner|sa|master|1\nann|db_owner|ann|master|5\nann|db_ddladmin|ann|master|5\n"
                   "robert|public|bob|Probe|6"));
}

void TestProcedures::listsTables() {
    const QStringList columns{"TABLE_OWNER", "TABLE_NAME", "TABLE_TYPE"};
    QCOMPARE(
        chosen(m_probe->call(QStringLiteral("sp_tables"), {QStringLiteral("@table_type='TABLE','VIEW'")}),
               columns),
        lines("ann|Orders|TABLE\nann|Secret|TABLE\ndbo|100%|TABLE\ndbo|order_items|TABLE\ndbo|Orders|TABLE\n"
              "dbo|orderXitems|TABLE"));
}

QTEST_GUILESS_MAIN(TestProcedures)
#include "test_procedures.moc"

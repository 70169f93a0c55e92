#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "scriptedserver.h"
#include "support/table.h"

#include <QTest>

using namespace ado;

class RecordsetTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void init();
    void values_data();
    void values();
    void textsArriveWhole_data();
    void textsArriveWhole();
    void everyCharacterSurvives_data();
    void everyCharacterSurvives();
    void blocksMeetTheirEnds_data();
    void blocksMeetTheirEnds();
    void fieldsByName();
    void moves();
    void closedOnes();

  private:
    std::unique_ptr<ScriptedServer> m_server;
    Connection m_connection;
};

void RecordsetTest::initTestCase() {
    m_server = std::make_unique<ScriptedServer>();
}

void RecordsetTest::init() {
    m_connection = Connection();
    m_connection.Open(m_server->connectionString());
    m_server->takeBatches();
}

static QString textOf(const Field& field) {
    if (field.isNull()) return QStringLiteral("<null>");
    const auto failure = failureOf([&] { field.text(); });
    return failure ? QStringLiteral("<%1>").arg(failure->number()) : field.text().toString();
}

void RecordsetTest::values_data() {
    const testsupport::Table<QString> row("statement");
    row("in blocks", "types");
    row("in pieces", "types and texts");
}

void RecordsetTest::values() {
    struct Expected {
        QString first;
        QString second;
        FieldType type;
    };
    const std::vector<Expected> expected{
        {"True", "False", FieldType::Boolean},
        {"255", "0", FieldType::Integer},
        {"-2147483648", "7", FieldType::Integer},
        {"-1234567890123456789012345678.0987654321", "0.0000000005", FieldType::Exact},
        {"-922337203685477.5808", "0.0005", FieldType::Exact},
        {"-1234.5678", "0.0001", FieldType::Exact},
        {"0.1", "1E+300", FieldType::Float},
        {"0.1", "-2", FieldType::Real},
        {"2000-01-01 01:01:01.003", "1900-01-01 00:00:00", FieldType::DateTime},
        {"2000-01-01 01:01:00", "1900-01-01 00:00:00", FieldType::DateTime},
        {"ab   ", "     ", FieldType::Text},
        {QString(8000, u'\u20AC'), QString(), FieldType::Text},
        {"\U0001F600\u0416\u6F22", QString(), FieldType::Text},
        {"<13>", "<13>", FieldType::Binary},
        {"{03020100-0504-0706-0809-0A0B0C0D0EFF}", "{00000000-0000-0000-0000-000000000000}", FieldType::Guid},
        {"long \u20AC", QString(), FieldType::Text},
        {"long \U0001F600", QString(), FieldType::Text},
        {"<13>", "<13>", FieldType::Binary},
    };
    QFETCH(QString, statement);
    Recordset rows;
    rows.Open(statement, m_connection);
    QCOMPARE(rows.FieldCount(), statement == QStringLiteral("types") ? 15 : 18);
    for (int row = 0; row < 3; ++row, rows.MoveNext()) {
        for (int i = 0; i < rows.FieldCount(); ++i) {
            const Field& field = rows.Fields(i);
            const Expected& wanted = expected[static_cast<size_t>(i)];
            const QString text = row == 0   ? wanted.first
                                 : row == 1 ? wanted.second
                                            : QStringLiteral("<null>");
            QCOMPARE(textOf(field), text);
            QCOMPARE(field.Type(), wanted.type);
        }
        const qint32 number = numberOf([&] { rows.Fields(QStringLiteral("int")).toInteger(); });
        QCOMPARE(number, row == 2 ? 13 : 0);
    }
    QVERIFY(rows.Eof());
}

void RecordsetTest::textsArriveWhole_data() {
    QTest::addColumn<int>("times");
    // A first piece takes 2047 characters.
    for (const int times : {0, 1, 511, 512, 682, 683, 2000, 500'000})
        QTest::addRow("%d", times) << times;
}

void RecordsetTest::textsArriveWhole() {
    QFETCH(int, times);
    Recordset rows;
    rows.Open(QStringLiteral("long %1").arg(times), m_connection);
    QCOMPARE(rows.Fields(0).toInteger(), 1);
    QVERIFY(!rows.Fields(1).isNull());
    QVERIFY(rows.Fields(1).text() == longPiece.repeated(times));
    QVERIFY(rows.Fields(2).text() == longNarrowPiece.repeated(times));
    QCOMPARE(rows.Fields(3).toInteger(), 2);
    rows.MoveNext();
    QCOMPARE(rows.Fields(0).toInteger(), 3);
    QVERIFY(rows.Fields(1).isNull());
    QVERIFY(rows.Fields(2).isNull());
    QCOMPARE(rows.Fields(3).toInteger(), 4);
}

void RecordsetTest::everyCharacterSurvives_data() {
    QTest::addColumn<char32_t>("first");
    for (char32_t first = 0x20; first < 0x110000; first += 0x4000)
        QTest::addRow("from U+%04X", unsigned(first)) << first;
}

void RecordsetTest::everyCharacterSurvives() {
    QFETCH(char32_t, first);
    QString text;
    for (char32_t c = first; c < std::min<char32_t>(first + 0x4000, 0x110000); c += 7)
        if (!QChar::isSurrogate(c)) text += QString::fromUcs4(&c, 1);
    Recordset rows;
    rows.Open(QStringLiteral("echo ") + text, m_connection);
    QVERIFY(rows.Fields(0).text() == text);
}

void RecordsetTest::blocksMeetTheirEnds_data() {
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 2, 511, 512, 513, 1024, 5000})
        QTest::addRow("%d", count) << count;
}

void RecordsetTest::blocksMeetTheirEnds() {
    QFETCH(int, count);
    Recordset rows;
    rows.Open(QStringLiteral("count %1").arg(count), m_connection);
    int number = 0;
    for (; !rows.Eof(); rows.MoveNext(), ++number) {
        QCOMPARE(rows.Fields(0).toInteger(), number);
        QCOMPARE(textOf(rows.Fields(1)),
                 number % 7 ? QStringLiteral("row %1").arg(number) : QStringLiteral("<null>"));
    }
    QCOMPARE(number, count);
    QCOMPARE(rows.FieldCount(), 2);
    QCOMPARE(rows.Fields(0).Name(), QStringLiteral("n"));
    QCOMPARE(numberOf([&] { rows.Fields(0).text(); }), 3021);
}

void RecordsetTest::fieldsByName() {
    Recordset rows;
    rows.Open(QStringLiteral("named"), m_connection);
    QCOMPARE(rows.Fields(QStringLiteral("column_Name")).toInteger(), 2);
    QCOMPARE(rows.Fields(QStringLiteral("\u0441\u0422\u043E\u043B\u0431\u0435\u0446 \U0001F600")).toInteger(),
             3);
    QCOMPARE(rows.Fields(0).Name(), QString());
    QCOMPARE(numberOf([&] { rows.Fields(QStringLiteral("COLUMN_NAM")); }), 3265);
    QCOMPARE(numberOf([&] { rows.Fields(3); }), 3265);
    QCOMPARE(numberOf([&] { rows.Fields(-1); }), 3265);
    rows.MoveNext();
    QCOMPARE(numberOf([&] { rows.Fields(QStringLiteral("COLUMN_NAME")); }), 3021);
}

void RecordsetTest::moves() {
    Recordset rows;
    rows.Open(QStringLiteral("count 2"), m_connection);
    rows.MoveFirst();
    QCOMPARE(rows.Fields(0).toInteger(), 0);
    rows.MoveNext();
    QCOMPARE(numberOf([&] { rows.MoveFirst(); }), 3219);
    QCOMPARE(rows.Fields(0).toInteger(), 1);
    rows.MoveNext();
    QVERIFY(rows.Eof());
    QCOMPARE(numberOf([&] { rows.MoveNext(); }), 3021);
    rows.Close();
    QCOMPARE(numberOf([&] { rows.MoveFirst(); }), 3704);
    Recordset none;
    none.Open(QStringLiteral("count 0"), m_connection);
    QCOMPARE(numberOf([&] { none.MoveFirst(); }), 3021);
}

void RecordsetTest::closedOnes() {
    Recordset rows;
    QCOMPARE(numberOf([&] { rows.Eof(); }), 3704);
    QCOMPARE(numberOf([&] { rows.MoveNext(); }), 3704);
    QCOMPARE(numberOf([&] { rows.Open(QStringLiteral("count 1"), Connection()); }), 3709);
    rows.Open(QStringLiteral("count 1"), m_connection);
    QCOMPARE(numberOf([&] { rows.Open(QStringLiteral("count 1"), m_connection); }), 3705);
    QCOMPARE(numberOf([&] { rows.setMaxRecords(1); }), 3705);
    m_connection.Close();
    QVERIFY(!rows.isOpen());
    QCOMPARE(numberOf([&] { rows.MoveNext(); }), 3704);
    rows.Close();
}

QTEST_GUILESS_MAIN(RecordsetTest)
#include "test_recordset.moc"

#include "engine/syntax/lexer.h"
#include "engine/values/sqlerror.h"
#include "support/table.h"

#include <QTest>

using namespace engine;

class LexerTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void tokens_data();
    void tokens();
    void refusals_data();
    void refusals();
    void linesAndOffsets();
    void batches();
};

namespace {

QString shown(const Token& token) {
    static const QStringList kinds{QStringLiteral("name"),    QStringLiteral("number"),
                                   QStringLiteral("hex"),     QStringLiteral("money"),
                                   QStringLiteral("string"),  QStringLiteral("symbol"),
                                   QStringLiteral("variable")};
    QString kind = kinds[static_cast<int>(token.kind)];
    if (token.quoted) kind.prepend(u'q');
    if (token.national) kind.prepend(u'n');
    return kind + u':' + token.text;
}

}  // namespace

void LexerTest::tokens_data() {
    const testsupport::TextTable<QString> row("batch", "expected");
    row("", "");
    row("select a.b", "name:select,name:a,symbol:.,name:b");
    row("[a]]b] \"c\"\"d\"", "qname:a]b,qname:c\"d");
    row("'it''s' N'\xC3\xA9' n'x'", "string:it's,nstring:\xC3\xA9,nstring:x");
    row("1 1.5 .5 1. 1e3 1.5E-3 1e",
        "number:1,number:1.5,number:.5,number:1.,number:1e3,number:1.5E-3,number:1,name:e");
    row("0x 0xAf 0X1", "hex:0x,hex:0xAf,hex:0X1");
    row("$1.50 $-2 $", "money:1.50,money:-2,money:");
    row("a<=b!=c<>d!<e!>f",
        "name:a,symbol:<=,name:b,symbol:!=,name:c,symbol:<>,name:d,symbol:!<,name:e,symbol:!>,name:f");
    row("@x @@rowcount #t a$1_", "variable:@x,variable:@@rowcount,name:#t,name:a$1_");
    row("a -- b\nc /* d /* e */ f */ g", "name:a,name:c,name:g");
    row("a-b--", "name:a,symbol:-,name:b");
    row("12abc", "number:12,name:abc");
    row("db..t", "name:db,symbol:.,symbol:.,name:t");
}

void LexerTest::tokens() {
    QFETCH(QString, batch);
    QFETCH(QString, expected);
    const auto tokens = tokenize(batch);
    QStringList texts;
    for (size_t i = 0; i + 1 < tokens.size(); ++i)
        texts += shown(tokens[i]);
    QCOMPARE(texts.join(u','), expected);
    QVERIFY(tokens.back().kind == TokenKind::End);
}

void LexerTest::refusals_data() {
    const testsupport::Table<QString, int, int> row("batch", "number", "line");
    row("string", "select\n'abc", 105, 2);
    row("odd quotes", "'a'''b'", 105, 1);
    row("bracket", "[a", 105, 1);
    row("comment", "a\n\n/* b /* c */", 113, 3);
    row("stray", "a ? b", 102, 1);
    row("brace", "\n{d '2000-01-01'}", 102, 2);
}

void LexerTest::refusals() {
    QFETCH(QString, batch);
    QFETCH(int, number);
    QFETCH(int, line);
    try {
        tokenize(batch);
        QFAIL("no error");
    } catch (const SqlError& error) {
        QCOMPARE(error.message().number, number);
        QCOMPARE(error.message().line, line);
    }
}

void LexerTest::linesAndOffsets() {
    const QString batch = QStringLiteral("a /* x\n */ [b\nc]\r\n  'd'");
    const auto tokens = tokenize(batch);
    QCOMPARE(tokens.size(), size_t(4));
    QCOMPARE(tokens[1].line, 2);
    QCOMPARE(batch.mid(tokens[1].begin, tokens[1].end - tokens[1].begin), QStringLiteral("[b\nc]"));
    QCOMPARE(tokens[2].line, 4);
    QCOMPARE(batch.mid(tokens[2].begin, tokens[2].end - tokens[2].begin), QStringLiteral("'d'"));
}

void LexerTest::batches() {
    const auto batches = splitBatches(QStringLiteral("a\r\n Go \r\nGO\n\nb\ngoes\ngo\n"));
    QCOMPARE(batches.size(), size_t(2));
    QCOMPARE(batches[0].firstLine, 1);
    QCOMPARE(batches[0].text.trimmed(), QStringLiteral("a"));
    QCOMPARE(batches[1].firstLine, 4);
    QCOMPARE(batches[1].text.trimmed(), QStringLiteral("b\ngoes"));
}

QTEST_APPLESS_MAIN(LexerTest)
#include "test_lexer.moc"

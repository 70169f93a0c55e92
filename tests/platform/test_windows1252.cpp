#include "platform/windows1252.h"
#include "support/table.h"

#include <QTest>

class Windows1252Test : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void texts_data();
    void texts();
};

void Windows1252Test::texts_data() {
    const testsupport::Table<QString, QByteArray> row("text", "bytes");
    row("empty", "", QByteArray());
    row("plain", QStringLiteral("a\t~\x7f\r\n"), QByteArray("a\t~\x7f\r\n"));
    row("Latin-1", "\u00a0\u00e9\u00ff", QByteArray("\xa0\xe9\xff"));
    row("0x80 to 0x8F",
        "\u20ac\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160"
        "\u2039\u0152\u017d",
        QByteArray("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8a\x8b\x8c\x8e"));
    row("0x90 to 0x9F",
        "\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161"
        "\u203a\u0153\u017e\u0178",
        QByteArray("\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9a\x9b\x9c\x9e\x9f"));
    row("outside", "\u0100\u0416\u20ab\uffff", QByteArray("????"));
    row("control characters of Latin-1", "\u0080\u0081\u009f", QByteArray("???"));
    row("surrogate pairs", "a\U0001F600\U0001F600b", QByteArray("a??b"));
    const QChar high(u'\xd83d');
    const QChar low(u'\xde00');
    row("half pairs", QString(high) + QStringLiteral("x") + low + high, QByteArray("?x??"));
}

void Windows1252Test::texts() {
    QFETCH(QString, text);
    QTEST(platform::toWindows1252(text), "bytes");
}

QTEST_GUILESS_MAIN(Windows1252Test)
#include "test_windows1252.moc"

#include "platform/desktop/colours.h"
#include "platform/desktop/contrast.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>

#include <memory>

using desktop::contrastOf;

class ContrastTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void contrastIsMeasured();
    void textsStandOut_data();
    void textsStandOut();
};

/// Against figures that WCAG's own examples have.
void ContrastTest::contrastIsMeasured() {
    QCOMPARE(qRound(contrastOf(Qt::black, Qt::white) * 100), 2100);
    QCOMPARE(qRound(contrastOf(QColor(0x76, 0x76, 0x76), Qt::white) * 100), 454);
    QCOMPARE(qRound(contrastOf(Qt::red, Qt::red)), 1);
}

void ContrastTest::textsStandOut_data() {
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("ground");
    const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette dark(QColor(53, 53, 53), QColor(35, 35, 35));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::AlternateBase, QColor(44, 44, 44));
    dark.setColor(QPalette::Text, QColor(225, 225, 225));
    dark.setColor(QPalette::PlaceholderText, QColor(225, 225, 225, 128));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    dark.setColor(QPalette::HighlightedText, Qt::black);
    dark.setColor(QPalette::Link, QColor(42, 130, 218));
    using P = QPalette;
    for (const auto& [name, palette] : {std::pair{"light", style->standardPalette()}, {"dark", dark}}) {
        for (const P::ColorGroup group : {P::Active, P::Inactive}) {
            QPalette seen = desktop::legible(palette);
            seen.setCurrentColorGroup(group);
            const auto row = [&](const char* what, const QColor& text, P::ColorRole ground) {
                QTest::addRow("%s, %s, group %d", name, what, group) << text << seen.color(ground);
            };
            row("text", seen.color(P::Text), P::Base);
            row("every other row", seen.color(P::Text), P::AlternateBase);
            row("marker", desktop::colours::faintText(seen), P::Base);
            row("marker in every other row", desktop::colours::faintText(seen), P::AlternateBase);
            row("invitation", seen.color(P::PlaceholderText), P::Base);
            row("selection", seen.color(P::HighlightedText), P::Highlight);
            row("link", seen.color(P::Link), P::Base);
            row("label", seen.color(P::WindowText), P::Window);
            row("button", seen.color(P::ButtonText), P::Button);
            desktop::colours::paleWithoutFocus(seen);
            row("pale selection", seen.color(P::HighlightedText), P::Highlight);
        }
    }
}

void ContrastTest::textsStandOut() {
    QFETCH(QColor, text);
    QFETCH(QColor, ground);
    QCOMPARE(text.alpha(), 255);
    const double contrast = contrastOf(text, ground);
    QVERIFY2(contrast >= desktop::LeastContrast, qPrintable(QString::number(contrast)));
}

QTEST_MAIN(ContrastTest)
#include "test_contrast.moc"

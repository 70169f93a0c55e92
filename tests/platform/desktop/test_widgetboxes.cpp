#include "platform/desktop/filedialog.h"
#include "platform/desktop/messagebox.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/widgetboxes.h"
#include "support/table.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace desktop;

class WidgetBoxesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { installWidgetBoxes(); }
    void buttons_data();
    void buttons();
    void textToTheLetter();
    void sizes_data();
    void sizes();
    void windowGoesWhileABoxIsOpen();
    void saveDialog();

  private:
    // Runs when a box of this kind is open.
    template <typename Box>
    void whenOpen(std::function<void(Box*)> action) {
        QTimer::singleShot(0, this, [action] {
            auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
            QVERIFY(box);
            const QPointer<Box> open(box);
            action(box);
            if (open) open->close();
        });
    }
};

void WidgetBoxesTest::buttons_data() {
    const testsupport::Table<MsgBoxButtons, MsgBoxResult, int, MsgBoxResult> row("kind", "defaultButton",
                                                                                 "key", "result");
    const auto ok = MsgBoxResult::Ok;
    const auto cancel = MsgBoxResult::Cancel;
    row("OK, Enter", MsgBoxButtons::Ok, ok, Qt::Key_Return, ok);
    row("OK, Escape", MsgBoxButtons::Ok, ok, Qt::Key_Escape, ok);
    row("OK, closed", MsgBoxButtons::Ok, ok, 0, ok);
    row("both, Enter", MsgBoxButtons::OkCancel, ok, Qt::Key_Return, ok);
    row("both, Enter on Cancel", MsgBoxButtons::OkCancel, cancel, Qt::Key_Return, cancel);
    row("both, Escape", MsgBoxButtons::OkCancel, ok, Qt::Key_Escape, cancel);
    row("both, closed", MsgBoxButtons::OkCancel, ok, 0, cancel);
}

void WidgetBoxesTest::buttons() {
    QFETCH(MsgBoxButtons, kind);
    QFETCH(MsgBoxResult, defaultButton);
    QFETCH(int, key);
    whenOpen<MessageBox>([key](MessageBox* box) {
        if (key == 0) {
            box->close();
        } else {
            QTest::keyClick(box, Qt::Key(key));
        }
    });
    const MsgBoxResult result =
        MsgBox(QStringLiteral("Text"), MsgBoxIcon::Question, QStringLiteral("Title"), kind, defaultButton);
    QTEST(result, "result");
}

void WidgetBoxesTest::textToTheLetter() {
    const QString text = QStringLiteral("<b>Not bold</b> & so on\u202e\r\n\r\n  Second     \r\n\r\n");
    whenOpen<MessageBox>([&](MessageBox* box) {
        QCOMPARE(box->windowTitle(), QStringLiteral("Title"));
        QCOMPARE(box->text(), text);
        auto* shown = box->findChild<QPlainTextEdit*>();
        QCOMPARE(shown->toPlainText(), QStringLiteral("<b>Not bold</b> & so on⟨U+202E⟩\n\n  Second"));
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(shown);
        QCOMPARE(told->role(), QAccessible::StaticText);
        QCOMPARE(told->text(QAccessible::Name), text);
        QTest::keySequence(box, QKeySequence::Copy);
    });
    MsgBox(text, MsgBoxIcon::Exclamation, QStringLiteral("Title"));
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
}

void WidgetBoxesTest::sizes_data() {
    const testsupport::Table<QString, bool> row("text", "scrolls");
    row("short", QStringLiteral("Text"), false);
    row("blanks and lines at the end", QStringLiteral("Text  ") + QString(500, u'\n'), false);
    row("many lines", QStringLiteral("line\r\n").repeated(10'000) + u'!', true);
    row("one line", QString(1'000'000, u'W'), true);
}

/// Whatever the text, the box and its button are on the screen, and the whole text is within reach.
void WidgetBoxesTest::sizes() {
    QFETCH(QString, text);
    QFETCH(bool, scrolls);
    whenOpen<MessageBox>([&](MessageBox* box) {
        const QScrollBar& bar = *box->findChild<QPlainTextEdit*>()->verticalScrollBar();
        QVERIFY(box->screen()->availableGeometry().contains(box->frameGeometry()));
        QVERIFY(box->rect().contains(box->findChild<QDialogButtonBox*>()->geometry()));
        QCOMPARE(bar.maximum() > 0, scrolls);
        QTest::keyClick(box->focusWidget(), Qt::Key_PageDown);
        QCOMPARE(bar.value() > 0, scrolls);
        QTest::keyClick(box->focusWidget(), Qt::Key_Return);
    });
    QCOMPARE(MsgBox(text, MsgBoxIcon::Exclamation), MsgBoxResult::Ok);
}

void WidgetBoxesTest::windowGoesWhileABoxIsOpen() {
    auto window = std::make_unique<QWidget>();
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    whenOpen<MessageBox>([&](MessageBox* box) {
        QCOMPARE(box->parentWidget(), window.get());
        window.reset();
    });
    QCOMPARE(MsgBox(QStringLiteral("Text"), MsgBoxIcon::None, {}, MsgBoxButtons::OkCancel),
             MsgBoxResult::Cancel);
}

void WidgetBoxesTest::saveDialog() {
    QTemporaryDir folder;
    const QString existing = folder.filePath(QStringLiteral("existing.txt"));
    QFile file(existing);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const SaveFileRequest request{QStringLiteral("Export"), folder.filePath(QStringLiteral("suggested")),
                                  QStringLiteral("Text files (*.txt);;All files (*)")};
    const auto answer = [&](const std::function<void(QFileDialog*)>& action) {
        whenOpen<QFileDialog>(action);
        return askSaveFileName(request);
    };
    const auto type = [](QFileDialog* dialog, const QString& name) {
        dialog->findChild<QLineEdit*>()->setText(name);
        QMetaObject::invokeMethod(dialog, "accept");
    };
    // No second question about a file that exists: the dialog is gone at once.
    QCOMPARE(answer([&](QFileDialog* dialog) { type(dialog, existing); }), existing);
    QCOMPARE(answer([&](QFileDialog* dialog) { type(dialog, folder.filePath(QStringLiteral("new"))); }),
             folder.filePath(QStringLiteral("new.txt")));
    QCOMPARE(answer([&](QFileDialog* dialog) {
                 dialog->selectNameFilter(QStringLiteral("All files (*)"));
                 Q_EMIT dialog->filterSelected(QStringLiteral("All files (*)"));
                 type(dialog, folder.filePath(QStringLiteral("new")));
             }),
             folder.filePath(QStringLiteral("new")));
    QCOMPARE(answer([](QFileDialog* dialog) { dialog->reject(); }), std::nullopt);
}

QTEST_MAIN(WidgetBoxesTest)
#include "test_widgetboxes.moc"

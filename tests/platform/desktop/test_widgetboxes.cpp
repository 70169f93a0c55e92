#include "platform/desktop/filedialog.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/widgetboxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
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
    void showsTheTextAsItStands();
    void windowGoesWhileABoxIsOpen();
    void saveDialog();

  private:
    // Runs when a box of this kind is open.
    template <typename Box>
    void whenOpen(std::function<void(Box*)> action) {
        QTimer::singleShot(0, this, [action] {
            auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
            QVERIFY(box);
            action(box);
        });
    }
};

void WidgetBoxesTest::buttons_data() {
    QTest::addColumn<MsgBoxButtons>("kind");
    QTest::addColumn<MsgBoxResult>("defaultButton");
    QTest::addColumn<int>("key");
    QTest::addColumn<MsgBoxResult>("result");
    const auto ok = MsgBoxResult::Ok;
    const auto cancel = MsgBoxResult::Cancel;
    QTest::newRow("OK, Enter") << MsgBoxButtons::Ok << ok << int(Qt::Key_Return) << ok;
    QTest::newRow("OK, Escape") << MsgBoxButtons::Ok << ok << int(Qt::Key_Escape) << ok;
    QTest::newRow("OK, closed") << MsgBoxButtons::Ok << ok << 0 << ok;
    QTest::newRow("both, Enter") << MsgBoxButtons::OkCancel << ok << int(Qt::Key_Return) << ok;
    QTest::newRow("both, Enter on Cancel")
        << MsgBoxButtons::OkCancel << cancel << int(Qt::Key_Return) << cancel;
    QTest::newRow("both, Escape") << MsgBoxButtons::OkCancel << ok << int(Qt::Key_Escape) << cancel;
    QTest::newRow("both, closed") << MsgBoxButtons::OkCancel << ok << 0 << cancel;
}

void WidgetBoxesTest::buttons() {
    QFETCH(MsgBoxButtons, kind);
    QFETCH(MsgBoxResult, defaultButton);
    QFETCH(int, key);
    whenOpen<QMessageBox>([key](QMessageBox* box) {
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

void WidgetBoxesTest::showsTheTextAsItStands() {
    QString shown;
    QString title;
    whenOpen<QMessageBox>([&](QMessageBox* box) {
        shown = box->text();
        title = box->windowTitle();
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(box->icon(), QMessageBox::Warning);
        box->accept();
    });
    MsgBox(QStringLiteral("<b>Not bold</b> & so on\r\n\r\n  Second     \r\n\r\n"), MsgBoxIcon::Exclamation,
           QStringLiteral("Title"));
    QCOMPARE(shown, QStringLiteral("<b>Not bold</b> & so on\n\n  Second"));
    QCOMPARE(title, QStringLiteral("Title"));
}

void WidgetBoxesTest::windowGoesWhileABoxIsOpen() {
    auto window = std::make_unique<QWidget>();
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    whenOpen<QMessageBox>([&](QMessageBox* box) {
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

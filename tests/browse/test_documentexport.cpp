#include "browse/documentpanes.h"
#include "desk.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/titlelabel.h"
#include "support/answers.h"
#include "support/table.h"

#include <QAction>
#include <QFile>
#include <QTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using testsupport::Answers;
using Rows = QList<QStringList>;

namespace {

/// A document that shows a table, and a folder of its own to export to.
struct Export : Desk {
    explicit Export(const Rows& rows = {}) {
        document->setWindowTitle(QStringLiteral("Connected to db1"));
        document->panes().lblTitle(0).setText(QStringLiteral("Database: Sales"));
        document->panes().lblTitle(1).setText(QStringLiteral("Table Definition: Orders"));
        controls::ListItems& list = document->lvTblDefItems();
        for (const QStringList& row : rows) {
            const int item = list.addItem(row.value(0));
            for (int column = 1; column < row.size(); ++column) {
                list.setSubItem(item, column, row[column]);
            }
        }
    }
    void run(qint16 columnCount = 1) { run(columnCount, path); }
    void run(qint16 columnCount, const QString& fileName) {
        document->ExportListViewItems(document->lvTblDefItems(), columnCount, fileName);
    }
    void write(const QByteArray& bytes) const {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QByteArray written() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
    }

    QString path = folder.filePath(QStringLiteral("out.txt"));
};

/// Takes the rights of root away for the length of a scope.
class AsNobody {
  public:
#ifdef Q_OS_UNIX
    AsNobody() : m_was(geteuid()) {
        if (m_was == 0 && seteuid(65534) != 0) qFatal("cannot become nobody");
    }
    ~AsNobody() {
        if (seteuid(m_was) != 0) qFatal("cannot come back");
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

  private:
    uid_t m_was;
#endif
};

void expectFailure(Answers& answers, int number) {
    const QString text = answers.takeBox().text;
    QVERIFY2(text.startsWith(QStringLiteral("Error: %1.").arg(number)), qUtf8Printable(text));
    QVERIFY2(text.contains(QStringLiteral("subroutine ExportListViewItems of module frmDocument.")),
             qUtf8Printable(text));
}

QByteArray head(const QByteArray& server = "db1") {
    return "Server: " + server +
           "\r\nDatabase: Sales\r\nTable Definition: Orders\r\n"
           "-------------------------------\r\n \r\n";
}

}  // namespace

class TestDocumentExport : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void writes_data();
    void writes();
    void refusesShortCaption();
    void asksBeforeReplacing_data();
    void asksBeforeReplacing();
    void documentGoesWhileAsked();
    void reportsFailedWriting_data();
    void reportsFailedWriting();
    void reportsMissingPermission();
    void savesRows_data();
    void savesRows();
};

void TestDocumentExport::writes_data() {
    const testsupport::Table<QString, int, Rows, QByteArray> row("caption", "columnCount", "rows",
                                                                 "expected");

    const QString connected = QStringLiteral("Connected to db1");
    const Rows rows{
        {QStringLiteral("Id"), QStringLiteral("int"), QStringLiteral("No"), QString()},
        {QStringLiteral("a, b"), QStringLiteral("char (3)"), QStringLiteral("Yes"), QStringLiteral("Yes")},
        {QStringLiteral("alone")}};
    row("names", connected, 1, rows, head() + "Id\r\na, b\r\nalone\r\n");
    row("definitions", connected, 4, rows,
        head() + "Id, int, No, \r\na, b, char (3), Yes, Yes\r\nalone, , , \r\n");
    row("no items", connected, 4, Rows(), head());
    row("data source", "Connected to X (through ODBC)", 1, Rows(), head("X (through ODBC)"));
    row("not connected", "<No Connection>", 1, Rows(), head("n>"));
    row("nothing but the prefix", "Connected to ", 1, Rows(), head(""));
    row("code page", "Connected to \u0160\u20ac", 1,
        {{QStringLiteral("\u201cGr\u00fc\u00dfe\u201d \u0416\U0001F600")}},
        head("\x8a\x80") + "\x93Gr\xfc\xdf" + "e\x94 ??\r\n");
}

void TestDocumentExport::writes() {
    QFETCH(QString, caption);
    QFETCH(int, columnCount);
    QFETCH(Rows, rows);
    const Answers answers;
    Export it(rows);
    it.document->setWindowTitle(caption);
    it.run(static_cast<qint16>(columnCount));
    QTEST(it.written(), "expected");
}

void TestDocumentExport::refusesShortCaption() {
    Answers answers;
    answers.press(desktop::MsgBoxResult::Ok);
    Export it({{QStringLiteral("Id")}});
    it.write("before");
    it.document->setWindowTitle(QStringLiteral("Connected to"));
    it.run();
    answers.takeBox();
    expectFailure(answers, 5);
    QCOMPARE(it.written(), QByteArray());
}

void TestDocumentExport::asksBeforeReplacing_data() {
    const testsupport::Table<desktop::MsgBoxResult, QByteArray> row("answer", "expected");
    row("OK", desktop::MsgBoxResult::Ok, head());
    row("Cancel", desktop::MsgBoxResult::Cancel, QByteArray(1000, 'x'));
}

void TestDocumentExport::asksBeforeReplacing() {
    QFETCH(desktop::MsgBoxResult, answer);
    Answers answers;
    answers.press(answer);
    Export it;
    it.write(QByteArray(1000, 'x'));
    it.run();
    QTEST(it.written(), "expected");

    const desktop::MsgBoxRequest box = answers.takeBox();
    QCOMPARE(box.text, it.path + QStringLiteral(" already exists.  \r\nDo you want to replace it?     \r\n"));
    QCOMPARE(box.title, QStringLiteral("Tablewright"));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QCOMPARE(box.buttons, desktop::MsgBoxButtons::OkCancel);
    QCOMPARE(box.defaultButton, desktop::MsgBoxResult::Cancel);
}

void TestDocumentExport::documentGoesWhileAsked() {
    Answers answers;
    answers.press(desktop::MsgBoxResult::Ok);
    Export it;
    it.write("before");
    answers.whileOpen([&](const auto&) { it.document.reset(); });
    it.run();
    answers.takeBox();
    QCOMPARE(it.written(), QByteArray("before"));
}

void TestDocumentExport::reportsFailedWriting_data() {
    const testsupport::Table<QString, int> row("target", "number");
    row("missing folder", "missing/out.txt", 76);
    row("below a file", "file/out.txt", 76);
    row("a folder", ".", 75);
    row("full disk", "/dev/full", 61);
}

void TestDocumentExport::reportsFailedWriting() {
    QFETCH(QString, target);
    QFETCH(int, number);
    const bool device = target.startsWith(u'/');
    if (device && !QFile::exists(target)) QSKIP("this system has no such device");
    Answers answers;
    Export it({{QStringLiteral("Id")}});
    QFile file(it.folder.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    if (device) answers.press(desktop::MsgBoxResult::Ok);
    it.run(1, device ? target : it.folder.filePath(target));
    if (device) answers.takeBox();
    expectFailure(answers, number);
}

void TestDocumentExport::reportsMissingPermission() {
#ifdef Q_OS_UNIX
    Answers answers;
    answers.press(desktop::MsgBoxResult::Ok);
    Export it;
    it.write("before");
    QVERIFY(QFile::setPermissions(it.path, QFile::ReadOwner | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(it.folder.path(), QFile::Permissions(0x5055)));
    {
        const AsNobody nobody;
        it.run();
        it.run(1, it.folder.filePath(QStringLiteral("new.txt")));
    }
    QVERIFY(QFile::setPermissions(it.folder.path(), QFile::Permissions(0x7000)));
    answers.takeBox();
    expectFailure(answers, 70);
    expectFailure(answers, 70);
    QCOMPARE(it.written(), QByteArray("before"));
#else
    QSKIP("needs file modes");
#endif
}

void TestDocumentExport::savesRows_data() {
    const testsupport::Table<QString, QByteArray> row("file", "expected");
    row("csv", "out.csv", "a,\"b,c\"\r\n<NULL>,\r\n,\"x\"\"y\nz\"\r\n");
    row("json", "out.JSON", R"({"columns":["a","b,c"],"rows":[
["<NULL>",null],
["","x\"y\nz"]]}
)");
}

/// A null is none of the texts that look like it.
void TestDocumentExport::savesRows() {
    QFETCH(const QString, file);
    Answers answers;
    Export it;
    it.path = it.folder.filePath(file);
    controls::ListItems& list = it.document->lvTblDataItems();
    list.clearHeaders();
    list.addHeader(QStringLiteral("a"));
    list.addHeader(QStringLiteral("b,c"));
    list.setMarker(list.addItem(u"<NULL>"), 1, u"<NULL>");
    list.setSubItem(list.addItem(u""), 1, u"x\"y\nz");
    list.notifyViews();
    answers.saveAs(it.path);
    for (QAction* action : it.document->lvTblData().actions())
        if (action->text() == QStringLiteral("Sav&e As...")) action->trigger();
    QCOMPARE(answers.takeSaveFile().suggestedName, QStringLiteral("Orders"));
    QTEST(it.written(), "expected");
}

QTEST_MAIN(TestDocumentExport)
#include "test_documentexport.moc"

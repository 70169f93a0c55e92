#include "browse/documentpanes.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/titlelabel.h"
#include "platform/runtimeerror.h"
#include "shell/framefixture.h"
#include "support/answers.h"
#include "support/table.h"

#include <QFile>
#include <QMenu>
#include <QTest>

using testsupport::Answers;

namespace {

/// A connected document that shows the definition of a table.
struct Shown : FrameFixture {
    explicit Shown(const QString& table = QStringLiteral("Orders")) {
        start();
        tw::frmDocument& document = open(QStringLiteral("alpha"));
        document.panes().lblTitle(0).setText(QStringLiteral("Database: Sales"));
        document.panes().lblTitle(1).setText(QStringLiteral("Table Definition: ") + table);
        controls::ListItems& list = document.lvTblDefItems();
        const int item = list.addItem(u"Id");
        list.setSubItem(item, 1, u"int");
        list.setSubItem(item, 2, u"No");
    }
    QByteArray lastLine() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n').value(5) : QByteArray("<no file>");
    }
    QString path = folder.filePath(QStringLiteral("out.txt"));
};

}  // namespace

class FrmMainExportTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void exports_data();
    void exports();
    void documentGoesWhileAsked();
    void suggestsFileName_data();
    void suggestsFileName();
    void needsDocument();
};

void FrmMainExportTest::exports_data() {
    const testsupport::Table<QString, bool, QString, QByteArray> row("item", "cancelled", "suggested",
                                                                     "line");
    row("names", "mnuPop2ExportColNames", false, "Orders column names.txt", QByteArray("Id\r"));
    row("definitions", "mnuPop2ExportColDef", false, "Orders column definitions.txt",
        QByteArray("Id, int, No, \r"));
    row("cancelled", "mnuPop2ExportColDef", true, "Orders column definitions.txt", QByteArray("<no file>"));
}

/// From the right click on the list to the written file.
void FrmMainExportTest::exports() {
    QFETCH(QString, item);
    QFETCH(bool, cancelled);
    Answers answers;
    Shown it;
    if (!cancelled) answers.saveAs(it.path);
    QTest::mouseClick(it.activeDocument().lvTblDef().viewport(), Qt::RightButton, {}, {20, 5});
    auto* menu = it.frame.findChild<QMenu*>(QStringLiteral("mnuPop2"));
    QTRY_VERIFY(menu->isVisible());
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(it.frame.findChild<QAction*>(item)).center());
    const desktop::SaveFileRequest request = answers.takeSaveFile();
    QTEST(request.suggestedName, "suggested");
    QCOMPARE(request.objectName, QStringLiteral("dlgCommonDialog"));
    QTEST(it.lastLine(), "line");
    // The next one begins in the same folder.
    it.frame.mnuPop2ExportColNames_Click();
    const QString names = QStringLiteral("Orders column names.txt");
    QCOMPARE(answers.takeSaveFile().suggestedName, cancelled ? names : it.folder.filePath(names));
}

void FrmMainExportTest::documentGoesWhileAsked() {
    Answers answers;
    Shown it;
    const auto previous = desktop::setSaveFileAnswerer([&](const auto&) {
        delete it.frame.activeChild();
        return it.path;
    });
    it.frame.mnuPop2ExportColNames_Click();
    desktop::setSaveFileAnswerer(previous);
    QVERIFY(!QFile::exists(it.path));
}

void FrmMainExportTest::suggestsFileName_data() {
    const testsupport::Table<QString, QString> row("table", "name");
    row("signs no file may have", "a/b\\c:d*e?f\"g<h>i|j\tk", "a_b_c_d_e_f_g_h_i_j_k column names.txt");
    row("long", QString(128, u'\u20ac'), QString(60, u'\u20ac') + " column names.txt");
}

void FrmMainExportTest::suggestsFileName() {
    QFETCH(QString, table);
    Answers answers;
    Shown it(table);
    it.frame.mnuPop2ExportColNames_Click();
    QTEST(answers.takeSaveFile().suggestedName, "name");
}

void FrmMainExportTest::needsDocument() {
    FrameFixture fixture;
    QVERIFY_EXCEPTION_THROWN(fixture.frame.mnuPop2ExportColNames_Click(), platform::RuntimeError);
}

QTEST_MAIN(FrmMainExportTest)
#include "test_frmmainexport.moc"

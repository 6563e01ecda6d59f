// Complex cells in the grid: the grid shows their values joined, the text pane every item (the
// whole history of a version history), and an attachment cell's menu saves its files under
// their stored names.

#include "guiTestSupport.h"

#include "app/models/TableDataModel.h"
#include "app/widgets/AttachmentMenu.h"
#include "app/widgets/DataView.h"
#include "browser/browserTestSupport.h"
#include "model/TOrbMDBTable.h"
#include "support/TempDir.h"
#include "support/complexTables.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QFile>
#include <QTextEdit>

using namespace vellum;

namespace {

QString g_savePath; ///< where the test's save target writes

QString saveToTestPath(QWidget *, const QString &proposed)
{
    return g_savePath.isEmpty() ? QString() : g_savePath + "/" + QFileInfo(proposed).fileName();
}

} // namespace

class ComplexCellsTest : public QObject {
    Q_OBJECT

private slots:
    void gridShowsJoinedValuesAndTextPaneEveryItem()
    {
        auto file = test::makeTestFile("complex");
        const TOrbMDBTable *table = file->addTable(test::complexItemsTable());
        DataView view(true);
        TableDataModel *model = view.dataModel();
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest, model);
        view.updateDataTableToShowMDBTable(table);
        QTRY_VERIFY(!model->isReloading());
        QTRY_COMPARE(model->rowCount(), 3);

        const struct {
            int row;
            int column;
            const char *text;
        } shown[] = {
            {0, 0, "1"},
            {0, 1, "red; green; blue"},
            {0, 2, "notes.txt; setup.sh"},
            {0, 3, "third"},
            {1, 1, ""},
            {1, 2, ""},
            {2, 1, "\xC3\xA9t\xC3\xA9"},
            {2, 3, "only"},
        };
        for (const auto &cell : shown)
            QCOMPARE(model->index(cell.row, cell.column).data().toString(), QString::fromUtf8(cell.text));

        view.displayTextViewContent(model->cellValue(0, 3));
        QCOMPARE(view.bottomTextView()->toPlainText(),
                 QString("[03/04/2021 10:00:00] third\n\n[03/03/2021 09:30:15] second\nline\n\n"
                         "[03/01/2021 08:00:00] first"));
        view.displayTextViewContent(model->cellValue(0, 1));
        QCOMPARE(view.bottomTextView()->toPlainText(), QString("red\ngreen; blue"));
    }

    void attachmentMenuOpensSafeFilesAndSavesUnderTheStoredName()
    {
        const auto table = test::complexItemsTable();
        const CellValue cell = table->cell(0, 2);
        QVERIFY(cell.complex);
        AttachmentMenu menu(*cell.complex);
        QStringList texts;
        QList<bool> enabled;
        for (QAction *action : menu.actions())
            if (!action->isSeparator()) {
                texts << action->text();
                enabled << action->isEnabled();
            }
        QCOMPARE(texts, QStringList({"Open notes.txt", "Save notes.txt…", "Open setup.sh", "Save setup.sh…"}));
        QCOMPARE(enabled, QList<bool>({true, true, false, true}));

        test::TempDir dir;
        g_savePath = QString::fromStdString(dir.path());
        menu.setSaveTarget(saveToTestPath);
        menu.actions()[1]->trigger();
        QFile saved(g_savePath + "/notes.txt");
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), QByteArray("hi\n"));
        QVERIFY(menu.saveAttachment(1));
        QCOMPARE(QFileInfo(g_savePath + "/setup.sh").size(), 8);
        QVERIFY(!menu.saveAttachment(2)); // no such attachment
        g_savePath.clear();
        QVERIFY(!menu.saveAttachment(0)); // the user cancelled
    }
};

VELLUM_GUI_TEST_MAIN(ComplexCellsTest)
#include "ComplexCellsTest.moc"

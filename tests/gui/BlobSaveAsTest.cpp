// Save As for blob cells: the proposed name, the payload written whole, a failure reported
// with nothing left under the name, and the commands enabled only on a cell with a payload.

#include "guiTestSupport.h"

#include "app/models/TableDataModel.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/RecentDocuments.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBTable.h"

#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QSignalSpy>

using namespace vellum;

class BlobSaveAsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private slots:
    void savesTheBlobOfTheCursorCell()
    {
        QVERIFY(m_dir.isValid());
        RecentDocuments().clear();
        QSettings().clear();
        VellumAppDelegate window(VellumAppDelegate::Options{false, nullptr, test::inProcessReader()});
        window.setAlertHandler([](const QString &, const QString &) {});
        window.show();
        QSignalSpy finished(&window, &VellumAppDelegate::openFinished);
        window.openFiles({test::copyFixture("ole.mdb", m_dir.path())});
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() > 0, 20000);
        TOrbMDBTable *blobs = nullptr;
        for (TOrbMDBFile *f : window.controller().recentFiles())
            if (f->name() == "ole" && f->active())
                blobs = f->tableNamed("Blobs");
        QVERIFY(blobs);
        window.selectionDidChange(BrowserItem::ofTable(blobs));
        CopyableTableView *grid = window.dataView()->grid();
        TableDataModel *model = window.dataView()->dataModel();
        QTRY_VERIFY(model->rowCount() > 0);

        // The first cell with a payload (with an extension, not a Package), and a text cell.
        QModelIndex blobCell;
        QModelIndex textCell;
        for (int row = 0; row < model->rowCount() && !blobCell.isValid(); ++row)
            for (int column = 0; column < model->columnCount(); ++column) {
                const CellValue value = model->cellValue(row, column);
                if (value.isBlob() && value.blob && !value.blob->isLinkOnly() && !value.blob->fileExtension().empty() &&
                    value.blob->packageLabel().empty() && !blobCell.isValid())
                    blobCell = model->index(row, column);
                if (value.isText() && !textCell.isValid())
                    textCell = model->index(row, column);
            }
        QVERIFY(blobCell.isValid() && textCell.isValid());
        const TOrbBlobData *blob = model->cellValue(blobCell.row(), blobCell.column()).blob;

        QAction *fileSaveAs = nullptr;
        QMenu *fileMenu = window.menuBar()->actions().first()->menu();
        for (QAction *action : fileMenu->actions())
            if (action->text() == "Save As…")
                fileSaveAs = action;
        QVERIFY(fileSaveAs);

        // A text cell: nothing to save, the command is disabled.
        grid->setEditedColumn(textCell.column(), textCell.row());
        QVERIFY(!grid->canSaveBlobAs());
        emit fileMenu->aboutToShow();
        QVERIFY(!fileSaveAs->isEnabled());

        grid->setEditedColumn(blobCell.column(), blobCell.row());
        QCOMPARE(grid->saveAsCell(), blobCell);
        QVERIFY(grid->canSaveBlobAs());
        emit fileMenu->aboutToShow();
        QVERIFY(fileSaveAs->isEnabled());
        const QString expectedName =
            QStringLiteral("Blobs-%1-%2.%3")
                .arg(model->tableRow(blobCell.row()) + 1)
                .arg(QString::fromStdString(blobs->columns()[static_cast<std::size_t>(blobCell.column())]->name()))
                .arg(QString::fromStdString(blob->fileExtension()));
        QCOMPARE(grid->proposedBlobFileName(blobCell), expectedName);

        // A Package proposes the name its file had.
        bool sawLabel = false;
        for (int row = 0; row < model->rowCount(); ++row)
            for (int column = 0; column < model->columnCount(); ++column) {
                const CellValue value = model->cellValue(row, column);
                if (value.isBlob() && value.blob && value.blob->packageLabel() == "report.final.pdf") {
                    QCOMPARE(grid->proposedBlobFileName(model->index(row, column)), QString("report.final.pdf"));
                    sawLabel = true;
                }
            }
        QVERIFY(sawLabel);

        QStringList errors;
        grid->setSaveErrorHandler([&](const QString &message) { errors << message; });
        struct Case {
            const char *name;
            QString path;  // answered by the dialog ("" cancels)
            bool written;  // the payload is at the path afterwards
            bool reported; // an alert tells why not
        };
        const QString target = m_dir.path() + "/saved.bin";
        QFile old(m_dir.path() + "/old.bin");
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("previous");
        old.close();
        const Case cases[] = {
            {"a new file", target, true, false},     {"over an older file", m_dir.path() + "/old.bin", true, false},
            {"cancelled", QString(), false, false},  {"a missing folder", m_dir.path() + "/missing/x.bin", false, true},
            {"a folder", m_dir.path(), false, true},
        };
        for (const Case &c : cases) {
            errors.clear();
            QString proposed;
            grid->setSavePathChooser([&](const QString &name) {
                proposed = name;
                return c.path;
            });
            fileSaveAs->trigger();
            QCOMPARE(proposed, expectedName);
            QVERIFY2(errors.isEmpty() != c.reported, c.name);
            if (c.written) {
                QFile saved(c.path);
                QVERIFY2(saved.open(QIODevice::ReadOnly), c.name);
                const QByteArray bytes = saved.readAll();
                QCOMPARE(bytes, QByteArray(reinterpret_cast<const char *>(blob->data().data()),
                                           static_cast<qsizetype>(blob->data().size())));
            } else if (!c.path.isEmpty() && c.path != m_dir.path()) {
                QVERIFY2(!QFile::exists(c.path), c.name);
            }
        }
        // No temporary file is left behind in the folder.
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
    }
};

VELLUM_GUI_TEST_MAIN(BlobSaveAsTest)
#include "BlobSaveAsTest.moc"

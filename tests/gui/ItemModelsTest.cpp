// Every item model of the window through QAbstractItemModelTester, with the data each must show:
// the file list (row counts on and off), the grid (nulls, blobs, sorting and filtering resets),
// the information lists.

#include "guiTestSupport.h"

#include "app/models/FileListModel.h"
#include "app/models/InfoRowsModel.h"
#include "app/models/TableDataModel.h"
#include "browser/BrowserController.h"
#include "browser/RecentDocuments.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"

#include <QAbstractItemModelTester>
#include <QColor>

using namespace vellum;

class ItemModelsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    static void test(QAbstractItemModel *model)
    {
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest, model);
    }

private slots:
    void fileListModel()
    {
        RecentDocuments recent;
        recent.clear();
        BrowserController controller(recent);
        FileListModel model(controller);
        test(&model);
        TOrbMDBFile *open =
            controller.createNewMDBFile(test::copyFixture("features.mdb", m_dir.path()).toStdString(), false);
        controller.createNewMDBFile(m_dir.path().toStdString() + "/closed.mdb", false);
        QVERIFY(open->open(*test::inProcessReader()));
        model.reload();
        QCOMPARE(model.rowCount(), 2);
        const QModelIndex file = model.index(0, 0);
        QCOMPARE(file.data().toString(), QString("features"));
        QCOMPARE(model.rowCount(file), 14);
        QCOMPARE(model.rowCount(model.index(1, 0)), 0); // a closed file cannot be expanded
        QVERIFY(!model.hasChildren(model.index(1, 0)));
        const QModelIndex orders = model.indexForTable(open->tableNamed("Orders"));
        QCOMPARE(orders.parent(), file);
        QCOMPARE(orders.data().toString(), QString("Orders  (3)"));
        QCOMPARE(orders.data(FileListModel::RowCountRole).toInt(), 3);
        QCOMPARE(model.itemForIndex(orders).table, open->tableNamed("Orders"));
        QVERIFY(!(model.flags(orders) & Qt::ItemIsEditable));
        model.setNumRowsShown(false);
        QCOMPARE(model.indexForTable(open->tableNamed("Orders")).data().toString(), QString("Orders"));
        QVERIFY(!model.indexForTable(open->tableNamed("Orders")).data(FileListModel::RowCountRole).isValid());

        // While a file loads the list treats it as closed.
        controller.setLoadingFile(open);
        model.reload();
        QCOMPARE(model.rowCount(model.index(0, 0)), 0);
        controller.setLoadingFile(nullptr);
        controller.setFileSearchText("table");
        model.reload();
        QCOMPARE(model.rowCount(model.index(0, 0)), 5); // table1, Table2, table10, Quote"Table, Space Table
    }

    void tableDataModel()
    {
        auto file = TOrbMDBFile::fromPath(test::copyFixture("ole.mdb", m_dir.path()).toStdString());
        QVERIFY(file->open(*test::inProcessReader()));
        const TOrbMDBTable *blobs = file->tableNamed("Blobs");
        QVERIFY(blobs);
        TableDataModel model;
        test(&model);
        QCOMPARE(model.rowCount(), 0);
        model.showTable(blobs, RowFilter());
        QCOMPARE(model.rowCount(), 14);
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QString("Data"));
        QVERIFY(model.isOLEColumn(2));
        QVERIFY(!model.isOLEColumn(1));

        // Row 3 holds a bitmap: its cell text, its icon, and grey like every non-text value.
        const QModelIndex bitmap = model.index(2, 2);
        QCOMPARE(bitmap.data().toString(), QString(".bmp [1 KB]"));
        QVERIFY(bitmap.data(TableDataModel::IsBlobRole).toBool());
        QVERIFY(bitmap.data(Qt::DecorationRole).isValid());
        QVERIFY(bitmap.data(Qt::ForegroundRole).isValid());
        QCOMPARE(model.index(9, 2).data().toString(), QString("[NULL]"));
        QVERIFY(model.index(9, 2).data(Qt::ForegroundRole).isValid());
        QVERIFY(!model.index(9, 2).data(Qt::DecorationRole).isValid());
        QVERIFY(!model.index(0, 1).data(Qt::ForegroundRole).isValid());

        // The search skips the OLE column and finds descriptions.
        model.reload(RowFilter("bmp", SearchOption::Contains, true));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.tableRow(0), 2u);
        model.reload(RowFilter());
        blobs->columns()[0]->setSortOrder(-1);
        model.reload(RowFilter());
        QCOMPARE(model.index(0, 0).data().toString(), QString("14"));
        blobs->columns()[0]->setSortOrder(0);
        model.showTable(nullptr, RowFilter());
        QCOMPARE(model.columnCount(), 0);
    }

    void informationLists()
    {
        auto file = TOrbMDBFile::fromPath(test::copyFixture("features.mdb", m_dir.path()).toStdString());
        QVERIFY(file->open(*test::inProcessReader()));
        InfoRowsModel rows;
        test(&rows);
        rows.setObject(file->tableNamed("Orders"));
        QCOMPARE(rows.labels(), QStringList({"Name", "Number of rows", "Number of columns"}));
        QCOMPARE(rows.values(), QStringList({"Orders", "3", "6"}));
        QCOMPARE(rows.index(1, 0).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight, Qt::AlignRight);
        QVERIFY(!(rows.flags(rows.index(0, 0)) & Qt::ItemIsEditable));
        rows.clear();
        QCOMPARE(rows.rowCount(), 0);

        NamesListModel names;
        test(&names);
        names.setNames({"a", "b"});
        QCOMPARE(names.headerData(0, Qt::Horizontal).toString(), QString("Name"));
        QCOMPARE(names.index(1, 0).data().toString(), QString("b"));
        names.setNames({});
        QCOMPARE(names.rowCount(), 0);
    }
};

VELLUM_GUI_TEST_MAIN(ItemModelsTest)
#include "ItemModelsTest.moc"

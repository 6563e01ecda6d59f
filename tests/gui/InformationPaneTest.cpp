// The information pane: which buttons show for a file and for a table, the page that is kept,
// the headings and empty texts, the names lists' default choice and the lower lists.

#include "guiTestSupport.h"

#include "app/models/InfoRowsModel.h"
#include "app/widgets/InformationPane.h"
#include "app/widgets/InformationTopBar.h"
#include "model/TOrbMDBFile.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <cmath>

using namespace vellum;

class InformationPaneTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<TOrbMDBFile> m_file;

    static QList<int> visibleButtons(const InformationPane &pane)
    {
        QList<int> out;
        for (int type = 0; type < 5; ++type)
            if (!pane.topBar()->isHiddenForType(type))
                out << type;
        return out;
    }

private slots:
    void initTestCase()
    {
        m_file = TOrbMDBFile::fromPath(test::copyFixture("features.mdb", m_dir.path()).toStdString());
        QVERIFY(m_file->open(*test::inProcessReader()));
    }

    void buttonsAndPagesFollowTheSelection()
    {
        InformationPane pane;
        pane.show();
        QCOMPARE(visibleButtons(pane), QList<int>({0}));
        QCOMPARE(pane.currentPage(), 0);
        QVERIFY(pane.showsEmptyText(0));
        QCOMPARE(pane.emptyLabel(0)->text(), QString("No files selected"));
        QCOMPARE(pane.heading(0)->text(), QString("File Information"));
        QCOMPARE(pane.topBar()->button(4)->toolTip(), QString("Relation"));

        pane.showFile(m_file.get());
        QVERIFY(!pane.showsEmptyText(0));
        QCOMPARE(pane.labelValueView(0)->rowsModel()->labels(),
                 QStringList({"Name", "Where", "Size", "Created", "Modified", "Last opened"}));
        QCOMPARE(pane.labelValueView(0)->rowsModel()->values().first(), QString("features.mdb"));
        // Each value's editor covers its cell and tells the whole value on hover.
        LabelValueView *values = pane.labelValueView(0);
        for (int row = 0; row < values->rowsModel()->rowCount(); ++row) {
            const QWidget *editor = values->indexWidget(values->rowsModel()->index(row, 1));
            QVERIFY(editor);
            const auto *line = editor->findChild<QLineEdit *>();
            QVERIFY(line);
            QCOMPARE(line->text(), values->rowsModel()->values()[row]);
            QCOMPARE(line->toolTip(), values->rowsModel()->values()[row]);
        }

        const TOrbMDBTable *orders = m_file->tableNamed("Orders");
        pane.showTable(orders);
        QCOMPARE(visibleButtons(pane), QList<int>({1, 2, 3, 4}));
        QCOMPARE(pane.currentPage(), int(kInfoTable));
        QCOMPARE(pane.topBar()->selectedType(), int(kInfoTable));

        // The Relation page stays when another table is selected; a file returns to page 0.
        pane.topBar()->button(kInfoRelation)->click();
        QCOMPARE(pane.currentPage(), int(kInfoRelation));
        QCOMPARE(pane.topBar()->selectedType(), int(kInfoRelation));
        pane.showTable(m_file->tableNamed("Customers"));
        QCOMPARE(pane.currentPage(), int(kInfoRelation));
        QVERIFY(pane.showsEmptyText(kInfoRelation));
        QCOMPARE(pane.emptyLabel(kInfoRelation)->text(), QString("No forigen keys"));
        pane.showFile(m_file.get());
        QCOMPARE(pane.currentPage(), 0);
        QCOMPARE(visibleButtons(pane), QList<int>({0}));
    }

    void namesListsKeepAChoice()
    {
        InformationPane pane;
        pane.show();
        const TOrbMDBTable *orders = m_file->tableNamed("Orders");
        pane.showTable(orders);
        NamesListView *columns = pane.namesView(kInfoColumn);
        QCOMPARE(columns->namesModel()->names(),
                 QStringList({"OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate"}));
        QCOMPARE(columns->chosenRow(), 0);
        QCOMPARE(pane.labelValueView(kInfoColumn)->rowsModel()->values().first(), QString("OrderID"));
        const QStringList indexValuesBefore = pane.labelValueView(kInfoIndex)->rowsModel()->values();
        columns->selectRow(3);
        QCOMPARE(pane.labelValueView(kInfoColumn)->rowsModel()->values().first(), QString("CustCode"));
        QCOMPARE(pane.labelValueView(kInfoIndex)->rowsModel()->values(), indexValuesBefore); // only its own list
        columns->clearSelection();
        QCOMPARE(columns->chosenRow(), 3); // never an empty choice

        QVERIFY(!pane.showsEmptyText(kInfoIndex));
        QVERIFY(!pane.showsEmptyText(kInfoRelation));
        QVERIFY(pane.namesView(kInfoRelation)->namesModel()->rowCount() > 0);

        pane.showTable(m_file->tableNamed("a]b"));
        QVERIFY(pane.showsEmptyText(kInfoIndex));
        QCOMPARE(pane.emptyLabel(kInfoIndex)->text(), QString("No indices"));
        QVERIFY(!pane.showsEmptyText(kInfoColumn));
        QCOMPARE(pane.emptyLabel(kInfoColumn)->text(), QString("No columns"));
        pane.showTable(nullptr);
        QVERIFY(pane.showsEmptyText(kInfoColumn));
    }

    void labelColumnFitsTheWidestLabel()
    {
        QFont font;
        QCOMPARE(LabelValueView::widthToFit({}, font), 0);
        const int wide = QFontMetrics(font).horizontalAdvance("Number of columns");
        QCOMPARE(LabelValueView::widthToFit({"Name", "Number of columns"}, font), int(std::ceil(wide * 1.1)));
    }
};

VELLUM_GUI_TEST_MAIN(InformationPaneTest)
#include "InformationPaneTest.moc"

// The export wizard's rules: which entries start selected, the OK rule (and the check box's
// shortcut around it), the single-file path rules, the options that follow each other, and
// the file names of the SQLite kind.

#include "guiTestSupport.h"

#include "app/export/ExportWizard.h"
#include "app/models/ExportEntriesModel.h"
#include "app/support/SettingsStore.h"
#include "export/ExportRoutines.h"
#include "export/ExportTestTables.h"
#include "export/exportRegistry.h"
#include "model/TOrbMDBFile.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace vellum;

class ExportWizardTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<TOrbMDBFile> m_file;
    QWidget m_window;

    std::unique_ptr<ExportWizard> wizard(ExportFileType kind, const TOrbMDBTable *table = nullptr)
    {
        auto made = std::make_unique<ExportWizard>(*m_file, table, kind, &m_window);
        new QAbstractItemModelTester(made->tableList()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                     made.get());
        return made;
    }
    static int selectedCount(ExportWizard &w)
    {
        int count = 0;
        for (const ExportEntry &entry : w.job().entries())
            count += entry.selected ? 1 : 0;
        return count;
    }

private slots:
    void initTestCase()
    {
        QSettings().clear();
        m_file = TOrbMDBFile::fromPath(test::copyFixture("features.mdb", m_dir.path(), "db.mdb").toStdString());
        QVERIFY(m_file->open(*test::inProcessReader()));
    }

    void showsTheRegistrysControlsWithTheCommandLinesDefaults()
    {
        // Every kind shows exactly the controls the registry lists for it, holding the defaults
        // that `vellum-cli export` starts from.
        for (const ExportKindInfo &kind : exportKinds()) {
            if (!isExportFileTypeAvailable(kind.kind))
                continue;
            auto w = wizard(kind.kind);
            w->enableOkButtonCheck(); // reads the controls into the job's options
            const ExportOptions defaults = ExportOptions::defaultsFor(kind.kind, true);
            for (const ExportOptionInfo &option : exportOptions()) {
                const QWidget *control =
                    option.id == ExportOptionId::SingleFile ? w->singleFileBox() : w->control(option.id);
                const QString what = QString("%1 option %2").arg(kind.name).arg(static_cast<int>(option.id));
                QVERIFY2((control && !control->isHidden()) == containsKind(option.wizardKinds, kind.kind),
                         qPrintable(what));
                QVERIFY2(option.read(w->job().options()) == option.read(defaults), qPrintable(what));
            }
        }
    }

    void startsForTheFileOrForOneTable()
    {
        auto whole = wizard(ExportFileType::XLS);
        QCOMPARE(selectedCount(*whole), 14);
        QVERIFY(whole->singleFileBox()->isChecked());
        QVERIFY(whole->tableList()->isColumnHidden(ExportEntriesModel::FileNameColumn));
        QCOMPARE(whole->pathLabel()->text(), QString("Export file:"));

        const TOrbMDBTable *orders = m_file->tableNamed("Orders");
        auto one = wizard(ExportFileType::XLS, orders);
        QCOMPARE(selectedCount(*one), 1);
        QVERIFY(one->job().entries()[6].selected);
        QCOMPARE(one->job().entries()[6].tableName, std::string("Orders"));
        QVERIFY(!one->singleFileBox()->isChecked());
        QCOMPARE(one->pathLabel()->text(), QString("Export path:"));

        auto csv = wizard(ExportFileType::CSV);
        QVERIFY(csv->singleFileBox()->isHidden());
        QCOMPARE(csv->fieldDelimiterBox()->count(), 2); // csv offers only ; and ,
        QCOMPARE(csv->fieldDelimiterBox()->currentData().toInt(), 2);
        QVERIFY(csv->structureBox()->isHidden() && csv->dataBox()->isHidden());
        QVERIFY(csv->structureBox()->isChecked() && csv->dataBox()->isChecked());
        QCOMPARE(csv->encodingBox()->currentData().toULongLong(), 4ull);

        auto sqlite = wizard(ExportFileType::SQLite);
        QCOMPARE(sqlite->job().entries()[6].exportFileName, std::string("Orders")); // no extension
        QVERIFY(!sqlite->encodingBox());
        QVERIFY(sqlite->singleFileBox()->isHidden() && sqlite->singleFileBox()->isChecked());
        sqlite->pathField()->setText("/tmp/out");
        sqlite->singleFileBox()->setChecked(false);
        sqlite->singleFileBox()->click(); // back on: the path becomes the database file
        QCOMPARE(sqlite->pathField()->text(), QString("/tmp/out/db.sqlite"));
    }

    void okRule()
    {
        auto sql = wizard(ExportFileType::SQL);
        QVERIFY(!sql->okButton()->isEnabled()); // no path
        sql->setPathChooser([](bool, const QString &, const QString &name, const QString &extension) {
            return "/tmp/" + name + "." + extension;
        });
        sql->selectExportPath();
        QCOMPARE(sql->pathField()->text(), QString("/tmp/db.sql"));
        QVERIFY(sql->okButton()->isEnabled());
        sql->structureBox()->setChecked(false);
        QVERIFY(sql->okButton()->isEnabled());
        QVERIFY(!sql->dropTableBox()->isEnabled() && !sql->indexesBox()->isEnabled());
        sql->dataBox()->setChecked(false);
        QVERIFY(!sql->okButton()->isEnabled()); // neither structure nor data
        sql->dataBox()->setChecked(true);
        QVERIFY(sql->okButton()->isEnabled());
        sql->markAllTableEntriesAsSelected(false);
        QVERIFY(!sql->okButton()->isEnabled()); // no table

        // Ticking a table off and on never enables OK without a path the user chose: not an
        // empty one, not a relative one, not a folder that does not exist.
        auto xml = wizard(ExportFileType::XML);
        QVERIFY(!xml->okButton()->isEnabled());
        QAbstractItemModel *entries = xml->tableList()->model();
        QVERIFY(entries->setData(entries->index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
        QVERIFY(entries->setData(entries->index(0, 0), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(!xml->okButton()->isEnabled());
        for (const QString &path : {QString("relative/folder"), m_dir.path() + "/missing"}) {
            QTest::keyClicks(xml->pathField(), path);
            QVERIFY2(!xml->okButton()->isEnabled(), qPrintable(path));
            xml->pathField()->clear();
        }
        QTest::keyClicks(xml->pathField(), m_dir.path());
        QVERIFY(xml->okButton()->isEnabled());
        xml->markAllTableEntriesAsSelected(false);
        QVERIFY(!xml->okButton()->isEnabled());
        QVERIFY(entries->setData(entries->index(2, 2), "renamed.xml", Qt::EditRole));
        QCOMPARE(xml->job().entries()[2].exportFileName, std::string("renamed.xml"));
        QVERIFY(!entries->setData(entries->index(2, 1), "x", Qt::EditRole)); // table names stay
    }

    void theReportIsPlainText()
    {
        // A table named like a markup tag keeps its name in the report.
        std::vector<std::unique_ptr<TOrbMDBTable>> tables;
        tables.push_back(test::makeNumberTable("Big", 3));
        auto file = test::makeFile("tags", std::move(tables));
        QTemporaryDir out;
        QVERIFY(QDir(out.path()).mkdir("Big.csv")); // a folder where the file belongs: the table fails
        QWidget window;
        auto *w = new ExportWizard(*file, nullptr, ExportFileType::CSV, &window);
        w->setPathChooser([&](bool, const QString &, const QString &, const QString &) { return out.path(); });
        w->selectExportPath();
        QVERIFY(w->okButton()->isEnabled());
        QTest::mouseClick(w->okButton(), Qt::LeftButton);
        QMessageBox *box = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((box = window.findChild<QMessageBox *>()) != nullptr, 20000);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        auto *informative = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
        QVERIFY(informative);
        QCOMPARE(informative->textFormat(), Qt::PlainText);
        QCOMPARE(informative->text(), QString("<Big> Failed: Unable to create file for export.\n    Is a directory"));
        box->accept();
    }

    void singleFilePathRules()
    {
        const TOrbMDBTable *orders = m_file->tableNamed("Orders");
        auto xls = wizard(ExportFileType::XLS, orders);
        xls->setPathChooser([](bool folder, const QString &, const QString &, const QString &) {
            return folder ? QString("/tmp/out") : QString();
        });
        xls->selectExportPath();
        QCOMPARE(xls->pathField()->text(), QString("/tmp/out"));
        xls->singleFileBox()->click();
        QCOMPARE(xls->pathField()->text(), QString("/tmp/out/db.xls"));
        QCOMPARE(xls->pathLabel()->text(), QString("Export file:"));
        xls->singleFileBox()->click();
        QCOMPARE(xls->pathField()->text(), QString("/tmp/out"));
        QCOMPARE(xls->pathLabel()->text(), QString("Export path:"));

        // Off again with a file elsewhere: a folder panel; cancelling it turns the flag back on.
        xls->singleFileBox()->click();
        xls->pathField()->setText("/srv/other/db.xls");
        xls->setPathChooser([](bool, const QString &, const QString &, const QString &) { return QString(); });
        xls->singleFileBox()->click();
        QVERIFY(xls->singleFileBox()->isChecked());
        xls->setPathChooser([](bool folder, const QString &, const QString &, const QString &) {
            return folder ? QString("/srv/chosen") : QString();
        });
        xls->singleFileBox()->click();
        QVERIFY(!xls->singleFileBox()->isChecked());
        QCOMPARE(xls->pathField()->text(), QString("/srv/chosen"));
    }

    void optionsFollowEachOther()
    {
        auto txt = wizard(ExportFileType::TXT);
        QCOMPARE(txt->fieldDelimiterBox()->currentData().toInt(), 0); // tab for txt
        txt->fieldDelimiterBox()->setCurrentIndex(txt->fieldDelimiterBox()->findData(1));
        QCOMPARE(txt->decimalSymbolField()->text(), QString(","));
        txt->fieldDelimiterBox()->setCurrentIndex(txt->fieldDelimiterBox()->findData(3));
        QCOMPARE(txt->decimalSymbolField()->text(), QString(","));
        txt->fieldDelimiterBox()->setCurrentIndex(txt->fieldDelimiterBox()->findData(2));
        QCOMPARE(txt->decimalSymbolField()->text(), QString("."));

        auto sql = wizard(ExportFileType::SQL);
        for (const ServerType format :
             {ServerTypeMySQL, ServerTypePostgreSQL, ServerTypeOracle, ServerTypeSQLite, ServerTypeSQLServer}) {
            sql->sqlFormatBox()->setCurrentIndex(sql->sqlFormatBox()->findData(serverTypeValue(format)));
            QCOMPARE(sql->schemaNameField()->isEnabled(),
                     format == ServerTypePostgreSQL || format == ServerTypeOracle || format == ServerTypeSQLServer);
        }
    }

    void theLosslessChoiceIsKeptForTheNextExport()
    {
        QSettings().clear();
        std::vector<std::unique_ptr<TOrbMDBTable>> tables;
        tables.push_back(test::makeNumberTable("Numbers", 2));
        auto file = test::makeFile("kept", std::move(tables));
        QTemporaryDir out;
        QWidget window;
        auto *first = new ExportWizard(*file, nullptr, ExportFileType::CSV, &window);
        QCheckBox *lossless = first->checkBox(ExportOptionId::Lossless);
        QVERIFY(lossless);
        QVERIFY(!lossless->isChecked()); // off until chosen
        lossless->click();
        first->setPathChooser([&](bool, const QString &, const QString &, const QString &) { return out.path(); });
        first->selectExportPath();
        QTest::mouseClick(first->okButton(), Qt::LeftButton);
        QMessageBox *box = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((box = window.findChild<QMessageBox *>()) != nullptr, 20000);
        box->accept();
        QVERIFY(SettingsStore::exportLossless());

        auto *second = new ExportWizard(*file, nullptr, ExportFileType::SQL, &window);
        QVERIFY(second->checkBox(ExportOptionId::Lossless)->isChecked());
        second->checkBox(ExportOptionId::Lossless)->click();
        second->reject();
        QVERIFY(SettingsStore::exportLossless()); // only OK stores the choice
        QSettings().clear();
    }

    void restoresTheLastFolder()
    {
        SettingsStore::setExportFilePath(m_dir.path());
        auto csv = wizard(ExportFileType::CSV);
        QCOMPARE(csv->pathField()->text(), m_dir.path());
        QVERIFY(csv->okButton()->isEnabled());
        SettingsStore::setExportFilePath(m_dir.path() + "/gone");
        auto again = wizard(ExportFileType::CSV);
        QVERIFY(again->pathField()->text().isEmpty()); // a folder that no longer exists is not restored
        QSettings().clear();
    }
};

VELLUM_GUI_TEST_MAIN(ExportWizardTest)
#include "ExportWizardTest.moc"

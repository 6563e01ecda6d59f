// Opening a file off the main thread: the window's event loop keeps running, the progress
// dialog with Cancel shows after half a second, and Cancel stops the open.

#include "guiTestSupport.h"

#include "app/support/FileLoader.h"
#include "loader/chooseFileReader.h"
#include "model/TOrbMDBFile.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace vellum;

class FileLoaderTest : public QObject {
    Q_OBJECT

private slots:
    void opensSmallFilesWithoutADialog()
    {
        QTemporaryDir dir;
        QWidget window;
        window.show();
        FileLoader loader(&window, test::inProcessReader());
        auto file = TOrbMDBFile::fromPath(test::copyFixture("features.mdb", dir.path()).toStdString());
        std::optional<LoadResult> result;
        QVERIFY(loader.open(file.get(), [&](LoadResult r) { result = r; }));
        QVERIFY(loader.isLoading(file.get()));
        QVERIFY(!loader.open(file.get(), [](LoadResult) {})); // one open at a time
        QTRY_VERIFY(result.has_value());
        QCOMPARE(*result, LoadResult::Opened);
        QVERIFY(file->active());
        QVERIFY(!loader.isBusy());
        QVERIFY(!window.findChild<QProgressDialog *>());

        auto broken = TOrbMDBFile::fromPath((dir.path() + "/missing.mdb").toStdString());
        result.reset();
        QVERIFY(loader.open(broken.get(), [&](LoadResult r) { result = r; }));
        QTRY_VERIFY(result.has_value());
        QCOMPARE(*result, LoadResult::Failed);
    }

    void bigFileShowsProgressAndCancels()
    {
        const QString big = QStringLiteral(VELLUM_SHARED_DIR) + "/testdata/big.mdb";
        if (!QFileInfo::exists(big))
            QSKIP("../shared/testdata/big.mdb is not there: the slow open cannot be tried");
        // The window opens files the way the application does (isolated when the helper is
        // there).
        QWidget window;
        window.show();
        FileLoader loader(&window, chooseFileReader(nullptr));
        auto file = TOrbMDBFile::fromPath(big.toStdString());
        std::optional<LoadResult> result;
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(50);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(loader.open(file.get(), [&](LoadResult r) { result = r; }));
        QTRY_VERIFY_WITH_TIMEOUT(window.findChild<QProgressDialog *>() || result.has_value(), 20000);
        if (result.has_value()) {
            QCOMPARE(*result, LoadResult::Opened);
            QSKIP("the file opened before the progress dialog was due");
        }
        QVERIFY(clock.elapsed() >= FileLoader::kDialogDelayMs);
        QVERIFY(ticks >= 3); // the event loop ran meanwhile
        // The dialog goes when the file is open: on a busy machine that may happen at any point.
        QPointer<QProgressDialog> dialog = window.findChild<QProgressDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        // The bar follows the rows: the table definitions' total is known before any row.
        QTRY_VERIFY_WITH_TIMEOUT(!dialog || result.has_value() || dialog->maximum() == 1000, 5000);
        if (!dialog || result.has_value())
            QSKIP("the file opened before the progress could be checked");
        QCOMPARE(dialog->maximum(), 1000);
        QVERIFY(dialog->value() >= 0 && dialog->value() <= 1000);
        QPushButton *cancel = dialog->findChild<QPushButton *>();
        QVERIFY(cancel);
        QCOMPARE(cancel->text(), QString("Cancel"));
        cancel->click();
        QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), 20000);
        QCOMPARE(*result, LoadResult::Cancelled);
        QVERIFY(!file->active());
        QVERIFY(file->tables().empty());
    }
};

VELLUM_GUI_TEST_MAIN(FileLoaderTest)
#include "FileLoaderTest.moc"

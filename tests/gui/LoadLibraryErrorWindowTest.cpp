// The "Load Library Error" window: reported from a worker thread (as the SQLite export does
// when the run-time library lacks entry points), it shows modally on the GUI thread with the
// library path and every missing entry point, and the worker waits until it is dismissed.

#include "guiTestSupport.h"

#include "sql/sqliteLibrary.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

#include <atomic>
#include <thread>

using namespace vellum;

class LoadLibraryErrorWindowTest : public QObject {
    Q_OBJECT

private slots:
    void showsOnTheGuiThreadWhileTheWorkerWaits()
    {
        std::atomic<bool> workerReturned{false};
        QString title, message, details;
        bool returnedWhileShown = true;
        // The window runs its own event loop: look for it from a timer inside that loop.
        QTimer poll;
        poll.setInterval(20);
        connect(&poll, &QTimer::timeout, this, [&] {
            for (QWidget *widget : QApplication::topLevelWidgets()) {
                auto *dialog = qobject_cast<QDialog *>(widget);
                if (!dialog || !dialog->isVisible())
                    continue;
                title = dialog->windowTitle();
                for (QLabel *label : dialog->findChildren<QLabel *>())
                    if (!label->text().isEmpty())
                        message = label->text();
                if (auto *text = dialog->findChild<QPlainTextEdit *>("loadLibraryErrorDetails"))
                    details = text->toPlainText();
                returnedWhileShown = workerReturned.load();
                dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
                poll.stop();
            }
        });
        poll.start();
        std::thread worker([&] {
            AddFunctionChecking("/opt/example/libsqlcipher.so", "Failed to load function: sqlite3_key\n"
                                                                "Failed to load function: sqlite3_rekey");
            workerReturned.store(true);
        });
        QTRY_VERIFY_WITH_TIMEOUT(workerReturned.load(), 10000);
        worker.join();
        QCOMPARE(title, QStringLiteral("Load Library Error"));
        QVERIFY2(message.contains("'/opt/example/libsqlcipher.so'"), qPrintable(message));
        QCOMPARE(details,
                 QStringLiteral("Failed to load function: sqlite3_key\nFailed to load function: sqlite3_rekey"));
        QVERIFY(!returnedWhileShown);
    }
};

VELLUM_GUI_TEST_MAIN(LoadLibraryErrorWindowTest)
#include "LoadLibraryErrorWindowTest.moc"

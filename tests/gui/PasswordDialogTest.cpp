// Opening an encrypted file in the main window, offscreen: the window-modal password dialog
// asks, says when a password is wrong and asks again, opens the file with the right one, keeps
// it for the session when asked to, and leaves the file closed without an error on Cancel.

#include "guiTestSupport.h"

#include "app/widgets/PasswordDialog.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/RecentDocuments.h"
#include "model/TOrbMDBFile.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>

using namespace vellum;

namespace {

/// An encrypted corpus file and its password (from its truth sidecar); empty when ../shared is absent.
const char *kEncryptedFile = "ace14_mdb-reader_encryption_office-agile-4.4.accdb";
const char *kPassword = "password";

QString corpusFile()
{
    const QString path = QStringLiteral(VELLUM_SHARED_DIR) + "/corpus/" + kEncryptedFile;
    return QFile::exists(path) ? path : QString();
}

} // namespace

class PasswordDialogTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<VellumAppDelegate> m_window;
    QStringList m_alerts;
    QString m_path;

    void makeWindow()
    {
        m_window.reset();
        m_alerts.clear();
        m_window =
            test::freshWindow([this](const QString &title, const QString &text) { m_alerts << title + "|" + text; });
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    /// Waits for the dialog, checks its message, types `password` and presses `button`.
    void answer(const QString &message, const QString &password, QDialogButtonBox::StandardButton button,
                bool remember = false)
    {
        QTRY_VERIFY(m_window->passwordDialog() && m_window->passwordDialog()->isVisible());
        PasswordDialog *dialog = m_window->passwordDialog();
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QCOMPARE(dialog->message(), message);
        QCOMPARE(dialog->passwordField()->echoMode(), QLineEdit::Password);
        QVERIFY(dialog->passwordField()->text().isEmpty());
        QTest::keyClicks(dialog->passwordField(), password);
        dialog->rememberBox()->setChecked(remember);
        QPushButton *pressed = dialog->findChild<QDialogButtonBox *>()->button(button);
        QVERIFY(pressed);
        QTest::mouseClick(pressed, Qt::LeftButton);
    }

    TOrbMDBFile *listedFile() const
    {
        for (TOrbMDBFile *file : m_window->controller().recentFiles())
            if (file->fullPath() == m_path.toStdString())
                return file;
        return nullptr;
    }

    QString neededMessage() const
    {
        return "File (" + QFileInfo(m_path).fileName() + ") is encrypted: a password is needed";
    }
    QString wrongMessage() const { return "The password for (" + QFileInfo(m_path).fileName() + ") is not correct"; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        const QString source = corpusFile();
        if (source.isEmpty())
            QSKIP("../shared/corpus is absent");
        m_path = m_dir.path() + "/" + kEncryptedFile;
        QVERIFY(QFile::copy(source, m_path));
    }
    void cleanup() { m_window.reset(); }

    void wrongPasswordAsksAgainAndTheRightOneOpens()
    {
        makeWindow();
        QSignalSpy finished(m_window.get(), &VellumAppDelegate::openFinished);
        m_window->openFiles({m_path});
        answer(neededMessage(), "not it", QDialogButtonBox::Ok);
        answer(wrongMessage(), kPassword, QDialogButtonBox::Ok);
        QVERIFY(finished.count() > 0 || finished.wait(20000));
        QVERIFY(!m_window->passwordDialog());
        QVERIFY(m_alerts.isEmpty());
        TOrbMDBFile *file = listedFile();
        QVERIFY(file);
        QVERIFY(file->active());
        QVERIFY(file->tableNamed("Table1"));
        QCOMPARE(file->tableNamed("Table1")->rowCount(), std::size_t(3));
        QCOMPARE(RecentDocuments().paths(), std::vector<std::string>{m_path.toStdString()});
    }

    void cancelLeavesTheFileClosedWithoutAnError()
    {
        makeWindow();
        QSignalSpy finished(m_window.get(), &VellumAppDelegate::openFinished);
        m_window->openFiles({m_path});
        answer(neededMessage(), "", QDialogButtonBox::Cancel);
        QVERIFY(finished.count() > 0 || finished.wait(20000));
        QVERIFY(!m_window->passwordDialog());
        QVERIFY(m_alerts.isEmpty());
        const TOrbMDBFile *file = listedFile();
        QVERIFY(!file || !file->active());
        QVERIFY(RecentDocuments().paths().empty());
    }

    void rememberedPasswordOpensAgainWithoutAsking()
    {
        makeWindow();
        QSignalSpy finished(m_window.get(), &VellumAppDelegate::openFinished);
        m_window->openFiles({m_path});
        answer(neededMessage(), kPassword, QDialogButtonBox::Ok, true);
        QVERIFY(finished.count() > 0 || finished.wait(20000));
        QVERIFY(listedFile() && listedFile()->active());
        // Opening the same path again makes a fresh entry; the kept password opens it directly.
        finished.clear();
        m_window->openFiles({m_path});
        QVERIFY(finished.count() > 0 || finished.wait(20000));
        QVERIFY(!m_window->passwordDialog());
        QVERIFY(listedFile() && listedFile()->active());
        QVERIFY(m_alerts.isEmpty());
    }
};

VELLUM_GUI_TEST_MAIN(PasswordDialogTest)
#include "PasswordDialogTest.moc"

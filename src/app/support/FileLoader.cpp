#include "app/support/FileLoader.h"

#include "app/support/qtStrings.h"
#include "browser/localizedFormat.h"
#include "model/FileReader.h"
#include "model/TOrbMDBFile.h"

#include <QMetaObject>
#include <QProgressDialog>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace vellum {

/// The loader's observer: the worker writes, the main thread reads on a timer.
class FileLoader::Observer : public LoadObserver {
public:
    explicit Observer(const BackgroundTask &task) : m_task(task) {}

    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override
    {
        std::lock_guard lock(m_mutex);
        m_table = name;
        m_index = index;
        m_count = count;
    }
    void rowsLoaded(std::uint64_t totalRows) override { m_rows.store(totalRows); }
    void rowsExpected(std::uint64_t totalRows) override { m_expected.store(totalRows); }
    bool shouldCancel() override { return m_task.stopRequested(); }

    void snapshot(std::string &table, std::size_t &index, std::size_t &count, std::uint64_t &rows,
                  std::uint64_t &expected)
    {
        std::lock_guard lock(m_mutex);
        table = m_table;
        index = m_index;
        count = m_count;
        rows = m_rows.load();
        expected = m_expected.load();
    }

private:
    const BackgroundTask &m_task;
    std::mutex m_mutex;
    std::string m_table;
    std::size_t m_index = 0;
    std::size_t m_count = 0;
    std::atomic<std::uint64_t> m_rows{0};
    std::atomic<std::uint64_t> m_expected{0};
};

FileLoader::FileLoader(QWidget *parent, std::shared_ptr<FileReader> reader)
    : QObject(parent), m_parent(parent), m_reader(std::move(reader)), m_delay(new QTimer(this)),
      m_refresh(new QTimer(this))
{
    m_delay->setSingleShot(true);
    m_delay->setInterval(kDialogDelayMs);
    connect(m_delay, &QTimer::timeout, this, &FileLoader::showProgress);
    m_refresh->setInterval(100);
    connect(m_refresh, &QTimer::timeout, this, &FileLoader::updateProgress);
}

void FileLoader::setPassword(const std::string &password)
{
    if (!isBusy())
        m_reader->setPassword(password);
}

FileLoader::~FileLoader()
{
    shutdown();
}

void FileLoader::shutdown()
{
    if (m_task.busy()) {
        m_task.requestStop();
        m_task.wait();
    }
    // A report of the stopped open that is still on its way to this thread is dropped.
    m_task.invalidate();
    m_delay->stop();
    m_refresh->stop();
    m_done = nullptr;
    m_file = nullptr;
    m_observer.reset();
}

bool FileLoader::open(TOrbMDBFile *file, std::function<void(LoadResult)> done)
{
    if (m_file || !file)
        return false;
    if (file->active()) {
        done(LoadResult::Opened);
        emit finished(LoadResult::Opened);
        return true;
    }
    m_file = file;
    m_done = std::move(done);
    m_task.clearStop();
    m_observer = std::make_unique<Observer>(m_task);
    m_delay->start();
    Observer *observer = m_observer.get();
    m_task.post([this, file, observer](const BackgroundTask::Run &run) {
        const bool ok = file->open(*m_reader, observer);
        QMetaObject::invokeMethod(
            this, [this, generation = run.generation(), ok] { workerDone(generation, ok); }, Qt::QueuedConnection);
    });
    return true;
}

void FileLoader::workerDone(std::uint64_t generation, bool ok)
{
    if (!m_file || !m_task.isCurrent(generation))
        return;    // shut down meanwhile
    m_task.wait(); // the work has only to return
    m_delay->stop();
    m_refresh->stop();
    if (m_dialog) {
        m_dialog->hide();
        m_dialog->deleteLater();
    }
    const LoadResult result =
        ok ? LoadResult::Opened : (m_task.stopRequested() ? LoadResult::Cancelled : LoadResult::Failed);
    m_file = nullptr;
    m_observer.reset();
    auto done = std::move(m_done);
    m_done = nullptr;
    if (done)
        done(result);
    emit finished(result);
}

void FileLoader::showProgress()
{
    if (!m_file)
        return;
    auto *dialog = new QProgressDialog(m_parent);
    dialog->setWindowTitle(localizedQ("Opening"));
    dialog->setLabelText(toQString(localizedFormat("Opening %@…", {m_file->name() + "." + m_file->fileExtension()})));
    dialog->setCancelButtonText(localizedQ("Cancel"));
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMinimumDuration(0);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->setRange(0, 0);
    connect(dialog, &QProgressDialog::canceled, this, &FileLoader::cancel);
    m_dialog = dialog;
    dialog->show();
    m_refresh->start();
}

void FileLoader::updateProgress()
{
    if (!m_dialog || !m_observer || !m_file)
        return;
    std::string table;
    std::size_t index = 0, count = 0;
    std::uint64_t rows = 0, expected = 0;
    m_observer->snapshot(table, index, count, rows, expected);
    // The bar follows the rows when the table definitions gave a total, the tables otherwise.
    if (expected > 0) {
        constexpr int kSteps = 1000;
        m_dialog->setRange(0, kSteps);
        m_dialog->setValue(static_cast<int>(kSteps * std::min(rows, expected) / expected));
    } else if (count > 0) {
        m_dialog->setRange(0, static_cast<int>(count));
        m_dialog->setValue(static_cast<int>(index));
    }
    if (!table.empty())
        m_dialog->setLabelText(
            toQString(localizedFormat("Loading %@… (%d rows)", {table, static_cast<long long>(rows)})));
}

} // namespace vellum

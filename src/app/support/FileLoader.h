#pragma once

#include "util/BackgroundTask.h"

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <functional>
#include <memory>

class QProgressDialog;
class QTimer;
class QWidget;

namespace vellum {

class FileReader;
class TOrbMDBFile;

/// How an open ended.
enum class LoadResult { Opened, Failed, Cancelled };

/// Opens one database file on a worker thread so that the window stays responsive. After half a
/// second a window-modal progress dialog with Cancel appears on `parent`, fed by the loader's
/// observer. While it runs, nobody else may touch the file object; `isLoading` tells the views.
/// One open at a time per loader; every open reads through the loader's reader.
class FileLoader : public QObject {
    Q_OBJECT
public:
    /// `reader` (not null) reads every file this loader opens, on the worker thread.
    FileLoader(QWidget *parent, std::shared_ptr<FileReader> reader);
    ~FileLoader() override;

    /// Starts opening `file`; `done` runs on the main thread when it ended. An active file is
    /// reported opened at once. False (nothing started) while another open runs.
    bool open(TOrbMDBFile *file, std::function<void(LoadResult)> done);
    /// The password (UTF-8) the next opens decrypt encrypted files with; empty for none. Only
    /// while no open runs (the reader is used on the worker thread).
    void setPassword(const std::string &password);
    bool isBusy() const { return m_file != nullptr; }
    /// Whether this file object is being loaded right now.
    bool isLoading(const TOrbMDBFile *file) const { return file && file == m_file; }
    /// Asks the running open to stop (as the dialog's Cancel does).
    void cancel() { m_task.requestStop(); }
    /// Stops a running open and waits for its worker, without reporting it (quitting).
    void shutdown();

    /// How long an open runs before the progress dialog shows (milliseconds).
    static constexpr int kDialogDelayMs = 500;

signals:
    /// Emitted on the main thread after `done` ran.
    void finished(vellum::LoadResult result);

private:
    class Observer;
    void workerDone(std::uint64_t generation, bool ok);
    void showProgress();
    void updateProgress();

    QWidget *m_parent;
    std::shared_ptr<FileReader> m_reader;
    TOrbMDBFile *m_file = nullptr;
    std::function<void(LoadResult)> m_done;
    std::unique_ptr<Observer> m_observer;
    QTimer *m_delay;
    QTimer *m_refresh;
    QPointer<QProgressDialog> m_dialog;
    // Runs the open; its stop flag is the Cancel. Last, so that it stops before the rest goes.
    BackgroundTask m_task;
};

} // namespace vellum

#pragma once

// The export job: one database file, one kind, the chosen tables, the option values and the
// target path, run by one worker thread that reports to an observer. The GUI's export wizard
// and `vellum-cli export` both fill a job and start it; neither writes files itself.
//
// Adding an export kind (for writer authors)
// -----------------------------------------
// 1. Write the routine in its own file under src/export/ (e.g. SqlExport.cpp) as
//        void exportSQLThread(ExportJob &job);
//    declare it in export/ExportRoutines.h, give the kind a value in ExportFileType.h, one row
//    in export/exportRegistry.cpp (name, extension, title, routine) and a place in its menu
//    order, and add the kind to the rows of the options it takes.
// 2. The driver around the routine already resets m_successTableCount before it, runs it on the
//    worker thread and posts `exportThreadFinished` after it: the routine does neither.
// 3. Inside the routine:
//    - Loop with `job.forEachTable(...)`: it posts `updateProgressPanel` (zero-based) before
//      each entry and waits for it, finds the entry's table by exact name (skipping a missing
//      one silently) and stops as soon as the stop flag is set.
//    - Poll `job.terminated()` between rows (and between fields where you write field by
//      field). On stop: close and delete the file you began, then
//      `job.logFailure(table.name(), kExportReasonTerminated)`.
//    - Every failure of a table is one `job.logFailure(tableName, englishReason)` line,
//      "<%@> %@: %@" of the name, "Failed" and the reason (both localized here). A writer's
//      own reasons are English texts, which are the localization keys.
//    - A table written completely: `job.addSuccess()`.
//    - Where to write: `job.outputPathForEntry(entry)` with one file per table,
//      `job.exportPath()` when `job.options().exportSingleFile` is on.
//    - Options: `job.options()` (export/ExportOptions.h; a new one adds a field with its default
//      there and a row in export/exportRegistry.cpp).
//    - Optional finer progress inside a long table: `job.reportRowProgress(row, rowCount)`.
//    - Writers take a sink (export/ExportSink.h) so their output can be tested in memory.
// 4. The command line and the wizard are generated from the registry: the kind's row and its
//    options' rows are all they need.

#include "export/ExportEntry.h"
#include "export/ExportFileType.h"
#include "export/ExportOptions.h"
#include "export/ExportReport.h"
#include "util/BackgroundTask.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class ExportJob;
class TOrbMDBFile;
class TOrbMDBTable;

/// Values of one table that an output could not keep exactly, and how they were approximated.
struct ExportApproximation {
    std::string tableName;
    std::string what; ///< English text, e.g. "times rounded to microseconds"
    std::size_t count = 0;
};

/// Receives the job's reports. Every call comes on the worker thread, which waits until the
/// call returns; a window posts it to its own thread and blocks (Qt::BlockingQueuedConnection).
class ExportObserver {
public:
    virtual ~ExportObserver() = default;
    /// Entry `index` (zero-based, of `job.entries().size()`) is about to begin.
    virtual void updateProgressPanel(const ExportJob &job, std::size_t index) = 0;
    /// Rows written so far of the current table; at most every few thousand rows. Optional.
    virtual void updateRowProgress(const ExportJob &job, std::size_t rowsDone, std::size_t rowCount);
    /// The worker's last act; `job.report()` is final from here on. Do not destroy the job
    /// inside this call (its destructor waits for the worker).
    virtual void exportThreadFinished(const ExportJob &job) = 0;
};

/// Reasons of the error log (English texts; localized when the line is made).
inline constexpr const char *kExportReasonUnableToCreateFile = "Unable to create file for export.";
inline constexpr const char *kExportReasonUnableToWriteFile = "Unable to write file for export.";
inline constexpr const char *kExportReasonTerminated = "Terminated.";
inline constexpr const char *kExportReasonEncodingUnavailable = "The chosen text encoding is not available.";

/// One export of one file. The window or the command line sets the entries, options and path,
/// calls `startExport`, and reads `report()` after `exportThreadFinished`. While the worker
/// runs, only `stop()` may be called from other threads.
class ExportJob {
public:
    /// A routine of a kind: writes the job's entries (see the comment at the top).
    using Routine = void (*)(ExportJob &job);

    /// The job for the open `file` (the caller reads it: export does not read databases) and
    /// `kind`, with one entry per table in the file's order: all selected when `selectedTable`
    /// is null (whole file), otherwise only the entry of that very table. Options start at the
    /// kind's defaults.
    ExportJob(TOrbMDBFile &file, const TOrbMDBTable *selectedTable, ExportFileType kind);
    ~ExportJob();
    ExportJob(const ExportJob &) = delete;
    ExportJob &operator=(const ExportJob &) = delete;

    const TOrbMDBFile &file() const { return *m_exportFile; }
    ExportFileType kind() const { return m_exportFileType; }
    /// True when opened for the whole file (no preselected table).
    bool wholeFile() const { return m_selectedTable; }

    const std::vector<ExportEntry> &entries() const { return m_tableEntries; }
    int selectedTableCount() const { return m_selectedTableCount; }
    /// Marks one entry and keeps the selected count.
    void setEntrySelected(std::size_t index, bool selected);
    /// Replaces an entry's file name.
    void setEntryFileName(std::size_t index, std::string fileName);
    /// Selects or deselects every entry.
    void markAllTableEntriesAsSelected(bool selected);

    const ExportOptions &options() const { return m_options; }
    ExportOptions &mutableOptions() { return m_options; }
    void setOptions(const ExportOptions &options) { m_options = options; }
    /// The path text: the folder for one file per table, the file for a single file.
    const std::string &exportPath() const { return m_exportPath; }
    void setExportPath(std::string path) { m_exportPath = std::move(path); }

    /// The wizard's OK rule for the current state.
    bool canStartExport() const;

    /// Removes the unselected entries and runs the kind's routine on a new worker thread.
    /// False (nothing started) when the kind has no routine or a worker was started already.
    [[nodiscard]] bool startExport(ExportObserver *observer);
    /// Sets the stop flag; the worker stops at its next check. Any thread, also a signal handler.
    void stop() { m_worker.requestStop(); }
    /// Waits for the worker to end (no-op when none runs, or on the worker itself).
    void wait() { m_worker.wait(); }
    /// The stop flag, for handlers that only hold the flag (e.g. a signal handler).
    std::atomic<bool> &terminateFlag() { return m_worker.stopFlag(); }

    /// The final report of the finished export (title and message).
    ExportReport report() const;
    bool terminated() const { return m_worker.stopRequested(); }
    std::int64_t successTableCount() const { return m_successTableCount; }
    const std::vector<std::string> &msgLog() const { return m_msgLog; }

    // ---- for routines, on the worker thread ----

    /// Runs `body` for each entry in order: stops when the flag is set, posts the progress for
    /// entry i and waits, finds the table by exact name and skips the entry when it is missing.
    void forEachTable(
        const std::function<void(std::size_t index, const ExportEntry &entry, const TOrbMDBTable &table)> &body);
    /// "%@/%@" of the path text and the entry's file name.
    std::string outputPathForEntry(const ExportEntry &entry) const;
    /// Adds "<%@> %@: %@" (table name, localized "Failed", localized `reason`) to the log.
    void logFailure(std::string_view tableName, const char *reason);
    /// Like `logFailure`, followed by the target's own error text (a database's message) as a
    /// second, indented line, so that a failed table can be understood.
    void logFailure(std::string_view tableName, const char *reason, std::string_view detail);
    /// Counts `count` values of `tableName` that the output could only approximate, `what`
    /// saying how (English; the same text adds to the same count). The report lists a warning
    /// line per table and text after the routine ends.
    void countApproximation(std::string_view tableName, std::string_view what, std::size_t count = 1);
    /// The approximations counted so far, in the order first counted.
    const std::vector<ExportApproximation> &approximations() const { return m_approximations; }
    /// Adds a line made by the writer itself.
    void logLine(std::string line) { m_msgLog.push_back(std::move(line)); }
    /// Counts a table written completely.
    void addSuccess() { ++m_successTableCount; }
    /// Takes back the tables counted so far: their shared output could not be saved.
    void clearSuccesses() { m_successTableCount = 0; }
    /// Passes row progress to the observer every 4096 rows and at the end of a table.
    void reportRowProgress(std::size_t rowsDone, std::size_t rowCount)
    {
        if (m_observer && ((rowsDone & 4095) == 0 || rowsDone == rowCount))
            m_observer->updateRowProgress(*this, rowsDone, rowCount);
    }

    /// Runs the routine on the calling thread with the driver's frame (reset, routine,
    /// finished call). `startExport` runs this on the worker.
    void runRoutine(Routine routine);

private:
    /// Makes the chosen entries' file names safe for a folder and distinct, logging each
    /// renamed one: two tables never write one file.
    void assignDistinctFileNames();

    TOrbMDBFile *m_exportFile;
    ExportFileType m_exportFileType;
    std::vector<ExportEntry> m_tableEntries;
    int m_selectedTableCount = 0;
    bool m_selectedTable = false;
    ExportOptions m_options;
    std::string m_exportPath;
    std::int64_t m_successTableCount = 0;
    std::vector<std::string> m_msgLog;
    std::vector<ExportApproximation> m_approximations;
    ExportObserver *m_observer = nullptr;
    bool m_started = false;
    // Runs the routine; its stop flag is the job's. Last, so that it ends before the rest goes.
    BackgroundTask m_worker;
};

} // namespace vellum

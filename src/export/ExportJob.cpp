#include "export/ExportJob.h"

#include "export/ExportReport.h"
#include "export/ExportRoutines.h"
#include "export/OutputFile.h"
#include "export/exportPaths.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/logging.h"

#include <algorithm>
#include <set>

namespace vellum {

void ExportObserver::updateRowProgress(const ExportJob &, std::size_t, std::size_t) {}

ExportJob::ExportJob(TOrbMDBFile &file, const TOrbMDBTable *selectedTable, ExportFileType kind)
    : m_exportFile(&file), m_exportFileType(kind), m_selectedTable(selectedTable == nullptr)
{
    if (!file.active())
        C_LogError("Export: file (%s) cannot be opened", file.fullPath().c_str());
    for (const auto &table : file.tables()) {
        ExportEntry entry = ExportEntry::exportEntryWithTableName(table->name(), kind);
        entry.selected = selectedTable == nullptr || selectedTable == table.get();
        if (entry.selected)
            ++m_selectedTableCount;
        m_tableEntries.push_back(std::move(entry));
    }
    m_options = ExportOptions::defaultsFor(kind, m_selectedTable);
}

ExportJob::~ExportJob()
{
    stop();
    wait();
}

void ExportJob::setEntrySelected(std::size_t index, bool selected)
{
    if (index >= m_tableEntries.size() || m_tableEntries[index].selected == selected)
        return;
    m_tableEntries[index].selected = selected;
    m_selectedTableCount += selected ? 1 : -1;
}

void ExportJob::setEntryFileName(std::size_t index, std::string fileName)
{
    if (index < m_tableEntries.size())
        m_tableEntries[index].exportFileName = std::move(fileName);
}

void ExportJob::markAllTableEntriesAsSelected(bool selected)
{
    for (ExportEntry &entry : m_tableEntries)
        entry.selected = selected;
    m_selectedTableCount = selected ? static_cast<int>(m_tableEntries.size()) : 0;
}

bool ExportJob::canStartExport() const
{
    return enableOkButtonCheck(m_exportPath, m_selectedTableCount, m_options);
}

bool ExportJob::startExport(ExportObserver *observer)
{
    const Routine routine = exportRoutineForType(m_exportFileType);
    if (!routine || m_started)
        return false;
    m_started = true;
    m_tableEntries.erase(std::remove_if(m_tableEntries.begin(), m_tableEntries.end(),
                                        [](const ExportEntry &entry) { return !entry.selected; }),
                         m_tableEntries.end());
    m_selectedTableCount = static_cast<int>(m_tableEntries.size());
    assignDistinctFileNames();
    m_observer = observer;
    m_worker.post([this, routine](const BackgroundTask::Run &) { runRoutine(routine); });
    return true;
}

void ExportJob::assignDistinctFileNames()
{
    if (m_exportFileType == ExportFileType::SQLite || m_options.exportSingleFile)
        return;
    std::set<std::string> used;
    for (ExportEntry &entry : m_tableEntries) {
        const std::string wanted = folderSafeFileName(entry.exportFileName);
        std::string name = wanted;
        if (used.count(name)) {
            const std::size_t dot = wanted.rfind('.');
            const bool hasExtension = dot != std::string::npos && dot > 0;
            const std::string stem = hasExtension ? wanted.substr(0, dot) : wanted;
            const std::string extension = hasExtension ? wanted.substr(dot) : std::string();
            for (int n = 2; used.count(name); ++n)
                name = stem + " (" + std::to_string(n) + ")" + extension;
            m_msgLog.push_back(exportWarningLine(
                entry.tableName,
                formatObjects("written as \"%@\": another table's file is named \"%@\"", {name, wanted})));
        }
        used.insert(name);
        entry.exportFileName = name;
    }
}

void ExportJob::runRoutine(Routine routine)
{
    m_successTableCount = 0;
    m_approximations.clear();
    routine(*this);
    for (const ExportApproximation &approximation : m_approximations)
        m_msgLog.push_back(exportWarningLine(
            approximation.tableName,
            formatString(
                localized(approximation.count == 1 ? "%d value approximated: %s" : "%d values approximated: %s")
                    .c_str(),
                static_cast<int>(approximation.count), localized(approximation.what.c_str()).c_str())));
    if (m_observer)
        m_observer->exportThreadFinished(*this);
}

ExportReport ExportJob::report() const
{
    return makeExportReport(terminated(), m_successTableCount, m_msgLog);
}

void ExportJob::forEachTable(
    const std::function<void(std::size_t index, const ExportEntry &entry, const TOrbMDBTable &table)> &body)
{
    for (std::size_t i = 0; i < m_tableEntries.size(); ++i) {
        if (terminated())
            return;
        if (m_observer)
            m_observer->updateProgressPanel(*this, i);
        const ExportEntry &entry = m_tableEntries[i];
        const auto &tables = m_exportFile->tables();
        const auto found = std::find_if(tables.begin(), tables.end(),
                                        [&](const auto &table) { return table->name() == entry.tableName; });
        if (found == tables.end())
            continue;
        body(i, entry, **found);
    }
}

std::string ExportJob::outputPathForEntry(const ExportEntry &entry) const
{
    // The standard output, a device or a named pipe takes the one table a per-table kind
    // writes there.
    if (OutputFile::isStream(m_exportPath))
        return m_exportPath;
    return exportOutputPath(m_exportPath, entry);
}

void ExportJob::logFailure(std::string_view tableName, const char *reason)
{
    m_msgLog.push_back(exportFailureLine(tableName, reason));
}

void ExportJob::logFailure(std::string_view tableName, const char *reason, std::string_view detail)
{
    std::string line = exportFailureLine(tableName, reason);
    if (!detail.empty())
        line += "\n    " + std::string(detail);
    m_msgLog.push_back(std::move(line));
}

void ExportJob::countApproximation(std::string_view tableName, std::string_view what, std::size_t count)
{
    for (ExportApproximation &approximation : m_approximations) {
        if (approximation.tableName == tableName && approximation.what == what) {
            approximation.count += count;
            return;
        }
    }
    m_approximations.push_back({std::string(tableName), std::string(what), count});
}

} // namespace vellum

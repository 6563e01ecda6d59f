#include "export/ExportRoutines.h"

#include "export/ExportJob.h"
#include "export/ExportSink.h"
#include "export/LosslessSqlWriter.h"
#include "export/SqlScriptWriter.h"
#include "model/TOrbMDBTable.h"
#include "util/format.h"
#include "util/localized.h"

#include <vector>

namespace vellum {

namespace {

/// Writes the job's tables with a script writer (classic or lossless; both have one interface).
template <typename Writer> void writeScripts(ExportJob &job, const SqlScriptSettings &settings, Writer &writer)
{
    const auto rowProgress = [&job](std::size_t done, std::size_t count) { job.reportRowProgress(done, count); };

    if (settings.singleFile) {
        FileSink sink;
        if (!sink.open(job.exportPath())) {
            job.logLine(localized(kExportReasonUnableToCreateFile));
            return;
        }
        bool written = writer.writePrologue(sink);
        std::vector<const TOrbMDBTable *> writtenTables;
        job.forEachTable([&](std::size_t, const ExportEntry &, const TOrbMDBTable &table) {
            if (!written)
                return;
            written = writer.writeTable(table, sink, rowProgress);
            writtenTables.push_back(&table);
        });
        if (job.terminated()) {
            sink.discard();
            job.logLine(formatObjects("%@: %@", {localized("Failed"), localized(kExportReasonTerminated)}));
            return;
        }
        written = written && writer.writeSingleScriptEnd(writtenTables, sink) && writer.writeEpilogue(sink);
        if (!written || !sink.close()) {
            sink.discard();
            job.logLine(localized(kExportReasonUnableToWriteFile));
            return;
        }
        // The tables count as exported only once the whole script is on the disk.
        for (std::size_t i = 0; i < writtenTables.size(); ++i)
            job.addSuccess();
        return;
    }

    job.forEachTable([&](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) {
        FileSink sink;
        if (!sink.open(job.outputPathForEntry(entry))) {
            job.logFailure(entry.tableName, kExportReasonUnableToCreateFile);
            return;
        }
        const bool written =
            writer.writePrologue(sink) && writer.writeTable(table, sink, rowProgress) && writer.writeEpilogue(sink);
        if (job.terminated()) {
            sink.discard();
            job.logFailure(entry.tableName, kExportReasonTerminated);
        } else if (!written || !sink.close()) {
            sink.discard();
            job.logFailure(entry.tableName, kExportReasonUnableToWriteFile);
        } else {
            job.addSuccess();
        }
    });
}

} // namespace

void exportSQLThread(ExportJob &job)
{
    const SqlScriptSettings settings = SqlScriptSettings::fromOptions(job.options());
    if (job.options().lossless) {
        LosslessSqlWriter writer(job.file(), settings, job.terminateFlag(),
                                 [&job](std::string_view table, std::string_view what, std::size_t count) {
                                     job.countApproximation(table, what, count);
                                 });
        writeScripts(job, settings, writer);
        return;
    }
    SqlScriptWriter writer(job.file(), settings, job.terminateFlag());
    writeScripts(job, settings, writer);
}

} // namespace vellum

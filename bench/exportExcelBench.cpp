// Workbook export benchmark: the table Big of big.mdb (200,000 rows × 10 columns) exported to
// .xls and to .xlsx, against the CSV export of the same table.
//   1. The commands as a user runs them, `vellum-cli export FILE OUT --format F --table Big`
//      (opening the file and writing), alternating, best of several runs. Targets: .xls at most
//      1.5 times the CSV time, .xlsx at most 3 times (processor time, the steadier figure on a
//      busy machine; wall time printed too).
//   2. The writing alone, from the model loaded in this process, each export in a child forked
//      after loading so that its peak memory is its own, classic and lossless workbooks. Target:
//      none holds more than the loaded model plus one sheet's strings (the text of the rows of
//      one sheet: 65,536 rows for .xls, the whole table for .xlsx). The writing times are
//      printed as well.
//
//   bench_exportExcelBench [SHARED_TESTDATA_DIR] [RUNS] [FILE...]

#include "benchCommon.h"

#include "export/ExportJob.h"
#include "export/SpreadsheetExport.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

using namespace vellum;
using namespace vellum::bench;

namespace {

/// Private (anonymous) resident memory of this process in bytes: what its own allocations
/// take. A forked child starts with its parent's, the loaded model included.
long long anonymousResidentBytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("RssAnon:", 0) == 0)
            return std::atoll(line.c_str() + 8) * 1024;
    return 0;
}

/// Samples a value every millisecond on its own thread and keeps the largest.
class PeakSampler {
public:
    explicit PeakSampler(long long (*sample)()) : m_sample(sample), m_peak(sample())
    {
        m_thread = std::thread([this] {
            while (!m_stop.load()) {
                m_peak = std::max(m_peak.load(), m_sample());
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    long long stop()
    {
        m_stop = true;
        m_thread.join();
        return std::max(m_peak.load(), m_sample());
    }

private:
    long long (*m_sample)();
    std::atomic<long long> m_peak;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

struct Run {
    double wall = -1;
    double cpu = 0;
    long long peakExtra = 0; ///< peak private resident bytes above those at the start
};

/// One export of the table in a forked child (`lossless`: the lossless output).
Run runExport(TOrbMDBFile &file, const TOrbMDBTable &table, ExportFileType kind, const std::string &folder,
              bool lossless)
{
    const std::vector<double> result = runInChild([&] {
        const long long baseline = anonymousResidentBytes();
        PeakSampler sampler(anonymousResidentBytes);
        const double cpuBefore = cpuSeconds(RUSAGE_SELF);
        const auto start = std::chrono::steady_clock::now();
        ExportJob job(file, &table, kind);
        job.mutableOptions().lossless = lossless;
        job.setExportPath(folder);
        bool ok = job.startExport(nullptr);
        job.wait();
        ok = ok && job.successTableCount() == 1;
        const double wall = since(start);
        const double cpu = cpuSeconds(RUSAGE_SELF) - cpuBefore; // the sampler's share is small
        return std::vector<double>{ok ? wall : -1, cpu, static_cast<double>(sampler.stop() - baseline)};
    });
    Run run;
    if (result.size() == 3) {
        run.wall = result[0];
        run.cpu = result[1];
        run.peakExtra = static_cast<long long>(result[2]);
    }
    return run;
}

/// Bytes of text in the rows [first, first + count) of the table's text columns: what the
/// rows of one sheet hold as strings.
long long sheetStringBytes(const TOrbMDBTable &table, std::size_t first, std::size_t count)
{
    long long bytes = 0;
    const auto &columns = table.columns();
    for (std::size_t r = first; r < std::min(table.rowCount(), first + count); ++r)
        for (std::size_t c = 0; c < columns.size(); ++c)
            if (!isSpreadsheetNumberType(columns[c]->dataType()))
                bytes += static_cast<long long>(table.cell(r, c).text.size());
    return bytes;
}

double megabytes(long long bytes)
{
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 3;
    std::vector<std::string> names;
    for (int i = 3; i < argc; ++i)
        names.emplace_back(argv[i]);
    if (names.empty())
        names = {"big.mdb"};
    const std::string work = makeWorkFolder();
    if (work.empty())
        return 1;
    bool allMet = true;
    for (const std::string &name : names) {
        const std::string path = dir + "/" + name;
        if (access(path.c_str(), R_OK) != 0) {
            std::printf("%s: not found in %s, skipped\n", name.c_str(), dir.c_str());
            continue;
        }
        auto file = TOrbMDBFile::fromPath(path);
        if (!file->open(*commandLineReader())) {
            std::printf("%s: cannot be opened\n", name.c_str());
            return 1;
        }
        const TOrbMDBTable *table = file->tableNamed("Big");
        if (!table) {
            std::printf("%s: no table Big\n", name.c_str());
            return 1;
        }
        const long long model = static_cast<long long>(table->store().memoryUsage());
        long long xlsSheet = 0;
        for (std::size_t first = 0; first < table->rowCount(); first += 65535)
            xlsSheet = std::max(xlsSheet, sheetStringBytes(*table, first, 65535));
        const long long xlsxSheet = sheetStringBytes(*table, 0, table->rowCount());
        std::printf("%s: %zu rows; model %.1f MB; one sheet's strings: .xls %.1f MB, .xlsx %.1f MB\n", name.c_str(),
                    table->rowCount(), megabytes(model), megabytes(xlsSheet), megabytes(xlsxSheet));

        // 1. The commands.
        const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
        CommandTime commandBest[3] = {{1e9, 1e9}, {1e9, 1e9}, {1e9, 1e9}};
        const char *formats[3] = {"csv", "xls", "xlsx"};
        for (int i = 0; i < runs; ++i) {
            for (int f = 0; f < 3; ++f) {
                const std::string out = work + "/command-" + formats[f] + (f == 0 ? "" : std::string(".") + formats[f]);
                const CommandTime time = timeShellCommand(
                    shellQuoted(cli) + " export " + shellQuoted(path) + " " + shellQuoted(out) + " --format " +
                    formats[f] + (f == 0 ? " --table Big" : " --table Big --single-file") + " > /dev/null");
                if (time.wall < 0) {
                    std::printf("%s: vellum-cli export --format %s failed\n", name.c_str(), formats[f]);
                    return 1;
                }
                commandBest[f] = {std::min(commandBest[f].wall, time.wall), std::min(commandBest[f].cpu, time.cpu)};
            }
        }
        std::printf("%s: vellum-cli export --table Big: csv %.3f s (processor %.3f s)\n", name.c_str(),
                    commandBest[0].wall, commandBest[0].cpu);
        const double targets[3] = {0, 1.5, 3.0};
        for (int f = 1; f < 3; ++f) {
            const double cpuRatio = commandBest[f].cpu / commandBest[0].cpu;
            const bool met = cpuRatio <= targets[f];
            allMet = allMet && met;
            std::printf(
                "%s: vellum-cli export --table Big: %-4s %.3f s (processor %.3f s); ratio to csv %.2f (wall %.2f), "
                "target <= %.1f: %s\n",
                name.c_str(), formats[f], commandBest[f].wall, commandBest[f].cpu, cpuRatio,
                commandBest[f].wall / commandBest[0].wall, targets[f], met ? "met" : "NOT met");
        }

        // 2. The writing alone.
        struct Kind {
            ExportFileType kind;
            const char *extension;
            long long memoryTarget;
            bool lossless;
            Run best{1e9, 1e9, 0};
            std::string folder(const std::string &work) const
            {
                return work + "/" + extension + (lossless ? "-lossless" : "");
            }
            std::string label() const { return std::string(extension) + (lossless ? " lossless" : ""); }
        };
        Kind kinds[] = {{ExportFileType::CSV, "csv", 0, false},
                        {ExportFileType::XLS, "xls", xlsSheet, false},
                        {ExportFileType::XLSX, "xlsx", xlsxSheet, false},
                        {ExportFileType::XLS, "xls", xlsSheet, true},
                        {ExportFileType::XLSX, "xlsx", xlsxSheet, true}};
        for (int i = 0; i < runs; ++i) {
            for (Kind &k : kinds) {
                const std::string folder = k.folder(work);
                std::filesystem::create_directories(folder);
                const Run run = runExport(*file, *table, k.kind, folder, k.lossless);
                if (run.wall < 0) {
                    std::printf("%s: the %s export failed\n", name.c_str(), k.extension);
                    return 1;
                }
                k.best.wall = std::min(k.best.wall, run.wall);
                k.best.cpu = std::min(k.best.cpu, run.cpu);
                k.best.peakExtra = std::max(k.best.peakExtra, run.peakExtra);
            }
        }
        const Run &csv = kinds[0].best;
        std::printf(
            "%s: writing from the loaded model: csv  %.3f s (processor %.3f s), %lld bytes, peak memory %.1f MB\n",
            name.c_str(), csv.wall, csv.cpu, fileBytes(work + "/csv/Big.csv"), megabytes(csv.peakExtra));
        for (const Kind &k : {kinds[1], kinds[2], kinds[3], kinds[4]}) {
            const bool memoryMet = k.best.peakExtra <= k.memoryTarget;
            allMet = allMet && memoryMet;
            std::printf(
                "%s: writing from the loaded model: %-13s %.3f s (processor %.3f s, %.2f times csv), %lld bytes\n",
                name.c_str(), k.label().c_str(), k.best.wall, k.best.cpu, k.best.cpu / csv.cpu,
                fileBytes(k.folder(work) + "/Big." + k.extension));
            std::printf("%s: %-13s peak memory above the loaded model %.1f MB, one sheet's strings %.1f MB: %s\n",
                        name.c_str(), k.label().c_str(), megabytes(k.best.peakExtra), megabytes(k.memoryTarget),
                        memoryMet ? "met" : "NOT met");
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(work, ignored);
    return allMet ? 0 : 1;
}

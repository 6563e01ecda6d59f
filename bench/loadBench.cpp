// Loading benchmark: opens big.mdb and big.accdb (200,000 rows × 10 columns) into the model and
// compares the time with `mdb-export` of the same table to /dev/null, and the peak memory with
// the size of the table's CSV text. Each measurement runs in a child process of its own so that
// the peak resident size belongs to that load alone.
//
//   bench_loadBench [SHARED_TESTDATA_DIR]

#include "benchCommon.h"

#include "mdb/InProcessReader.h"
#include "model/TOrbMDBFile.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

using namespace vellum;
using namespace vellum::bench;

namespace {

struct Measure {
    double seconds = 0;
    double cpu = 0;
    long peakKiB = 0;
    bool ok = false;
};

/// Loads the file in a forked child, which reports its time.
Measure measureLoad(const std::string &path, FileReader &reader)
{
    Measure m;
    const std::vector<double> result = runInChild(
        [&] {
            const auto start = std::chrono::steady_clock::now();
            const double cpuStart = cpuSeconds(RUSAGE_SELF);
            auto file = TOrbMDBFile::fromPath(path);
            const bool ok = file->open(reader, nullptr);
            const double seconds = since(start);
            const double cpu = cpuSeconds(RUSAGE_SELF) - cpuStart;
            std::size_t rows = 0;
            for (const auto &table : file->tables())
                rows += table->rowCount();
            return std::vector<double>{ok ? 1.0 : 0.0, seconds, static_cast<double>(rows), cpu};
        },
        &m.peakKiB);
    if (result.size() == 4) {
        m.ok = result[0] == 1.0 && result[2] > 0;
        m.seconds = result[1];
        m.cpu = result[3];
    }
    return m;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    std::printf("%-11s %8s %8s %6s %8s %8s %6s %9s %8s %6s\n", "file", "load s", "export s", "ratio", "load cpu",
                "exp cpu", "ratio", "peak MiB", "csv MiB", "ratio");
    int failures = 0;
    for (const char *name : {"big.mdb", "big.accdb"}) {
        const std::string path = dir + "/" + name;
        if (fileBytes(path) < 0) {
            std::printf("%s: not found in %s, skipped\n", name, dir.c_str());
            continue;
        }
        const std::string csv = "/tmp/vellum-bench-big.csv";
        if (timeShellCommand("mdb-export " + shellQuoted(path) + " Big > " + csv).wall < 0) {
            std::printf("%s: mdb-export failed\n", name);
            ++failures;
            continue;
        }
        const double csvMiB = static_cast<double>(fileBytes(csv)) / 1048576.0;
        std::remove(csv.c_str());
        // Best of five for both sides: the machine is shared.
        double best = 1e9, bestExport = 1e9, bestCpu = 1e9, bestExportCpu = 1e9;
        long peak = 0;
        InProcessReader reader;
        for (int round = 0; round < 5; ++round) {
            const Measure m = measureLoad(path, reader);
            if (!m.ok) {
                std::printf("%s: loading failed\n", name);
                ++failures;
                break;
            }
            best = std::min(best, m.seconds);
            bestCpu = std::min(bestCpu, m.cpu);
            peak = m.peakKiB;
            const CommandTime exported = timeShellCommand("mdb-export " + shellQuoted(path) + " Big > /dev/null");
            bestExport = std::min(bestExport, exported.wall);
            bestExportCpu = std::min(bestExportCpu, exported.cpu);
        }
        const double peakMiB = peak / 1024.0;
        std::printf("%-11s %8.3f %8.3f %6.2f %8.3f %8.3f %6.2f %9.1f %8.1f %6.2f\n", name, best, bestExport,
                    best / bestExport, bestCpu, bestExportCpu, bestCpu / bestExportCpu, peakMiB, csvMiB,
                    peakMiB / csvMiB);
    }
    std::printf("targets: load/export wall <= 0.30, processor <= 0.60, peak memory / CSV size <= 1.25\n");
    return failures ? 1 : 0;
}

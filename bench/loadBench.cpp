// Loading benchmark: opens big.mdb and big.accdb (200,000 rows × 10 columns) into the model and
// compares the time with `mdb-export` of the same table to /dev/null, and the peak memory with
// the size of the table's CSV text. Each measurement runs in a child process of its own so that
// the peak resident size belongs to that load alone.
//
//   bench_loadBench [SHARED_TESTDATA_DIR]

#include "benchCommon.h"

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
    long peakKiB = 0;
    bool ok = false;
};

/// Loads the file in a forked child; the child reports its time through a pipe.
Measure measureLoad(const std::string &path, LoadMode mode)
{
    int fds[2];
    if (pipe(fds) != 0)
        return {};
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        const auto start = std::chrono::steady_clock::now();
        auto file = TOrbMDBFile::fromPath(path);
        const bool ok = file->open(mode, nullptr);
        const double seconds = since(start);
        size_t rows = 0;
        for (const auto &table : file->tables())
            rows += table->rowCount();
        char line[128];
        const int n = std::snprintf(line, sizeof line, "%d %.6f %zu\n", ok ? 1 : 0, seconds, rows);
        if (write(fds[1], line, static_cast<size_t>(n)) != n)
            _exit(2);
        _exit(0);
    }
    close(fds[1]);
    char line[128] = {0};
    const ssize_t n = read(fds[0], line, sizeof line - 1);
    close(fds[0]);
    int status = 0;
    struct rusage usage {};
    wait4(pid, &status, 0, &usage);
    Measure m;
    int ok = 0;
    size_t rows = 0;
    if (n > 0 && std::sscanf(line, "%d %lf %zu", &ok, &m.seconds, &rows) == 3)
        m.ok = ok == 1 && rows > 0;
    m.peakKiB = usage.ru_maxrss;
    return m;
}


} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    std::printf("%-11s %9s %9s %7s %10s %10s %7s\n", "file", "load s", "export s", "ratio", "peak MiB", "csv MiB",
                "ratio");
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
        // Best of three for both sides: the machine is shared.
        double best = 1e9, bestExport = 1e9;
        long peak = 0;
        for (int round = 0; round < 3; ++round) {
            const Measure m = measureLoad(path, LoadMode::InProcess);
            if (!m.ok) {
                std::printf("%s: loading failed\n", name);
                ++failures;
                break;
            }
            best = std::min(best, m.seconds);
            peak = m.peakKiB;
            bestExport = std::min(bestExport, timeShellCommand("mdb-export " + shellQuoted(path) + " Big > /dev/null").wall);
        }
        const double peakMiB = peak / 1024.0;
        std::printf("%-11s %9.3f %9.3f %7.2f %10.1f %10.1f %7.2f\n", name, best, bestExport, best / bestExport,
                    peakMiB, csvMiB, peakMiB / csvMiB);
    }
    std::printf("targets: load/export ratio <= 1.00, peak memory / CSV size <= 1.30\n");
    return failures ? 1 : 0;
}

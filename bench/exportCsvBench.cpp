// CSV export benchmark: `vellum-cli export FILE OUT --format csv --table Big` against
// `mdb-export FILE Big > file`, both run as commands on big.mdb and big.accdb (200,000 rows ×
// 10 columns), alternating, best of several runs. Vellum loads the whole file before writing,
// so the run is split further in this process: opening the file, and writing the CSV from the
// loaded model, in the lossless form (the command line's default) and the classic one. Target:
// Vellum at most 1.2 times mdb-export.
//
//   bench_exportCsvBench [SHARED_TESTDATA_DIR] [RUNS]

#include "benchCommon.h"

#include "export/ExportJob.h"
#include "model/TOrbMDBFile.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

using namespace vellum;
using namespace vellum::bench;

namespace {

/// Writing the loaded table once, lossless or classic: wall and processor seconds (-1 on failure).
void timeWrite(TOrbMDBFile &file, const std::string &folder, bool lossless, double &writeSeconds,
               double &writeCpuSeconds)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const auto start = std::chrono::steady_clock::now();
    const double cpuBefore = cpuSeconds(RUSAGE_SELF);
    ExportJob job(file, file.tableNamed("Big"), ExportFileType::CSV);
    job.mutableOptions().lossless = lossless;
    job.setExportPath(folder);
    if (!job.startExport(nullptr)) {
        writeSeconds = -1;
        return;
    }
    job.wait();
    writeSeconds = job.successTableCount() == 1 ? since(start) : -1;
    writeCpuSeconds = cpuSeconds(RUSAGE_SELF) - cpuBefore;
}

/// Opening and writing measured apart, in this process, with the reader the command line uses;
/// [0] lossless, [1] classic.
void splitVellum(const std::string &path, const std::string &folder, double &openSeconds, double writeSeconds[2],
                 double writeCpuSeconds[2])
{
    auto start = std::chrono::steady_clock::now();
    auto file = TOrbMDBFile::fromPath(path);
    if (!file->open(*commandLineReader())) {
        openSeconds = writeSeconds[0] = writeSeconds[1] = -1;
        return;
    }
    openSeconds = since(start);
    timeWrite(*file, folder + "/lossless", true, writeSeconds[0], writeCpuSeconds[0]);
    timeWrite(*file, folder + "/classic", false, writeSeconds[1], writeCpuSeconds[1]);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 3;
    const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
    const std::string work = makeWorkFolder();
    if (work.empty())
        return 1;
    bool allMet = true;
    for (const char *name : {"big.mdb", "big.accdb"}) {
        const std::string path = dir + "/" + name;
        if (access(path.c_str(), R_OK) != 0) {
            std::printf("%s: not found in %s, skipped\n", name, dir.c_str());
            continue;
        }
        const std::string out = work + "/vellum";
        const std::string peerFile = work + "/peer.csv";
        const std::string vellumCommand = shellQuoted(cli) + " export " + shellQuoted(path) + " " + shellQuoted(out) +
                                          " --format csv --table Big > /dev/null";
        const std::string peerCommand = "mdb-export " + shellQuoted(path) + " Big > " + shellQuoted(peerFile);
        CommandTime vellumBest{1e9, 1e9}, peerBest{1e9, 1e9};
        for (int i = 0; i < runs; ++i) {
            const CommandTime peer = timeShellCommand(peerCommand);
            const CommandTime ours = timeShellCommand(vellumCommand);
            if (peer.wall < 0 || ours.wall < 0) {
                std::printf("%s: a command failed (%s)\n", name, peer.wall < 0 ? "mdb-export" : "vellum-cli");
                return 1;
            }
            peerBest = {std::min(peerBest.wall, peer.wall), std::min(peerBest.cpu, peer.cpu)};
            vellumBest = {std::min(vellumBest.wall, ours.wall), std::min(vellumBest.cpu, ours.cpu)};
        }
        double openSeconds = 0, writeSeconds[2] = {0, 0}, writeCpuSeconds[2] = {0, 0};
        splitVellum(path, work + "/split", openSeconds, writeSeconds, writeCpuSeconds);
        const double ratio = vellumBest.wall / peerBest.wall;
        const double cpuRatio = vellumBest.cpu / peerBest.cpu;
        allMet = allMet && ratio <= 1.2;
        std::printf(
            "%s: vellum-cli %.3f s (%lld bytes), mdb-export %.3f s (%lld bytes), ratio %.2f (target <= 1.20: %s)\n",
            name, vellumBest.wall, fileBytes(out + "/Big.csv"), peerBest.wall, fileBytes(peerFile), ratio,
            ratio <= 1.2 ? "met" : "NOT met");
        std::printf("%s:   processor time: vellum-cli %.3f s, mdb-export %.3f s, ratio %.2f\n", name, vellumBest.cpu,
                    peerBest.cpu, cpuRatio);
        std::printf("%s:   in-process split: open %.3f s, write lossless CSV %.3f s (processor %.3f s), classic "
                    "CSV %.3f s (processor %.3f s)\n",
                    name, openSeconds, writeSeconds[0], writeCpuSeconds[0], writeSeconds[1], writeCpuSeconds[1]);
    }
    std::error_code ignored;
    std::filesystem::remove_all(work, ignored);
    return allMet ? 0 : 1;
}

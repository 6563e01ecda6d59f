// JSON export benchmark: `vellum-cli export FILE OUT --format json --table Big` against the
// same command with `--format csv`, both on big.mdb and big.accdb (200,000 rows × 10 columns),
// alternating, best of several runs. Target: the JSON export at most 1.2 times the CSV export.
// The write alone is also measured in this process from one loaded model, JSON, JSON Lines and
// CSV alternating, best of the same number of runs, and printed for information: JSON repeats
// every column name in every row, so its file is about 1.4 times the CSV file.
//
//   bench_exportJsonBench [SHARED_TESTDATA_DIR] [RUNS]

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

/// Seconds to export the table Big of a loaded file as `kind` into `folder`; negative on failure.
double timeWrite(TOrbMDBFile &file, ExportFileType kind, const std::string &folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const auto start = std::chrono::steady_clock::now();
    ExportJob job(file, file.tableNamed("Big"), kind);
    job.setExportPath(folder);
    job.mutableOptions().lossless = true; // as the command line exports
    if (!job.startExport(nullptr))
        return -1;
    job.wait();
    return job.successTableCount() == 1 ? since(start) : -1;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
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
        const auto command = [&](const char *format) {
            return shellQuoted(cli) + " export " + shellQuoted(path) + " " + shellQuoted(work + "/" + format) +
                   " --format " + format + " --table Big > /dev/null";
        };
        CommandTime jsonBest{1e9, 1e9}, csvBest{1e9, 1e9};
        for (int i = 0; i < runs; ++i) {
            const CommandTime csv = timeShellCommand(command("csv"));
            const CommandTime json = timeShellCommand(command("json"));
            if (csv.wall < 0 || json.wall < 0) {
                std::printf("%s: a vellum-cli export failed (%s)\n", name, csv.wall < 0 ? "csv" : "json");
                return 1;
            }
            csvBest = {std::min(csvBest.wall, csv.wall), std::min(csvBest.cpu, csv.cpu)};
            jsonBest = {std::min(jsonBest.wall, json.wall), std::min(jsonBest.cpu, json.cpu)};
        }
        const double ratio = jsonBest.wall / csvBest.wall;
        allMet = allMet && ratio <= 1.2;
        std::printf("%s: vellum-cli json %.3f s (%lld bytes), csv %.3f s (%lld bytes), ratio %.2f (target <= 1.20: "
                    "%s)\n",
                    name, jsonBest.wall, fileBytes(work + "/json/Big.json"), csvBest.wall,
                    fileBytes(work + "/csv/Big.csv"), ratio, ratio <= 1.2 ? "met" : "NOT met");
        std::printf("%s:   processor time: json %.3f s, csv %.3f s, ratio %.2f\n", name, jsonBest.cpu, csvBest.cpu,
                    jsonBest.cpu / csvBest.cpu);

        // The write alone, from one loaded model.
        auto file = TOrbMDBFile::fromPath(path);
        if (!file->open(*commandLineReader())) {
            std::printf("%s: cannot be opened in this process\n", name);
            return 1;
        }
        double json = 1e9, lines = 1e9, csv = 1e9;
        for (int i = 0; i < runs; ++i) {
            const double c = timeWrite(*file, ExportFileType::CSV, work + "/split-csv");
            const double j = timeWrite(*file, ExportFileType::JSON, work + "/split-json");
            const double l = timeWrite(*file, ExportFileType::JSONLines, work + "/split-jsonl");
            if (c < 0 || j < 0 || l < 0) {
                std::printf("%s: an in-process export failed\n", name);
                return 1;
            }
            csv = std::min(csv, c);
            json = std::min(json, j);
            lines = std::min(lines, l);
        }
        std::printf("%s:   write alone: json %.3f s, jsonl %.3f s, csv %.3f s, ratio %.2f\n", name, json, lines, csv,
                    json / csv);
    }
    std::error_code ignored;
    std::filesystem::remove_all(work, ignored);
    return allMet ? 0 : 1;
}

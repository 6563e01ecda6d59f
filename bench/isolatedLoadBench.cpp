// Opening benchmark: the old in-process path (one libmdb handle) against in-process with two
// handles, the isolated helper with one and with two handles, and `mdb-export` of every table,
// on big.mdb (one large table), multi.mdb (four large tables) and the largest files of the
// corpus. Best of several runs each, since the machine is shared; printed as seconds and ratios.
//
//   bench_isolatedLoadBench [SHARED_DIR]

#include "benchCommon.h"

#include "loader/IsolatedReader.h"
#include "mdb/MdbLoader.h"
#include "model/TOrbMDBFile.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

using namespace vellum;
using vellum::bench::shellQuoted;
namespace fs = std::filesystem;

namespace {

/// Best wall time of `rounds` runs; negative when a run fails.
double best(int rounds, const std::function<bool()> &run)
{
    double fastest = 1e9;
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (!run())
            return -1;
        fastest = std::min(fastest, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return fastest;
}

/// Opens as `open` does, through the given loader.
bool openWith(const std::string &path, const std::function<bool(TOrbMDBFile &)> &load)
{
    auto file = TOrbMDBFile::fromPath(path);
    if (!load(*file))
        return false;
    file->sortLoadedLists();
    return !file->tables().empty();
}

/// Reads the file once so that every contender starts from the page cache.
void warm(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<char> buffer(1 << 20);
    while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || in.gcount() > 0) {
    }
}

} // namespace

int main(int argc, char **argv)
{
    const std::string shared = argc > 1 ? argv[1] : VELLUM_SHARED_DIR;
    if (!isolatedLoaderAvailable()) {
        std::printf("vellum-loader is not beside this executable: build the vellum-loader target first\n");
        return 1;
    }
    std::vector<std::string> files = {shared + "/testdata/big.mdb", shared + "/testdata/multi.mdb"};
    std::vector<fs::directory_entry> corpus;
    if (fs::exists(shared + "/corpus"))
        for (const auto &entry : fs::directory_iterator(shared + "/corpus"))
            if (entry.path().filename().string().rfind("damaged_", 0) != 0 &&
                (entry.path().extension() == ".mdb" || entry.path().extension() == ".accdb"))
                corpus.push_back(entry);
    std::sort(corpus.begin(), corpus.end(), [](const auto &a, const auto &b) { return a.file_size() > b.file_size(); });
    for (std::size_t i = 0; i < corpus.size() && i < 3; ++i)
        files.push_back(corpus[i].path().string());

    std::printf("%-34s %8s %8s %8s %8s %8s | %9s %9s %9s %9s\n", "file", "old s", "in-2 s", "iso-1 s", "iso-2 s",
                "export s", "iso1/old", "iso2/old", "in2/old", "iso2/exp");
    int failures = 0;
    for (const std::string &path : files) {
        if (!fs::exists(path)) {
            std::printf("%s: not found, skipped\n", path.c_str());
            continue;
        }
        warm(path);
        const int rounds = fs::file_size(path) > (8u << 20) ? 5 : 7;
        const auto inProcess = [&](unsigned workers) {
            return best(rounds, [&] {
                return openWith(path, [&](TOrbMDBFile &f) {
                    return loadFileInProcess(f, nullptr, LoadOptions{.workers = workers});
                });
            });
        };
        const auto isolated = [&](unsigned workers) {
            return best(rounds, [&] {
                return openWith(path, [&](TOrbMDBFile &f) {
                    IsolatedLoadOptions options;
                    options.load.workers = workers;
                    return loadFileIsolated(f, nullptr, options);
                });
            });
        };
        const double old = inProcess(1);
        const double in2 = inProcess(2);
        const double iso1 = isolated(1);
        const double iso2 = isolated(2);
        const std::string exportAll = "for t in $(mdb-tables -1 " + shellQuoted(path) +
                                      " | tr ' ' '\\001'); do mdb-export " + shellQuoted(path) +
                                      " \"$(echo \"$t\" | tr '\\001' ' ')\" > /dev/null || exit 1; done";
        const double exported = best(rounds, [&] { return std::system(exportAll.c_str()) == 0; });
        if (old < 0 || in2 < 0 || iso1 < 0 || iso2 < 0) {
            std::printf("%s: loading failed\n", path.c_str());
            ++failures;
            continue;
        }
        std::printf("%-34s %8.3f %8.3f %8.3f %8.3f %8.3f | %9.2f %9.2f %9.2f %9.2f\n",
                    fs::path(path).filename().string().substr(0, 34).c_str(), old, in2, iso1, iso2, exported,
                    iso1 / old, iso2 / old, in2 / old, exported > 0 ? iso2 / exported : 0.0);
    }
    std::printf(
        "old = in process, one handle; in-2 = in process, two handles; iso-1/iso-2 = vellum-loader with one/two "
        "handles (iso-2 is what open does); export = mdb-export of every table\n"
        "targets: big.mdb iso2/old <= 1.10 (one large table), multi.mdb iso2/old <= 0.70\n");
    return failures ? 1 : 0;
}

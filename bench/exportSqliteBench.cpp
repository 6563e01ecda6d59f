// SQLite export benchmark: `vellum-cli export big.mdb OUT --format sqlite --table Big` against
// the mdbtools pipeline into sqlite3, both run as commands, alternating, best of several runs.
// The peer needs the table before its INSERTs (mdb-export alone writes only INSERT statements,
// which fail on an empty database), so it is
//     mdb-schema -T Big big.mdb sqlite | sqlite3 peer.db && mdb-export -I sqlite big.mdb Big | sqlite3 peer.db
// Both databases are checked to hold all 200,000 rows. Target: Vellum at most 0.5 times the peer.
//
// The lossless database (the command line's default; the classic one is run with --classic) is
// measured against the same pipeline inside one transaction, the peer's fastest form:
//     { echo 'BEGIN;'; mdb-schema -T Big big.mdb sqlite; mdb-export -I sqlite big.mdb Big;
//       echo 'COMMIT;'; } | sqlite3 peer.db
// Target: at most 0.40 times the peer.
//
// In this process the run is split further (opening the file, writing each database), and the
// rows are also inserted one statement at a time without a transaction, for a sample of rows,
// to show what the one transaction per table saves.
//
//   bench_exportSqliteBench [SHARED_TESTDATA_DIR] [RUNS]

#include "benchCommon.h"

#include "export/ExportJob.h"
#include "export/SqliteExport.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "sql/SQLConnection.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

using namespace vellum;
using namespace vellum::bench;

namespace {

constexpr double kTarget = 0.5;
constexpr double kLosslessTarget = 0.40;
constexpr std::size_t kAutocommitSample = 2000;

/// Rows of Big in a database, read with sqlite3; -1 when it cannot be read.
long long rowsIn(const std::string &db)
{
    const std::string command = "sqlite3 " + shellQuoted(db) + " 'SELECT count(*) FROM \"Big\";' 2>/dev/null";
    std::FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return -1;
    long long rows = -1;
    if (std::fscanf(pipe, "%lld", &rows) != 1)
        rows = -1;
    pclose(pipe);
    return rows;
}

struct Split {
    double open = -1;
    double write = -1;
    double losslessWrite = -1;
    double autocommitPerRow = -1;
};

/// Opening, the export job, and a sample of rows inserted one autocommitted statement at a time.
Split splitVellum(const std::string &path, const std::string &work)
{
    Split split;
    auto start = std::chrono::steady_clock::now();
    auto file = TOrbMDBFile::fromPath(path);
    if (!file->open(*commandLineReader()))
        return split;
    split.open = since(start);
    const TOrbMDBTable *big = file->tableNamed("Big");
    if (!big)
        return split;

    start = std::chrono::steady_clock::now();
    ExportJob job(*file, big, ExportFileType::SQLite);
    job.setExportPath(work + "/split.sqlite");
    if (!job.startExport(nullptr))
        return split;
    job.wait();
    if (job.successTableCount() == 1)
        split.write = since(start);

    start = std::chrono::steady_clock::now();
    ExportJob lossless(*file, big, ExportFileType::SQLite);
    lossless.mutableOptions().lossless = true;
    lossless.setExportPath(work + "/split-lossless.sqlite");
    if (!lossless.startExport(nullptr))
        return split;
    lossless.wait();
    if (lossless.successTableCount() == 1)
        split.losslessWrite = since(start);

    SQLConnection connection(ServerTypeSQLite);
    connection.setDbFilePath(work + "/autocommit.sqlite");
    if (connection.createDbFile(false) || !connection.connect(true))
        return split;
    connection.queryString(sqliteCreateTableStatement(*big, nullptr));
    std::string head = "INSERT INTO " + sqliteQuotedName(big->name()) + " VALUES (";
    std::string statement;
    const std::size_t sample = std::min(kAutocommitSample, big->rowCount());
    start = std::chrono::steady_clock::now();
    for (std::size_t row = 0; row < sample; ++row) {
        buildSqliteInsertStatement(statement, head, *big, row);
        connection.queryString(statement);
        if (!connection.getLastErrorMessage().empty())
            return split;
    }
    split.autocommitPerRow = since(start) / static_cast<double>(sample);
    return split;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/testdata";
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 3;
    const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
    const std::string path = dir + "/big.mdb";
    if (access(path.c_str(), R_OK) != 0) {
        std::printf("big.mdb: not found in %s, skipped\n", dir.c_str());
        return 0;
    }
    const std::string work = makeWorkFolder();
    if (work.empty())
        return 1;
    const std::string ours = work + "/vellum.sqlite";
    const std::string peer = work + "/peer.db";
    const std::string vellumCommand = shellQuoted(cli) + " export " + shellQuoted(path) + " " + shellQuoted(ours) +
                                      " --format sqlite --classic --table Big > /dev/null";
    const std::string losslessOurs = work + "/vellum-lossless.sqlite";
    const std::string losslessCommand = shellQuoted(cli) + " export " + shellQuoted(path) + " " +
                                        shellQuoted(losslessOurs) + " --format sqlite --table Big > /dev/null";
    const std::string peerInOne = work + "/peer-one-transaction.db";
    const std::string peerInOneCommand = "rm -f " + shellQuoted(peerInOne) + " && { echo 'BEGIN;'; mdb-schema -T Big " +
                                         shellQuoted(path) + " sqlite && mdb-export -I sqlite " + shellQuoted(path) +
                                         " Big && echo 'COMMIT;'; } | sqlite3 " + shellQuoted(peerInOne);
    const std::string peerCommand = "rm -f " + shellQuoted(peer) + " && mdb-schema -T Big " + shellQuoted(path) +
                                    " sqlite | sqlite3 " + shellQuoted(peer) + " && mdb-export -I sqlite " +
                                    shellQuoted(path) + " Big | sqlite3 " + shellQuoted(peer);

    CommandTime vellumBest{1e9, 1e9}, peerBest{1e9, 1e9}, losslessBest{1e9, 1e9}, peerInOneBest{1e9, 1e9};
    for (int i = 0; i < runs; ++i) {
        const CommandTime peerInOneTime = timeShellCommand(peerInOneCommand);
        const CommandTime losslessTime = timeShellCommand(losslessCommand);
        if (peerInOneTime.wall < 0 || losslessTime.wall < 0) {
            std::printf("big.mdb: a command failed (%s)\n",
                        peerInOneTime.wall < 0 ? "mdb-export | sqlite3 in one transaction" : "vellum-cli lossless");
            return 1;
        }
        if (peerInOneTime.wall < peerInOneBest.wall)
            peerInOneBest = peerInOneTime;
        if (losslessTime.wall < losslessBest.wall)
            losslessBest = losslessTime;
        const CommandTime peerTime = timeShellCommand(peerCommand);
        const CommandTime ourTime = timeShellCommand(vellumCommand);
        if (peerTime.wall < 0 || ourTime.wall < 0) {
            std::printf("big.mdb: a command failed (%s)\n", peerTime.wall < 0 ? "mdb-export | sqlite3" : "vellum-cli");
            return 1;
        }
        if (peerTime.wall < peerBest.wall)
            peerBest = peerTime;
        if (ourTime.wall < vellumBest.wall)
            vellumBest = ourTime;
    }
    const long long ourRows = rowsIn(ours);
    const long long peerRows = rowsIn(peer);
    const double ratio = vellumBest.wall / peerBest.wall;
    const bool met = ratio <= kTarget && ourRows == 200000 && peerRows == 200000;
    std::printf("big.mdb: vellum-cli %.3f s (%.3f s processor; %lld rows, %lld bytes), mdb-export | sqlite3 %.3f s "
                "(%.3f s processor; %lld rows, %lld bytes), ratio %.2f (target <= %.2f: %s), processor ratio %.2f\n",
                vellumBest.wall, vellumBest.cpu, ourRows, fileBytes(ours), peerBest.wall, peerBest.cpu, peerRows,
                fileBytes(peer), ratio, kTarget, met ? "met" : "NOT met", vellumBest.cpu / peerBest.cpu);

    const long long losslessRows = rowsIn(losslessOurs);
    const long long peerInOneRows = rowsIn(peerInOne);
    const double losslessRatio = losslessBest.wall / peerInOneBest.wall;
    const bool losslessMet = losslessRatio <= kLosslessTarget && losslessRows == 200000 && peerInOneRows == 200000;
    std::printf("big.mdb: lossless vellum-cli %.3f s (%.3f s processor; %lld rows, %lld bytes), mdb-export | sqlite3 "
                "in one transaction %.3f s (%.3f s processor; %lld rows, %lld bytes), ratio %.2f (target <= %.2f: "
                "%s), processor ratio %.2f\n",
                losslessBest.wall, losslessBest.cpu, losslessRows, fileBytes(losslessOurs), peerInOneBest.wall,
                peerInOneBest.cpu, peerInOneRows, fileBytes(peerInOne), losslessRatio, kLosslessTarget,
                losslessMet ? "met" : "NOT met", losslessBest.cpu / peerInOneBest.cpu);

    const Split split = splitVellum(path, work);
    std::printf("big.mdb:   in-process split: open %.3f s, write SQLite %.3f s (%.1f us a row in one transaction)\n",
                split.open, split.write, split.write * 1e6 / 200000);
    std::printf("big.mdb:   in-process split: write the lossless database %.3f s (%.1f us a row, prepared and bound)\n",
                split.losslessWrite, split.losslessWrite * 1e6 / 200000);
    if (split.autocommitPerRow > 0)
        std::printf("big.mdb:   one autocommitted statement a row: %.1f us a row over %zu rows, %.0f times slower\n",
                    split.autocommitPerRow * 1e6, kAutocommitSample, split.autocommitPerRow / (split.write / 200000));
    std::error_code ignored;
    std::filesystem::remove_all(work, ignored);
    return met && losslessMet ? 0 : 1;
}

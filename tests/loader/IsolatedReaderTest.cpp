// Opening through the vellum-loader helper: the same model as in process, progress and cancel,
// and a helper that misbehaves (cut-off stream, crash, stall, chatter) makes the open fail
// cleanly with no process left behind.

#include "modelComparison.h"
#include "support/Fixtures.h"

#include "loader/IsolatedReader.h"
#include "loader/helperExit.h"
#include "mdb/InProcessReader.h"
#include "mdb/MdbLoader.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <set>
#include <sstream>

namespace vellum {
namespace {

namespace fs = std::filesystem;

/// True when this process has no child, running or zombie.
bool noChildLeft()
{
    int status = 0;
    return waitpid(-1, &status, WNOHANG) < 0 && errno == ECHILD;
}

/// Records what an open reports; cancels at the n-th table when asked to.
class RecordingObserver : public LoadObserver {
public:
    explicit RecordingObserver(int cancelAtTable = -1) : m_cancelAtTable(cancelAtTable) {}
    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override
    {
        names.insert(name);
        ordinals.push_back(index);
        counts.insert(count);
    }
    void rowsLoaded(std::uint64_t totalRows) override
    {
        if (totalRows < lastRows)
            rowsWentBack = true;
        lastRows = totalRows;
    }
    void rowsExpected(std::uint64_t totalRows) override
    {
        expectedRows = totalRows;
        expectedBeforeRows = lastRows == 0;
    }
    bool shouldCancel() override
    {
        ++polls;
        return m_cancelAtTable >= 0 && ordinals.size() > static_cast<std::size_t>(m_cancelAtTable);
    }

    std::set<std::string> names;
    std::vector<std::size_t> ordinals;
    std::set<std::size_t> counts;
    std::uint64_t lastRows = 0;
    std::uint64_t expectedRows = 0;
    bool expectedBeforeRows = false;
    bool rowsWentBack = false;
    int polls = 0;

private:
    int m_cancelAtTable;
};

/// A temporary folder for fake helpers and saved streams, removed afterwards.
class IsolatedLoader : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/vellum-isolated-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_dir = pattern;
    }
    void TearDown() override { fs::remove_all(m_dir); }

    /// Writes an executable shell script and answers its path.
    std::string script(const std::string &name, const std::string &body)
    {
        const std::string path = m_dir + "/" + name;
        std::ofstream(path) << "#!/bin/sh\n" << body << "\n";
        chmod(path.c_str(), 0755);
        return path;
    }

    /// The stream the real helper sends for a file, saved to a file.
    std::string savedStream(const std::string &database)
    {
        const std::string path = m_dir + "/stream.bin";
        const std::string command = "'" + isolatedLoaderPath() + "' --fd 3 -- '" + database + "' 3>'" + path + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return path;
    }

    std::string m_dir;
};

TEST_F(IsolatedLoader, GivesTheInProcessModel)
{
    ASSERT_TRUE(isolatedLoaderAvailable()) << "vellum-loader is built beside the test executables";
    IsolatedReader reader;
    for (const char *name : {"features.mdb", "features.accdb", "ole.mdb", "ole.accdb", "jet3_size97.mdb",
                             "newtypes.accdb", "ace12_ASampleDatabase.accdb"}) {
        SCOPED_TRACE(name);
        auto expected = test::openInProcess(test::fixturePath(name));
        ASSERT_TRUE(expected);
        auto isolated = TOrbMDBFile::fromPath(test::fixturePath(name));
        ASSERT_TRUE(isolated->open(reader, nullptr));
        EXPECT_TRUE(isolated->active());
        test::expectSameModel(*expected, *isolated);
        for (const auto &table : isolated->tables())
            EXPECT_EQ(table->file(), isolated.get());
        for (const auto &key : isolated->allForeignKeys())
            EXPECT_EQ(key->file(), isolated.get());
        for (const auto &query : isolated->queries())
            EXPECT_EQ(query->file(), isolated.get());
        // The one fixture with saved queries: six, their SQL carried whole.
        if (std::string(name) == "ace12_ASampleDatabase.accdb") {
            EXPECT_EQ(isolated->queries().size(), 6u);
        }
    }
    EXPECT_TRUE(noChildLeft());
}

TEST_F(IsolatedLoader, ParallelLoadingMergesInCatalogOrder)
{
    // Every table counts as large here, so both handles take part on any file with two tables.
    for (const char *name : {"features.mdb", "features.accdb", "ole.accdb"}) {
        SCOPED_TRACE(name);
        auto sequential = TOrbMDBFile::fromPath(test::fixturePath(name));
        ASSERT_TRUE(loadFileInProcess(*sequential, nullptr, LoadOptions{.workers = 1, .parallelFromCells = 0}));
        auto parallel = TOrbMDBFile::fromPath(test::fixturePath(name));
        ASSERT_TRUE(loadFileInProcess(*parallel, nullptr, LoadOptions{.workers = 2, .parallelFromCells = 0}));
        // Unsorted: the tables must come in the same (catalog) order from both.
        test::expectSameModel(*sequential, *parallel);
        auto isolated = TOrbMDBFile::fromPath(test::fixturePath(name));
        IsolatedLoadOptions options;
        options.load = LoadOptions{.workers = 2, .parallelFromCells = 0};
        ASSERT_TRUE(loadFileIsolated(*isolated, nullptr, options));
        test::expectSameModel(*sequential, *isolated);
    }
}

TEST_F(IsolatedLoader, SplitTableGivesTheRowsOfASingleRead)
{
    // No table counts as large for loading tables side by side, and any table of two data
    // pages or more is split: the second handle reads the later half of the largest table's
    // pages, and its rows (with their blobs) must join the first half's exactly in order.
    LoadOptions split{2, std::numeric_limits<std::uint64_t>::max(), 0};
    std::vector<std::string> paths;
    for (const char *name :
         {"features.mdb", "features.accdb", "ole.mdb", "ole.accdb", "jet3_size97.mdb", "newtypes.accdb"})
        paths.push_back(test::fixturePath(name));
    if (const std::string big = test::sharedPath("testdata/rows70000.mdb"); !big.empty())
        paths.push_back(big);
    for (const std::string &path : paths) {
        SCOPED_TRACE(path);
        auto sequential = TOrbMDBFile::fromPath(path);
        ASSERT_TRUE(loadFileInProcess(*sequential, nullptr,
                                      LoadOptions{.workers = 1, .parallelFromCells = 0, .splitFromCells = 0}));
        auto inProcess = TOrbMDBFile::fromPath(path);
        ASSERT_TRUE(loadFileInProcess(*inProcess, nullptr, split));
        test::expectSameModel(*sequential, *inProcess);
        auto isolated = TOrbMDBFile::fromPath(path);
        IsolatedLoadOptions options;
        options.load = split;
        ASSERT_TRUE(loadFileIsolated(*isolated, nullptr, options));
        test::expectSameModel(*sequential, *isolated);
    }
}

/// Collects a load's tables; removes the file once the catalog is read, so that a second
/// handle cannot open it any more (the first one keeps reading the open file).
class FileRemovingSink : public LoadSink {
public:
    explicit FileRemovingSink(std::string path) : m_path(std::move(path)) {}
    void tableStarted(const std::string &, std::size_t, std::size_t) override {}
    void rowsLoaded(std::uint64_t) override {}
    bool shouldCancel() override { return false; }
    void catalogRead(std::size_t count, std::uint64_t) override
    {
        tables.resize(count);
        fs::remove(m_path);
    }
    void tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table) override
    {
        tables.at(position) = std::move(table);
    }
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;

private:
    std::string m_path;
};

TEST_F(IsolatedLoader, SplitTableIsReadWholeWhenTheSecondHandleCannotOpenTheFile)
{
    const std::string source = test::sharedPath("testdata/rows70000.mdb");
    if (source.empty())
        GTEST_SKIP() << "../shared/testdata/rows70000.mdb is absent: no table large enough to split";
    auto reference = TOrbMDBFile::fromPath(source);
    ASSERT_TRUE(
        loadFileInProcess(*reference, nullptr, LoadOptions{.workers = 1, .parallelFromCells = 0, .splitFromCells = 0}));
    const std::string copy = m_dir + "/rows.mdb";
    fs::copy_file(source, copy);
    TOrbMDBFile relationships;
    FileRemovingSink sink(copy);
    ASSERT_TRUE(loadDatabase(copy, relationships, sink,
                             LoadOptions{.workers = 2,
                                         .parallelFromCells = std::numeric_limits<std::uint64_t>::max(),
                                         .splitFromCells = 0}));
    EXPECT_FALSE(fs::exists(copy));
    ASSERT_EQ(sink.tables.size(), reference->tables().size());
    for (std::size_t i = 0; i < sink.tables.size(); ++i) {
        ASSERT_TRUE(sink.tables[i]);
        test::expectSameTable(*reference->tables()[i], *sink.tables[i]);
    }
}

/// Cancels once a number of rows has been loaded.
class CancelAtRows : public LoadObserver {
public:
    explicit CancelAtRows(std::uint64_t rows) : m_rows(rows) {}
    void tableStarted(const std::string &, std::size_t, std::size_t) override {}
    void rowsLoaded(std::uint64_t totalRows) override { m_seen = totalRows; }
    bool shouldCancel() override { return m_seen >= m_rows; }

private:
    std::uint64_t m_rows;
    std::uint64_t m_seen = 0;
};

TEST_F(IsolatedLoader, CancelInTheMiddleOfASplitTableStopsBothHandles)
{
    const std::string path = test::sharedPath("testdata/rows70000.mdb");
    if (path.empty())
        GTEST_SKIP() << "../shared/testdata/rows70000.mdb is absent: no table large enough to split";
    const LoadOptions split{2, std::numeric_limits<std::uint64_t>::max(), 0};
    for (const bool isolated : {false, true}) {
        SCOPED_TRACE(isolated ? "isolated" : "in process");
        CancelAtRows observer(20000);
        auto file = TOrbMDBFile::fromPath(path);
        IsolatedLoadOptions options;
        options.load = split;
        EXPECT_FALSE(isolated ? loadFileIsolated(*file, &observer, options)
                              : loadFileInProcess(*file, &observer, split));
        EXPECT_TRUE(file->tables().empty());
    }
    EXPECT_TRUE(noChildLeft());
}

TEST_F(IsolatedLoader, ReportsEveryTableAndTheRowTotal)
{
    InProcessReader inProcess;
    IsolatedReader isolated;
    for (FileReader *reader : std::initializer_list<FileReader *>{&inProcess, &isolated}) {
        RecordingObserver observer;
        auto file = TOrbMDBFile::fromPath(test::fixturePath("features.accdb"));
        ASSERT_TRUE(file->open(*reader, &observer));
        std::set<std::string> names;
        std::uint64_t rows = 0;
        for (const auto &table : file->tables()) {
            names.insert(table->name());
            rows += table->rowCount();
        }
        EXPECT_EQ(observer.names, names);
        ASSERT_EQ(observer.ordinals.size(), file->tables().size());
        for (std::size_t i = 0; i < observer.ordinals.size(); ++i)
            EXPECT_EQ(observer.ordinals[i], i);
        EXPECT_EQ(observer.counts, std::set<std::size_t>{file->tables().size()});
        EXPECT_EQ(observer.lastRows, rows);
        EXPECT_EQ(observer.expectedRows, rows); // an undamaged file's definitions are right
        EXPECT_TRUE(observer.expectedBeforeRows);
        EXPECT_FALSE(observer.rowsWentBack);
        EXPECT_GT(observer.polls, 0);
    }
}

TEST_F(IsolatedLoader, CancelLeavesTheFileClosed)
{
    InProcessReader inProcess;
    IsolatedReader isolated;
    for (FileReader *reader : std::initializer_list<FileReader *>{&inProcess, &isolated}) {
        for (const int at : {0, 3}) {
            RecordingObserver observer(at);
            auto file = TOrbMDBFile::fromPath(test::fixturePath("features.mdb"));
            EXPECT_FALSE(file->open(*reader, &observer));
            EXPECT_FALSE(file->active());
            EXPECT_TRUE(file->tables().empty());
            EXPECT_TRUE(file->allForeignKeys().empty());
            // Opening again without cancelling works.
            EXPECT_TRUE(file->open(*reader, nullptr));
            EXPECT_EQ(file->tables().size(), 14u);
        }
    }
    EXPECT_TRUE(noChildLeft());
}

TEST_F(IsolatedLoader, MisbehavingHelpersMakeTheOpenFail)
{
    const std::string database = test::fixturePath("features.mdb");
    const std::string stream = savedStream(database);
    const auto size = fs::file_size(stream);
    ASSERT_GT(size, 1000u);
    struct Case {
        std::string what;
        std::string body;
        bool opens;
    };
    const std::vector<Case> cases = {
        {"the whole stream", "cat '" + stream + "' >&3", true},
        {"chatter on standard output", "echo LEAKED; cat '" + stream + "' >&3; echo LEAKED", true},
        {"cut after the header", "head -c 12 '" + stream + "' >&3", false},
        {"cut in the middle", "head -c " + std::to_string(size / 2) + " '" + stream + "' >&3", false},
        {"cut one byte short", "head -c " + std::to_string(size - 1) + " '" + stream + "' >&3", false},
        {"nothing at all", "exit 0", false},
        {"garbage", "echo 'this is not a model' >&3", false},
        {"a byte after the end", "cat '" + stream + "' >&3; printf x >&3", false},
        {"a crash after a complete stream", "cat '" + stream + "' >&3; kill -s SEGV $$", false},
        {"a failing exit after a complete stream", "cat '" + stream + "' >&3; exit 3", false},
    };
    int stdoutCopy = dup(1);
    ASSERT_GE(stdoutCopy, 0);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Case &c = cases[i];
        SCOPED_TRACE(c.what);
        IsolatedLoadOptions options;
        options.helperPath = script("helper" + std::to_string(i), c.body);
        options.stallTimeout = std::chrono::milliseconds(5000);
        // Whatever the helper prints must not reach our standard output.
        const std::string captured = m_dir + "/stdout" + std::to_string(i);
        std::fflush(stdout);
        const int capture = open(captured.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ASSERT_GE(capture, 0);
        dup2(capture, 1);
        close(capture);
        auto file = TOrbMDBFile::fromPath(database);
        const bool opened = loadFileIsolated(*file, nullptr, options);
        std::fflush(stdout);
        dup2(stdoutCopy, 1);
        EXPECT_EQ(opened, c.opens);
        EXPECT_EQ(file->tables().size(), c.opens ? 14u : 0u);
        EXPECT_EQ(fs::file_size(captured), 0u);
        EXPECT_TRUE(noChildLeft());
    }
    close(stdoutCopy);
}

TEST_F(IsolatedLoader, StalledHelperIsKilledAfterTheTimeout)
{
    IsolatedLoadOptions options;
    options.helperPath = script("stall", "exec sleep 60");
    options.stallTimeout = std::chrono::milliseconds(300);
    auto file = TOrbMDBFile::fromPath(test::fixturePath("features.mdb"));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(loadFileIsolated(*file, nullptr, options));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_TRUE(noChildLeft());

    // Progress resets the clock: a helper that takes longer than the timeout in all, but never
    // pauses that long, is not cut off.
    const std::string stream = savedStream(test::fixturePath("features.mdb"));
    std::string body;
    const auto size = fs::file_size(stream);
    for (std::uintmax_t part = 0; part < 4; ++part) {
        const auto from = size * part / 4, to = size * (part + 1) / 4;
        body += "tail -c +" + std::to_string(from + 1) + " '" + stream + "' | head -c " + std::to_string(to - from) +
                " >&3; sleep 0.6\n";
    }
    options.helperPath = script("slow", body);
    options.stallTimeout = std::chrono::milliseconds(1500);
    const auto slowStart = std::chrono::steady_clock::now();
    EXPECT_TRUE(loadFileIsolated(*file, nullptr, options));
    EXPECT_GT(std::chrono::steady_clock::now() - slowStart, options.stallTimeout);
}

TEST_F(IsolatedLoader, HelperDiagnosticsNeverReachStandardError)
{
    const std::string stream = savedStream(test::fixturePath("features.mdb"));
    IsolatedLoadOptions options;
    // Far more than a pipe holds: the helper must not block on its standard error.
    options.helperPath = script("chatty", "head -c 3000000 /dev/zero | tr '\\000' w >&2; cat '" + stream + "' >&3");
    const std::string captured = m_dir + "/stderr";
    const int stderrCopy = dup(2);
    const int capture = open(captured.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(capture, 0);
    dup2(capture, 2);
    close(capture);
    auto file = TOrbMDBFile::fromPath(test::fixturePath("features.mdb"));
    const bool opened = loadFileIsolated(*file, nullptr, options);
    dup2(stderrCopy, 2);
    close(stderrCopy);
    EXPECT_TRUE(opened);
    EXPECT_EQ(fs::file_size(captured), 0u); // what libmdb prints is classified, never passed on raw
}

TEST_F(IsolatedLoader, AFailedHelperSaysWhy)
{
    struct Case {
        std::string name;
        std::string body;
        OpenFailure expected;
    };
    const std::vector<Case> cases = {
        {"not-access", "exit " + std::to_string(helperExitStatusFor(OpenFailure::NotAccessFile)),
         OpenFailure::NotAccessFile},
        {"plain-failure", "exit 1", OpenFailure::Other},
        {"segfault", "kill -SEGV $$", OpenFailure::Crashed},
        {"glib-oom", "echo 'GLib-ERROR **: failed to allocate 4096 bytes' >&2; kill -ABRT $$",
         OpenFailure::OutOfMemory},
        {"own-oom", "exit " + std::to_string(helperExitStatusFor(OpenFailure::OutOfMemory)), OpenFailure::OutOfMemory},
        {"oom-killer", "kill -KILL $$", OpenFailure::OutOfMemory},
        {"garbage", "echo garbage >&3; sleep 5", OpenFailure::Other},
        {"silent", "exec sleep 5", OpenFailure::NoProgress},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        IsolatedLoadOptions options;
        options.helperPath = script(c.name, c.body);
        options.stallTimeout = std::chrono::milliseconds(500);
        auto file = TOrbMDBFile::fromPath(test::fixturePath("features.mdb"));
        IsolatedReader reader(options);
        EXPECT_FALSE(file->open(reader, nullptr));
        EXPECT_EQ(file->openFailure(), c.expected);
    }
    EXPECT_TRUE(noChildLeft());
}

TEST_F(IsolatedLoader, AHelperThatRunsIntoItsMemoryLimitEndsCleanly)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "an AddressSanitizer build of the helper runs without an address-space limit";
#endif
    IsolatedLoadOptions options;
    options.memoryLimit = 48ull << 20; // far below what the program and a load need
    auto file = TOrbMDBFile::fromPath(test::fixturePath("features.accdb"));
    IsolatedReader reader(options);
    EXPECT_FALSE(file->open(reader, nullptr));
    EXPECT_EQ(file->openFailure(), OpenFailure::OutOfMemory);
    EXPECT_TRUE(noChildLeft());

    // The limit derived for a file leaves room for its model and stays within the machine.
    EXPECT_EQ(helperMemoryLimit(0, 64ull << 30), 1ull << 30);
    EXPECT_EQ(helperMemoryLimit(1ull << 30, 64ull << 30), 9ull << 30);
    EXPECT_EQ(helperMemoryLimit(8ull << 30, 16ull << 30), 12ull << 30);
    EXPECT_EQ(helperMemoryLimit(1ull << 30, 512ull << 20), 1ull << 30);
    EXPECT_EQ(helperMemoryLimit(UINT64_MAX, 16ull << 30), 12ull << 30);
}

TEST_F(IsolatedLoader, UnreadableInputsFailOrOpenEmptyAsInProcess)
{
    const std::string truncated = m_dir + "/firstpage.mdb";
    {
        std::ifstream in(test::fixturePath("features.mdb"), std::ios::binary);
        std::string page(4096, '\0');
        in.read(page.data(), static_cast<std::streamsize>(page.size()));
        std::ofstream(truncated, std::ios::binary) << page;
    }
    std::ofstream(m_dir + "/text.mdb") << "not an Access file\n";
    struct Case {
        std::string path;
        bool opens;
        OpenFailure failure;
    };
    const std::vector<Case> cases = {
        {m_dir + "/missing.mdb", false, OpenFailure::NotFound},
        {m_dir + "/text.mdb", false, OpenFailure::NotAccessFile},
        {truncated, true, OpenFailure::None}, // the first page alone: libmdb opens it, the catalog cannot be read
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.path);
        InProcessReader inProcess;
        IsolatedReader isolated;
        for (FileReader *reader : std::initializer_list<FileReader *>{&inProcess, &isolated}) {
            auto file = TOrbMDBFile::fromPath(c.path);
            EXPECT_EQ(file->open(*reader, nullptr), c.opens);
            EXPECT_TRUE(file->tables().empty());
            EXPECT_EQ(file->openFailure(), c.failure);
            // The file that opens says that its catalog could not be read.
            EXPECT_EQ(catalogLost(file->losses()), c.opens);
        }
    }
    IsolatedLoadOptions options;
    options.helperPath = m_dir + "/no-such-helper";
    auto file = TOrbMDBFile::fromPath(test::fixturePath("features.mdb"));
    EXPECT_FALSE(loadFileIsolated(*file, nullptr, options));
    EXPECT_TRUE(noChildLeft());
}

} // namespace
} // namespace vellum

// The corruption suite: damaged copies of the fixture databases, made at test time with a fixed
// seed (complexData2007.accdb among them, for the reading of complex columns), each opened with `vellum-cli list`.
// Every run must list the file completely (exit 0, no table fewer than the undamaged original lists), list it with its
// losses told (exit 3, one warning line each), or report "File (NAME) cannot be opened" and why (exit 1), within 35
// seconds, without crashing, with the memory it took (the helper's included) below the helper's
// limit, and must leave no helper process behind. The runs go several at a time, so that the few
// files on which libmdb loops (and the loader's 30-second watchdog strikes) do not add up.

#include "damageVariants.h"
#include "loader/helperExit.h"
#include "model/LossReport.h"
#include "support/Fixtures.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>

extern char **environ;

namespace vellum {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kSeed = 0x56454c4c554d; // fixed: the same files on every run
constexpr auto kAllowed = std::chrono::seconds(35);
constexpr auto kKillAfter = std::chrono::seconds(45);
constexpr std::size_t kAtOnce = 6;

struct Case {
    std::string label;
    std::string path;                                        ///< where the damaged file is written
    std::string source;                                      ///< the fixture it comes from; empty: `path` exists
    std::function<void(std::vector<std::uint8_t> &)> damage; ///< empty: copy as it is
    std::size_t originalTables = 0;                          ///< what the undamaged source lists
    int mustExit = -1;                                       ///< for damage with a known outcome
    std::string mustSay{};                                   ///< in its standard error
};

struct Outcome {
    int exitStatus = -1;
    int signal = 0;
    double seconds = 0;
    bool killed = false;
    std::uint64_t peakMemory = 0; ///< of vellum-cli and the helper it waited for, whichever is larger
    std::string out;
    std::string err;
};

/// The lines of a text, without their line ends.
std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// The line that follows "File (PATH) cannot be opened" in `err`; empty when there is none.
std::string reasonLine(const std::string &err, const std::string &path)
{
    const std::vector<std::string> lines = linesOf(err);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
        if (lines[i] == "File (" + path + ") cannot be opened")
            return lines[i + 1];
    return {};
}

/// True when `line` is one of the reasons a failed open gives.
bool isReasonLine(const std::string &line)
{
    for (int failure = static_cast<int>(OpenFailure::NotFound); failure <= static_cast<int>(OpenFailure::Other);
         ++failure)
        if (!line.empty() && line == openFailureText(static_cast<OpenFailure>(failure)))
            return true;
    return false;
}

std::uint64_t physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
}

std::vector<std::uint8_t> readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

std::string readText(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

/// Children of this process other than `expected`: helpers orphaned by a vellum-cli run end up
/// here, because this process is their subreaper.
std::vector<pid_t> strayChildren(const std::map<pid_t, std::size_t> &expected)
{
    std::vector<pid_t> found;
    for (const auto &entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        std::ifstream stat(entry.path() / "stat");
        std::string line;
        std::getline(stat, line);
        const std::size_t close = line.rfind(')');
        if (close == std::string::npos)
            continue;
        std::istringstream fields(line.substr(close + 2));
        char state = 0;
        pid_t parent = 0;
        fields >> state >> parent;
        const pid_t pid = std::stoi(name);
        if (parent == getpid() && !expected.count(pid))
            found.push_back(pid);
    }
    return found;
}

std::string commandLine(pid_t pid)
{
    std::string text = readText("/proc/" + std::to_string(pid) + "/cmdline");
    std::replace(text.begin(), text.end(), '\0', ' ');
    return text;
}

class DamagedFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        const std::string pattern = (fs::temp_directory_path() / "vellum-damaged-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        ASSERT_NE(mkdtemp(buffer.data()), nullptr);
        m_dir = buffer.data();
        ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    }
    void TearDown() override
    {
        prctl(PR_SET_CHILD_SUBREAPER, 0);
        fs::remove_all(m_dir);
    }

    /// Writes the case's file (unless it has no source) and starts `vellum-cli list` on it.
    pid_t start(const Case &c, std::size_t index)
    {
        if (!c.source.empty()) {
            std::vector<std::uint8_t> bytes = readFile(c.source);
            if (c.damage)
                c.damage(bytes);
            std::ofstream(c.path, std::ios::binary)
                .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        const std::string out = m_dir + "/" + std::to_string(index) + ".out";
        const std::string err = m_dir + "/" + std::to_string(index) + ".err";
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
        std::vector<std::string> argv = {cli, "list", c.path};
        std::vector<char *> args;
        for (auto &arg : argv)
            args.push_back(arg.data());
        args.push_back(nullptr);
        pid_t pid = -1;
        const int rc = posix_spawn(&pid, cli.c_str(), &actions, nullptr, args.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        return rc == 0 ? pid : -1;
    }

    /// Runs every case, kAtOnce at a time; answers the outcomes and reports stray processes.
    std::vector<Outcome> runAll(const std::vector<Case> &cases)
    {
        std::vector<Outcome> outcomes(cases.size());
        std::map<pid_t, std::size_t> running;
        std::map<pid_t, Clock::time_point> started;
        std::size_t next = 0;
        while (next < cases.size() || !running.empty()) {
            while (next < cases.size() && running.size() < kAtOnce) {
                const pid_t pid = start(cases[next], next);
                if (pid < 0) {
                    ADD_FAILURE() << cases[next].label << ": vellum-cli could not be started";
                } else {
                    running[pid] = next;
                    started[pid] = Clock::now();
                }
                ++next;
            }
            int status = 0;
            struct rusage usage {};
            const pid_t done = wait4(-1, &status, WNOHANG, &usage);
            if (done > 0) {
                const auto it = running.find(done);
                if (it == running.end()) {
                    ADD_FAILURE() << "a process was left behind and ended later: pid " << done;
                    continue;
                }
                const std::size_t index = it->second;
                Outcome &outcome = outcomes[index];
                outcome.seconds = std::chrono::duration<double>(Clock::now() - started[done]).count();
                if (WIFEXITED(status))
                    outcome.exitStatus = WEXITSTATUS(status);
                if (WIFSIGNALED(status))
                    outcome.signal = WTERMSIG(status);
                outcome.peakMemory = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
                outcome.out = readText(m_dir + "/" + std::to_string(index) + ".out");
                outcome.err = readText(m_dir + "/" + std::to_string(index) + ".err");
                running.erase(it);
                started.erase(done);
                // A helper still around now was left behind by this run.
                for (const pid_t stray : strayChildren(running)) {
                    ADD_FAILURE() << cases[index].label << ": left a process behind: " << commandLine(stray);
                    kill(stray, SIGKILL);
                    waitpid(stray, nullptr, 0);
                }
                if (!cases[index].source.empty())
                    fs::remove(cases[index].path);
                fs::remove(m_dir + "/" + std::to_string(index) + ".out");
                fs::remove(m_dir + "/" + std::to_string(index) + ".err");
                continue;
            }
            for (const auto &[pid, since] : started)
                if (Clock::now() - since > kKillAfter && !outcomes[running[pid]].killed) {
                    outcomes[running[pid]].killed = true;
                    kill(pid, SIGKILL);
                }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return outcomes;
    }

    std::string m_dir;
};

TEST_F(DamagedFiles, OpenCompletelyWithLossesToldOrRefusedWithAReason)
{
    // What each undamaged fixture lists, to tell a table that went missing silently.
    const std::vector<std::string> fixtures = {"features.mdb", "features.accdb", "jet3_size97.mdb",
                                               "ole.mdb",      "newtypes.accdb", "complexData2007.accdb"};
    std::vector<Case> originals;
    for (const std::string &fixture : fixtures)
        originals.push_back(Case{fixture, test::fixturePath(fixture), {}, nullptr});
    const std::vector<Outcome> listed = runAll(originals);
    std::map<std::string, std::size_t> tablesOf;
    for (std::size_t i = 0; i < fixtures.size(); ++i) {
        ASSERT_EQ(listed[i].exitStatus, 0) << fixtures[i] << ": " << listed[i].err;
        tablesOf[fixtures[i]] = linesOf(listed[i].out).size();
        ASSERT_GT(tablesOf[fixtures[i]], 0u) << fixtures[i];
    }

    std::vector<Case> cases;
    std::uint64_t seed = kSeed;
    for (const std::string &fixture : fixtures) {
        const std::string source = test::fixturePath(fixture);
        const auto image = readFile(source);
        ASSERT_GT(image.size(), 16384u) << fixture;
        bool firstDefinition = true;
        for (auto &damage : test::damagesFor(image, seed++)) {
            const std::string label = fixture + ":" + damage.label;
            const std::string path = m_dir + "/case" + std::to_string(cases.size()) + "-" + fixture;
            cases.push_back(Case{label, path, source, std::move(damage.apply), tablesOf[fixture]});
            // Damage whose outcome is known: the catalog, the last table definition (a user
            // table's), and the long-value chains of the fixtures with values longer than a page.
            Case &added = cases.back();
            if (damage.label == "catalog-unreadable") {
                added.mustExit = 1;
                added.mustSay = openFailureText(OpenFailure::CatalogUnreadable);
            } else if (damage.label.rfind("definition-unreadable", 0) == 0 && firstDefinition) {
                firstDefinition = false;
                added.mustExit = 3;
                added.mustSay = "could not be read: its definition is damaged";
            } else if (damage.label == "long-value-chains-loop" && fixture != "jet3_size97.mdb" &&
                       fixture != "newtypes.accdb" && fixture != "complexData2007.accdb") {
                // (complexData2007.accdb's long values each fit in one page: there is no chain
                // to loop, and the damage changes their first bytes, which nothing can detect.)
                added.mustExit = 3;
                added.mustSay = "memo or OLE value is missing";
            }
        }
    }
    ASSERT_GE(cases.size(), 250u);
    // The damaged files collected from the field, when ../shared is there (two make libmdb loop).
    if (const std::string corpus = test::sharedPath("corpus"); !corpus.empty())
        for (const auto &entry : fs::directory_iterator(corpus))
            if (entry.path().filename().string().rfind("damaged_", 0) == 0)
                cases.push_back(Case{entry.path().filename().string(),
                                     m_dir + "/case" + std::to_string(cases.size()) + entry.path().extension().string(),
                                     entry.path().string(), nullptr});

    const auto begin = Clock::now();
    const std::vector<Outcome> outcomes = runAll(cases);
    int opened = 0, withLosses = 0, refused = 0, stalled = 0;
    double slowest = 0;
    std::uint64_t largestMemory = 0;
    std::string largestMemoryCase, slowestCase;
    std::map<std::string, int> reasons;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Case &c = cases[i];
        const Outcome &o = outcomes[i];
        SCOPED_TRACE(c.label);
        if (o.seconds > slowest) {
            slowest = o.seconds;
            slowestCase = c.label;
        }
        if (o.peakMemory > largestMemory) {
            largestMemory = o.peakMemory;
            largestMemoryCase = c.label;
        }
        EXPECT_FALSE(o.killed) << "still running after " << kKillAfter.count() << " s";
        EXPECT_EQ(o.signal, 0) << "vellum-cli crashed";
        EXPECT_LE(o.seconds, std::chrono::duration<double>(kAllowed).count());
        struct stat st {};
        const std::uint64_t size = stat(c.source.c_str(), &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
        EXPECT_LT(o.peakMemory, helperMemoryLimit(size, physicalMemory()));
        if (c.mustExit >= 0) {
            EXPECT_EQ(o.exitStatus, c.mustExit);
            EXPECT_NE(o.err.find(c.mustSay), std::string::npos) << o.err.substr(0, 400);
        }
        const std::size_t tables = linesOf(o.out).size();
        const bool warned = o.err.find("vellum-cli: warning: ") != std::string::npos;
        if (o.exitStatus == 0) {
            ++opened;
            EXPECT_FALSE(warned) << o.err.substr(0, 400);
            EXPECT_GE(tables, c.originalTables) << "a table is missing, and the exit status says nothing was lost";
        } else if (o.exitStatus == 3) {
            ++withLosses;
            EXPECT_TRUE(warned) << "exit status 3 without a loss told: " << o.err.substr(0, 400);
            for (const std::string &line : linesOf(o.err))
                EXPECT_EQ(line.rfind("vellum-cli: warning: ", 0), 0u) << line;
        } else {
            EXPECT_EQ(o.exitStatus, 1);
            const std::string reason = reasonLine(o.err, c.path);
            EXPECT_TRUE(isReasonLine(reason)) << o.err.substr(0, 400);
            ++reasons[reason];
            ++refused;
            if (o.seconds > 25)
                ++stalled;
        }
    }
    EXPECT_TRUE(strayChildren({}).empty());
    std::printf("%zu damaged files: %d opened completely, %d opened with losses, %d refused (%d after the stall "
                "timeout); slowest %.1f s (%s); largest memory %.0f MiB (%s); all in %.0f s\n",
                cases.size(), opened, withLosses, refused, stalled, slowest, slowestCase.c_str(),
                largestMemory / 1048576.0, largestMemoryCase.c_str(),
                std::chrono::duration<double>(Clock::now() - begin).count());
    for (const auto &[reason, count] : reasons)
        std::printf("  refused %d: %s\n", count, reason.c_str());
}

TEST_F(DamagedFiles, FilesThatAreNoDatabaseAreRefusedAtOnceWithTheReason)
{
    const std::string empty = m_dir + "/empty.mdb";
    std::ofstream(empty).close();
    const std::string zeros = m_dir + "/zeros.mdb";
    std::ofstream(zeros, std::ios::binary) << std::string(1 << 20, '\0');
    const std::string png = m_dir + "/picture.mdb";
    std::ofstream(png, std::ios::binary) << std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x01\0\0\0\x01", 24);
    const std::string fifo = m_dir + "/pipe.mdb";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string folder = m_dir + "/folder.mdb";
    fs::create_directory(folder);
    const std::string device = m_dir + "/zero.mdb";
    fs::create_symlink("/dev/zero", device);
    const std::string missing = m_dir + "/missing.mdb";
    const std::string sparse = m_dir + "/sparse.mdb"; // 8 GiB of nothing, taking no disk space
    {
        std::ofstream(sparse).close();
        std::error_code error;
        fs::resize_file(sparse, 8ull << 30, error);
        ASSERT_FALSE(error) << error.message();
    }

    struct Expected {
        std::string path;
        OpenFailure reason;
    };
    const std::vector<Expected> expected = {
        {empty, OpenFailure::NotAccessFile},   {zeros, OpenFailure::NotAccessFile},
        {png, OpenFailure::NotAccessFile},     {fifo, OpenFailure::NotRegularFile},
        {folder, OpenFailure::NotRegularFile}, {device, OpenFailure::NotRegularFile},
        {missing, OpenFailure::NotFound},      {sparse, OpenFailure::NotAccessFile},
    };
    std::vector<Case> cases;
    for (const Expected &e : expected)
        cases.push_back(Case{e.path, e.path, {}, nullptr});
    const std::vector<Outcome> outcomes = runAll(cases);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].path);
        EXPECT_EQ(outcomes[i].exitStatus, 1);
        EXPECT_EQ(reasonLine(outcomes[i].err, expected[i].path), openFailureText(expected[i].reason))
            << outcomes[i].err;
        EXPECT_LT(outcomes[i].seconds, 10.0); // refused before any reading: no stall timeout
    }

    // A database without an extension, or named just ".mdb", opens like any other.
    std::vector<Case> unusualNames;
    for (const char *name : {"noextension", ".mdb"}) {
        const std::string path = m_dir + "/" + name;
        fs::copy_file(test::fixturePath("features.mdb"), path);
        unusualNames.push_back(Case{name, path, {}, nullptr});
    }
    for (const Outcome &o : runAll(unusualNames)) {
        EXPECT_EQ(o.exitStatus, 0) << o.err;
        EXPECT_EQ(linesOf(o.out).size(), 14u);
    }
}

} // namespace
} // namespace vellum

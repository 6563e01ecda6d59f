// The corruption suite: damaged copies of the fixture databases, made at test time with a fixed
// seed (complexData2007.accdb among them, for the reading of complex columns), each opened with
// `vellum-cli list`. Every run must either list the file or report "File (NAME) cannot be
// opened" with exit status 1, within 35 seconds, without crashing, and must leave no helper
// process behind. The runs go several at a time, so that the few files on which libmdb loops
// (and the loader's 30-second watchdog strikes) do not add up.

#include "damageVariants.h"
#include "support/Fixtures.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
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
    std::string source;                                      ///< the fixture it comes from
    std::function<void(std::vector<std::uint8_t> &)> damage; ///< empty: copy as it is
};

struct Outcome {
    int exitStatus = -1;
    int signal = 0;
    double seconds = 0;
    bool killed = false;
    std::string err;
};

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

    /// Writes the case's file and starts `vellum-cli list` on it.
    pid_t start(const Case &c, std::size_t index)
    {
        std::vector<std::uint8_t> bytes = readFile(c.source);
        if (c.damage)
            c.damage(bytes);
        std::ofstream(c.path, std::ios::binary)
            .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
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
            const pid_t done = waitpid(-1, &status, WNOHANG);
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
                outcome.err = readText(m_dir + "/" + std::to_string(index) + ".err");
                running.erase(it);
                started.erase(done);
                // A helper still around now was left behind by this run.
                for (const pid_t stray : strayChildren(running)) {
                    ADD_FAILURE() << cases[index].label << ": left a process behind: " << commandLine(stray);
                    kill(stray, SIGKILL);
                    waitpid(stray, nullptr, 0);
                }
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

TEST_F(DamagedFiles, OpenOrFailCleanlyInTime)
{
    std::vector<Case> cases;
    std::uint64_t seed = kSeed;
    for (const char *fixture :
         {"features.mdb", "features.accdb", "jet3_size97.mdb", "ole.mdb", "newtypes.accdb", "complexData2007.accdb"}) {
        const std::string source = test::fixturePath(fixture);
        const auto image = readFile(source);
        ASSERT_GT(image.size(), 16384u) << fixture;
        for (auto &damage : test::damagesFor(image, seed++)) {
            const std::string label = std::string(fixture) + ":" + damage.label;
            const std::string path = m_dir + "/case" + std::to_string(cases.size()) + "-" + fixture;
            cases.push_back(Case{label, path, source, std::move(damage.apply)});
        }
    }
    ASSERT_GE(cases.size(), 200u);
    // The damaged files collected from the field, when ../shared is there (two make libmdb loop).
    if (const std::string corpus = test::sharedPath("corpus"); !corpus.empty())
        for (const auto &entry : fs::directory_iterator(corpus))
            if (entry.path().filename().string().rfind("damaged_", 0) == 0)
                cases.push_back(Case{entry.path().filename().string(),
                                     m_dir + "/case" + std::to_string(cases.size()) + entry.path().extension().string(),
                                     entry.path().string(), nullptr});

    const auto begin = Clock::now();
    const std::vector<Outcome> outcomes = runAll(cases);
    int opened = 0, refused = 0, stalled = 0;
    double slowest = 0;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Case &c = cases[i];
        const Outcome &o = outcomes[i];
        SCOPED_TRACE(c.label);
        slowest = std::max(slowest, o.seconds);
        EXPECT_FALSE(o.killed) << "still running after " << kKillAfter.count() << " s";
        EXPECT_EQ(o.signal, 0) << "vellum-cli crashed";
        EXPECT_LE(o.seconds, std::chrono::duration<double>(kAllowed).count());
        if (o.exitStatus == 0) {
            ++opened;
        } else {
            EXPECT_EQ(o.exitStatus, 1);
            EXPECT_NE(o.err.find("File (" + c.path + ") cannot be opened"), std::string::npos) << o.err.substr(0, 400);
            ++refused;
            if (o.seconds > 25)
                ++stalled;
        }
    }
    EXPECT_TRUE(strayChildren({}).empty());
    std::printf(
        "%zu damaged files: %d opened, %d refused (%d after the stall timeout); slowest %.1f s; all in %.0f s\n",
        cases.size(), opened, refused, stalled, slowest, std::chrono::duration<double>(Clock::now() - begin).count());
}

} // namespace
} // namespace vellum

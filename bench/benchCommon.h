#pragma once

// Small helpers shared by the benchmarks that time commands against their peers.

#include "loader/chooseFileReader.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vellum::bench {

/// The reader the command line would use (isolated when vellum-loader is beside the bench),
/// with the in-process notice on standard error otherwise.
inline std::unique_ptr<FileReader> commandLineReader()
{
    return chooseFileReader([](const std::string &line) { std::fprintf(stderr, "%s\n", line.c_str()); });
}

/// Seconds since a start time.
inline double since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A text as one single-quoted shell word.
inline std::string shellQuoted(const std::string &text)
{
    std::string out = "'";
    for (const char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

/// Processor seconds (user + system) of this process (RUSAGE_SELF) or of its waited-for
/// children (RUSAGE_CHILDREN).
inline double cpuSeconds(int who)
{
    struct rusage usage {};
    getrusage(who, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

/// How long a command took.
struct CommandTime {
    double wall = -1; ///< negative when the command failed
    double cpu = 0;   ///< processor time of the command and every process it waited for
};

/// Wall and processor time of a shell command. On a busy machine the wall time also holds the
/// time spent waiting for a core; the processor time leaves out waiting for the disk.
inline CommandTime timeShellCommand(const std::string &command)
{
    const double cpuBefore = cpuSeconds(RUSAGE_CHILDREN);
    const auto start = std::chrono::steady_clock::now();
    const int rc = std::system(command.c_str());
    CommandTime time;
    time.wall = rc == 0 ? since(start) : -1;
    time.cpu = cpuSeconds(RUSAGE_CHILDREN) - cpuBefore;
    return time;
}

/// Size of a file in bytes; -1 when it does not exist.
inline long long fileBytes(const std::string &path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 ? static_cast<long long>(info.st_size) : -1;
}

/// Runs `work` in a forked child, so that its memory and its peak are its own, and answers
/// the numbers it gave back (empty when the child failed); `peakKiB`, when given, receives the
/// child's peak resident size.
inline std::vector<double> runInChild(const std::function<std::vector<double>()> &work, long *peakKiB = nullptr)
{
    constexpr std::size_t kMaxValues = 8;
    int fds[2];
    if (pipe(fds) != 0)
        return {};
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return {};
    }
    if (pid == 0) {
        close(fds[0]);
        std::vector<double> values = work();
        values.resize(std::min(values.size(), kMaxValues));
        const auto bytes = static_cast<ssize_t>(values.size() * sizeof(double));
        _exit(write(fds[1], values.data(), static_cast<std::size_t>(bytes)) == bytes ? 0 : 1);
    }
    close(fds[1]);
    double buffer[kMaxValues];
    const ssize_t n = read(fds[0], buffer, sizeof buffer);
    close(fds[0]);
    int status = 0;
    struct rusage usage {};
    wait4(pid, &status, 0, &usage);
    if (peakKiB)
        *peakKiB = usage.ru_maxrss;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || n <= 0)
        return {};
    return std::vector<double>(buffer, buffer + n / static_cast<ssize_t>(sizeof(double)));
}

/// A new folder under /tmp for a benchmark's files; "" (with the reason printed) when none
/// can be made.
inline std::string makeWorkFolder()
{
    char pattern[] = "/tmp/vellum-bench-XXXXXX";
    if (!mkdtemp(pattern)) {
        std::perror("mkdtemp");
        return {};
    }
    return pattern;
}

} // namespace vellum::bench

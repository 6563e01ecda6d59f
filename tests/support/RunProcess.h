#pragma once

#include <string>
#include <vector>

namespace vellum::test {

/// The outcome of running a program: exit status (-1 when it did not exit normally, e.g. a
/// crash or a kill on time-out), what it wrote, and whether the time limit struck.
struct ProcessResult {
    int exitStatus = -1;
    int signal = 0;
    bool timedOut = false;
    std::string out;
    std::string err;
};

/// Runs a program with arguments (no shell), standard input from /dev/null, and collects its
/// output. After `timeoutSeconds` the whole process group is killed.
ProcessResult runProcess(const std::vector<std::string> &argv, double timeoutSeconds = 120);

/// Runs a program of the build tree (vellum-cli, vellum-loader, …).
inline ProcessResult runTool(const std::string &tool, std::vector<std::string> args, double timeoutSeconds = 120)
{
    args.insert(args.begin(), std::string(VELLUM_BIN_DIR) + "/" + tool);
    return runProcess(args, timeoutSeconds);
}

} // namespace vellum::test

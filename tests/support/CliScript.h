#pragma once

// Running vellum-cli through bash, for tests that need redirections, pipes and devices, and
// looking at what it left on disk.

#include "support/FileContents.h"
#include "support/RunProcess.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vellum::test {

inline std::string cliPath()
{
    return std::string(VELLUM_BIN_DIR) + "/vellum-cli";
}

/// Runs `script` with bash; "$CLI" is vellum-cli and "$1"… are `args`.
inline ProcessResult runScript(const std::string &script, const std::vector<std::string> &args = {},
                               double timeoutSeconds = 120)
{
    std::vector<std::string> argv = {"/bin/bash", "-c", "CLI=" + cliPath() + "\n" + script, "bash"};
    argv.insert(argv.end(), args.begin(), args.end());
    return runProcess(argv, timeoutSeconds);
}

inline bool isCharacterDevice(const std::string &path)
{
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISCHR(st.st_mode);
}

/// Every entry of a folder (hidden ones included) with its bytes (none for a pipe or device).
inline std::map<std::string, std::string> folderContents(const std::string &folder)
{
    std::map<std::string, std::string> out;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        out[entry.path().filename().string()] = entry.is_regular_file() ? fileContents(entry.path()) : std::string();
    return out;
}

} // namespace vellum::test

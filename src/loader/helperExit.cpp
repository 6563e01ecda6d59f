#include "loader/helperExit.h"

#include <signal.h>
#include <sys/wait.h>

#include <algorithm>

namespace vellum {

namespace {
constexpr std::uint64_t kGiB = 1ull << 30;
constexpr std::uint64_t kMemoryFloor = kGiB;
/// A loaded model takes a few times its file's size (text widened, row starts, indexes).
constexpr std::uint64_t kModelPerFileByte = 8;
} // namespace

int helperExitStatusFor(OpenFailure failure)
{
    return kHelperExitReasonBase + static_cast<int>(failure);
}

OpenFailure helperFailure(int waitStatus, bool stalled, bool killedByParent, const std::string &diagnostics)
{
    if (stalled)
        return OpenFailure::NoProgress;
    if (killedByParent && WIFSIGNALED(waitStatus) && WTERMSIG(waitStatus) == SIGKILL)
        return OpenFailure::Other; // it sent something malformed and was stopped
    if (WIFEXITED(waitStatus)) {
        const int code = WEXITSTATUS(waitStatus);
        const int reason = code - kHelperExitReasonBase;
        if (reason > static_cast<int>(OpenFailure::None) && reason <= static_cast<int>(OpenFailure::Other))
            return static_cast<OpenFailure>(reason);
        return OpenFailure::Other;
    }
    if (!WIFSIGNALED(waitStatus))
        return OpenFailure::Other;
    const bool outOfMemory = diagnostics.find("failed to allocate") != std::string::npos ||
                             diagnostics.find("out of memory") != std::string::npos;
    // A SIGKILL the parent did not send comes from the kernel's out-of-memory killer.
    if (outOfMemory || WTERMSIG(waitStatus) == SIGKILL)
        return OpenFailure::OutOfMemory;
    return OpenFailure::Crashed;
}

std::uint64_t helperMemoryLimit(std::uint64_t fileSize, std::uint64_t physicalMemory)
{
    const std::uint64_t wanted =
        fileSize > (UINT64_MAX - kGiB) / kModelPerFileByte ? UINT64_MAX : fileSize * kModelPerFileByte + kMemoryFloor;
    const std::uint64_t machine = physicalMemory / 4 * 3;
    return std::max(kMemoryFloor, std::min(wanted, machine));
}

} // namespace vellum

#include "loader/IsolatedReader.h"

#include "loader/HelperProcess.h"
#include "loader/helperExit.h"
#include "loader/modelWire.h"
#include "mdb/DatabaseImage.h"
#include "model/fileCheck.h"

#include <limits.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace vellum {

const std::string &helperPathBesideExecutable()
{
    static const std::string path = [] {
        char buffer[PATH_MAX];
        const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
        if (n <= 0)
            return std::string();
        const std::string executable(buffer, static_cast<std::size_t>(n));
        const std::size_t slash = executable.rfind('/');
        if (slash == std::string::npos)
            return std::string();
        return executable.substr(0, slash + 1) + "vellum-loader";
    }();
    return path;
}

const std::string &isolatedLoaderPath()
{
    static const std::string path = [] {
        const std::string &helper = helperPathBesideExecutable();
        return !helper.empty() && access(helper.c_str(), X_OK) == 0 ? helper : std::string();
    }();
    return path;
}

bool isolatedLoaderAvailable()
{
    return !isolatedLoaderPath().empty();
}

bool loadFileIsolated(TOrbMDBFile &file, LoadObserver *observer, const IsolatedLoadOptions &options)
{
    const std::string helper = options.helperPath.empty() ? isolatedLoaderPath() : options.helperPath;
    if (helper.empty())
        return false;
    const std::string path = file.openPath();
    if (const OpenFailure failure = checkDatabaseFile(path); failure != OpenFailure::None) {
        file.setOpenFailure(failure); // never handed to the helper: a FIFO or device could block it
        return false;
    }
    // A missing or wrong password is found here, from the header and its verifier, so that the
    // reason reaches the file without a helper run that could only fail.
    const OpenFailure passwordFailure = checkDatabasePassword(path, options.load.password);
    if (passwordFailure == OpenFailure::PasswordNeeded || passwordFailure == OpenFailure::WrongPassword) {
        file.setOpenFailure(passwordFailure);
        return false;
    }
    try {
        HelperProcess process(options.stallTimeout, [observer] { return observer && observer->shouldCancel(); });
        std::vector<std::string> argv = {helper,
                                         "--fd",
                                         std::to_string(HelperProcess::kChildPipe),
                                         "--parent",
                                         std::to_string(getpid()),
                                         "--workers",
                                         std::to_string(options.load.workers),
                                         "--parallel-from",
                                         std::to_string(options.load.parallelFromCells),
                                         "--split-from",
                                         std::to_string(options.load.splitFromCells),
                                         "--",
                                         path};
        if (!options.load.jet3CodePage.empty())
            argv.insert(argv.end() - 2, {"--codepage", options.load.jet3CodePage});
        if (options.memoryLimit)
            argv.insert(argv.end() - 2, {"--memory-limit", std::to_string(options.memoryLimit)});
        // The password reaches the helper through a pipe of its own, never its command line
        // (which every user can read in /proc) or its environment.
        if (!options.load.password.empty()) {
            argv.insert(argv.end() - 2, {"--password-fd", std::to_string(HelperProcess::kChildInput)});
            process.setInput(options.load.password);
        }
        if (!process.start(argv)) {
            file.setOpenFailure(OpenFailure::Other);
            return false;
        }
        ReceivedModel model;
        if (!readModelStream(process, observer, model) || !process.finish()) {
            process.kill(); // reaps the helper, so that its status says why
            file.setOpenFailure(process.cancelled() ? OpenFailure::Cancelled
                                                    : helperFailure(process.waitStatus(), process.stalled(),
                                                                    process.killedByParent(), process.diagnostics()));
            return false;
        }
        model.moveInto(file);
        return true;
    } catch (const std::bad_alloc &) {
        file.setOpenFailure(OpenFailure::OutOfMemory); // while receiving
        return false;
    } catch (const std::exception &) {
        file.setOpenFailure(OpenFailure::Other);
        return false;
    }
}

bool IsolatedReader::read(TOrbMDBFile &file, LoadObserver *observer)
{
    IsolatedLoadOptions options = m_options;
    options.load.password = password();
    return loadFileIsolated(file, observer, options);
}

} // namespace vellum

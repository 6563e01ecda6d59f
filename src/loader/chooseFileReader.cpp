#include "loader/chooseFileReader.h"

#include "loader/IsolatedReader.h"
#include "mdb/InProcessReader.h"

namespace vellum {

std::string inProcessNotice(const std::string &helperPath)
{
    return "reading in process: vellum-loader not found at " +
           (helperPath.empty() ? std::string("(the executable's folder is unknown)") : helperPath);
}

std::unique_ptr<FileReader> chooseFileReader(const std::function<void(const std::string &line)> &tell,
                                             const LoadOptions &load)
{
    if (isolatedLoaderAvailable()) {
        IsolatedLoadOptions options;
        options.load = load;
        return std::make_unique<IsolatedReader>(std::move(options));
    }
    if (tell)
        tell(inProcessNotice(helperPathBesideExecutable()));
    return std::make_unique<InProcessReader>(load);
}

} // namespace vellum

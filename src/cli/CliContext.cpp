#include "cli/CliContext.h"

#include "cli/LoadProgress.h"
#include "loader/chooseFileReader.h"
#include "model/TOrbMDBFile.h"

#include <unistd.h>

#include <cstdio>

namespace vellum::cli {

bool wantsHelp(const std::vector<std::string> &args)
{
    for (const auto &arg : args)
        if (arg == "--help" || arg == "-h")
            return true;
    return false;
}

void printError(const std::string &message)
{
    std::fprintf(stderr, "vellum-cli: %s\n", message.c_str());
}

int usageError(const Command &command, const std::string &message)
{
    printError(message);
    std::fprintf(stderr, "usage: %s\n", command.usage);
    return kExitUsage;
}

std::unique_ptr<TOrbMDBFile> openDatabase(CliContext &context, const std::string &path)
{
    if (!context.reader)
        context.reader = chooseFileReader([](const std::string &line) { std::fprintf(stderr, "%s\n", line.c_str()); });
    auto file = TOrbMDBFile::fromPath(path);
    LoadProgress progress(file->size());
    if (access(path.c_str(), R_OK) != 0 || !file->open(*context.reader, progress.observer())) {
        progress.finish();
        std::fprintf(stderr, "File (%s) cannot be opened\n", path.c_str());
        return nullptr;
    }
    progress.finish();
    return file;
}

} // namespace vellum::cli

#include "cli/CliContext.h"

#include "cli/LoadProgress.h"
#include "cli/passwordInput.h"
#include "loader/chooseFileReader.h"
#include "model/TOrbMDBFile.h"

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

bool takeCodePageOption(CliContext &context, std::string &error)
{
    auto &args = context.args;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--")
            break;
        if (args[i] != "--codepage")
            continue;
        if (i + 1 >= args.size()) {
            error = "option --codepage needs a code page (e.g. GBK, CP1251)";
            return false;
        }
        if (!isKnownCodePage(args[i + 1])) {
            error = "unknown code page '" + args[i + 1] + "'";
            return false;
        }
        context.codePage = args[i + 1];
        args.erase(args.begin() + static_cast<std::ptrdiff_t>(i), args.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        --i;
    }
    return true;
}

std::unique_ptr<TOrbMDBFile> openDatabase(CliContext &context, const std::string &path)
{
    if (!context.reader) {
        LoadOptions load;
        load.jet3CodePage = context.codePage;
        context.reader =
            chooseFileReader([](const std::string &line) { std::fprintf(stderr, "%s\n", line.c_str()); }, load);
    }
    auto file = TOrbMDBFile::fromPath(path);
    context.reader->setPassword(context.password.value_or(std::string()));
    bool opened = false;
    {
        LoadProgress progress(file->size());
        opened = file->open(*context.reader, progress.observer());
        progress.finish();
    }
    // An encrypted file and no password given: ask for it when someone is at the terminal.
    if (!opened && file->openFailure() == OpenFailure::PasswordNeeded && !context.password && isatty(STDIN_FILENO)) {
        if (const auto typed = promptForPassword(path); typed && !typed->empty()) {
            context.reader->setPassword(*typed);
            LoadProgress progress(file->size());
            opened = file->open(*context.reader, progress.observer());
            progress.finish();
        }
    }
    if (!opened && file->openFailure() == OpenFailure::PasswordNeeded) {
        std::fprintf(stderr, "File (%s) is encrypted: a password is needed\n", path.c_str());
        return nullptr;
    }
    if (!opened && file->openFailure() == OpenFailure::WrongPassword) {
        std::fprintf(stderr, "The password for (%s) is not correct\n", path.c_str());
        return nullptr;
    }
    // A file whose catalog cannot be read has nothing to show or convert: it cannot be opened.
    const OpenFailure failure = !opened                       ? file->openFailure()
                                : catalogLost(file->losses()) ? OpenFailure::CatalogUnreadable
                                                              : OpenFailure::None;
    if (failure != OpenFailure::None) {
        std::fprintf(stderr, "File (%s) cannot be opened\n%s\n", path.c_str(), openFailureText(failure).c_str());
        return nullptr;
    }
    for (const LossReport &loss : file->losses())
        std::fprintf(stderr, "vellum-cli: warning: %s\n", lossText(loss).c_str());
    if (!file->losses().empty())
        context.lossesReported = true;
    return file;
}

} // namespace vellum::cli

// vellum-cli: the command-line converter. Opens Access files through the core and prints or
// converts what is inside.

#include "cli/CliContext.h"
#include "cli/passwordInput.h"
#include "export/OutputFile.h"

#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

using namespace vellum::cli;

namespace {

void printHelp(std::FILE *out)
{
    std::fprintf(out, "usage: vellum-cli COMMAND [ARGS]\n\n"
                      "Reads Microsoft Access files (.mdb, .accdb) and shows or converts their content.\n\n"
                      "Commands:\n");
    for (const Command *command : allCommands())
        std::fprintf(out, "  %-8s %s\n", command->name, command->summary);
    std::fprintf(out, "\nRun 'vellum-cli COMMAND --help' for the options of a command. Every command that reads\n"
                      "a file takes --codepage NAME: the code page of an Access 97 file's text (default\n"
                      "windows-1252; such files do not record it), e.g. GBK or CP1251.\n"
                      "An encrypted file (Access 2007 and later) needs its password: --db-password TEXT,\n"
                      "or --db-password-file FILE (its first line); without either, the password is\n"
                      "asked for when standard input is a terminal.\n\n"
                      "Exit status: 0 everything was read (and written); 1 the file cannot be opened (not\n"
                      "found, not readable, not an Access file, catalog unreadable, encrypted, ...; the line\n"
                      "after \"File (NAME) cannot be opened\" says why); 2 bad usage; 3 done, but something\n"
                      "was lost: part of the file could not be read (one warning line per loss), a table\n"
                      "or file could not be written, the output was cut short, or the export was stopped.\n");
}

/// The tool's own output descriptor, with the reason of the first write that failed (stdio keeps
/// only that one failed, not why).
struct Output {
    int fd = -1;
    int firstError = 0;
};
Output g_output;

ssize_t writeOutput(void *cookie, const char *data, size_t size)
{
    auto *output = static_cast<Output *>(cookie);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(output->fd, data + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (!output->firstError)
                output->firstError = n < 0 ? errno : EIO;
            return -1;
        }
        done += static_cast<std::size_t>(n);
    }
    return static_cast<ssize_t>(size);
}

int closeOutput(void *cookie)
{
    return ::close(static_cast<Output *>(cookie)->fd);
}

/// Keeps the real standard output for the tool and sends descriptor 1 to standard error.
std::FILE *claimStandardOutput()
{
    std::fflush(stdout);
    const int saved = dup(1);
    if (saved < 0)
        return stdout;
    if (dup2(2, 1) < 0) {
        close(saved);
        return stdout;
    }
    g_output.fd = saved;
    // An export to "-" writes into the real standard output too.
    vellum::OutputFile::setStandardOutputDescriptor(saved);
    std::FILE *out = fopencookie(&g_output, "w", cookie_io_functions_t{nullptr, writeOutput, nullptr, closeOutput});
    return out ? out : stdout;
}

} // namespace

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "C");
    std::FILE *out = claimStandardOutput();
    int status = kExitUsage;
    if (argc < 2) {
        printHelp(stderr);
    } else if (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h") || !std::strcmp(argv[1], "help")) {
        printHelp(out);
        status = kExitOk;
    } else if (!std::strcmp(argv[1], "--version")) {
        std::fprintf(out, "vellum-cli %s\n", VELLUM_VERSION);
        status = kExitOk;
    } else {
        const Command *chosen = nullptr;
        for (const Command *command : allCommands())
            if (!std::strcmp(command->name, argv[1]))
                chosen = command;
        if (!chosen) {
            printError(std::string("unknown command '") + argv[1] + "'");
            printHelp(stderr);
        } else {
            CliContext context;
            context.out = out;
            for (int i = 2; i < argc; ++i)
                context.args.emplace_back(argv[i]);
            std::string error;
            if (wantsHelp(context.args)) {
                std::fprintf(out, "usage: %s\n", chosen->usage);
                status = kExitOk;
            } else if (!takeCodePageOption(context, error)) {
                status = usageError(*chosen, error);
            } else if (const int passwordStatus = takePasswordOptions(context, error); passwordStatus != kExitOk) {
                if (passwordStatus == kExitUsage) {
                    status = usageError(*chosen, error);
                } else {
                    printError(error);
                    status = passwordStatus;
                }
            } else {
                status = chosen->run(context);
                if (status == kExitOk && context.lossesReported)
                    status = kExitLosses;
            }
        }
    }
    // Every write to the output is checked here: stdio keeps the first error, and a full disk
    // or a closed descriptor must not pass for a complete result.
    const bool flushed = std::fflush(out) == 0;
    if ((!flushed || std::ferror(out)) && g_output.firstError == EPIPE) {
        // The reader went away (`| head`): end quietly, the way any tool in a pipe does.
        std::signal(SIGPIPE, SIG_DFL);
        std::raise(SIGPIPE);
    }
    if (!flushed || std::ferror(out)) {
        printError(
            std::string("the output could not be written completely") +
            (g_output.firstError ? std::string(" (") + std::strerror(g_output.firstError) + ")" : std::string()));
        if (status == kExitOk)
            status = kExitLosses;
    }
    return status;
}

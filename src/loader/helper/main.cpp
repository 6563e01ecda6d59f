// vellum-loader: reads an Access file with libmdb in a process of its own and sends the loaded
// model to the process that started it (see loader/modelWire.h), so that a damaged file can
// neither hang nor crash that process.
//
//   vellum-loader [--fd N] [--parent PID] [--workers N] [--parallel-from CELLS] [--split-from CELLS]
//                 [--codepage NAME] [--password-fd N] [--] FILE
//
// With --password-fd, the password of an encrypted file is read from descriptor N up to its
// end (the caller writes it into a pipe): it never appears on the command line.
//
// Exit status: 0 when the whole model was sent, 1 when the file cannot be read or the pipe
// broke, 2 for wrong arguments.

#include "loader/ModelStreamWriter.h"
#include "mdb/MdbLoader.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

using namespace vellum;

namespace {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

bool parseNumber(const char *text, unsigned long long &value)
{
    if (!text || !*text)
        return false;
    char *end = nullptr;
    errno = 0;
    value = std::strtoull(text, &end, 10);
    return errno == 0 && *end == '\0';
}

/// Writes everything to a descriptor, across partial writes and interruptions.
bool writeAll(int fd, const void *data, std::size_t length)
{
    const auto *bytes = static_cast<const char *>(data);
    while (length > 0) {
        const ssize_t n = write(fd, bytes, length);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes += n;
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

/// Reads the password from `fd` up to its end and closes it; false when it cannot be read or is
/// longer than any password.
bool readPassword(int fd, std::string &password)
{
    constexpr std::size_t kMaxPassword = 16 * 1024;
    char buffer[4096];
    for (;;) {
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 || password.size() + static_cast<std::size_t>(n) > kMaxPassword) {
            close(fd);
            return false;
        }
        if (n == 0)
            break;
        password.append(buffer, static_cast<std::size_t>(n));
    }
    close(fd);
    return true;
}

int usage(const char *message)
{
    std::fprintf(stderr,
                 "vellum-loader: %s\nusage: vellum-loader [--fd N] [--parent PID] [--workers N] "
                 "[--parallel-from CELLS] [--split-from CELLS] [--codepage NAME] [--password-fd N] [--] FILE\n",
                 message);
    return kExitUsage;
}

} // namespace

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "C");
    unsigned long long fd = 3, parent = 0, workers = 2, passwordFd = 0;
    bool havePassword = false;
    LoadOptions options;
    std::string path;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        unsigned long long value = 0;
        const bool hasValue = i + 1 < argc && parseNumber(argv[i + 1], value);
        if (arg == "--") {
            if (i + 2 != argc)
                return usage("expected one FILE after --");
            path = argv[i + 1];
            break;
        } else if (arg == "--fd" || arg == "--parent" || arg == "--workers" || arg == "--parallel-from" ||
                   arg == "--split-from") {
            if (!hasValue)
                return usage(("option " + arg + " needs a number").c_str());
            if (arg == "--fd")
                fd = value;
            else if (arg == "--parent")
                parent = value;
            else if (arg == "--workers")
                workers = value;
            else if (arg == "--parallel-from")
                options.parallelFromCells = value;
            else
                options.splitFromCells = value;
            ++i;
        } else if (arg == "--password-fd") {
            if (!hasValue || value > 1024)
                return usage("option --password-fd needs a descriptor number");
            passwordFd = value;
            havePassword = true;
            ++i;
        } else if (arg == "--codepage") {
            if (i + 1 >= argc || !isKnownCodePage(argv[i + 1]))
                return usage("option --codepage needs a code page iconv knows");
            options.jet3CodePage = argv[++i];
        } else if (arg.rfind("--", 0) == 0 || !path.empty()) {
            return usage(("unexpected argument " + arg).c_str());
        } else {
            path = arg;
        }
    }
    if (path.empty())
        return usage("expected one FILE");
    if (fd > 1024 || workers < 1 || workers > 2)
        return usage("--fd or --workers out of range");
    options.workers = static_cast<unsigned>(workers);
    if (havePassword && !readPassword(static_cast<int>(passwordFd), options.password))
        return kExitFailure;

    if (parent) {
        // Die with the caller: a helper whose caller is gone must not go on reading.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (static_cast<unsigned long long>(getppid()) != parent)
            return kExitFailure;
    }
    const int out = static_cast<int>(fd);
    TOrbMDBFile relationships;
    ModelStreamWriter writer([out](const void *data, std::size_t length) { return writeAll(out, data, length); },
                             relationships);
    if (!writer.begin())
        return kExitFailure;
    if (!loadDatabase(path, relationships, writer, options))
        return kExitFailure;
    // The stream is complete: end at once and leave the freeing of the model to the system.
    _exit(writer.finish() ? kExitOk : kExitFailure);
}

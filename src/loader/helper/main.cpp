// vellum-loader: reads an Access file with libmdb in a process of its own and sends the loaded
// model to the process that started it (see loader/modelWire.h), so that a damaged file can
// neither hang nor crash that process.
//
//   vellum-loader [--fd N] [--parent PID] [--workers N] [--parallel-from CELLS] [--split-from CELLS]
//                 [--codepage NAME] [--memory-limit BYTES] [--password-fd N] [--] FILE
//
// With --password-fd, the password of an encrypted file is read from descriptor N up to its
// end (the caller writes it into a pipe): it never appears on the command line.
//
// Exit status: 0 when the whole model was sent, 1 when the file cannot be read or the pipe
// broke, 2 for wrong arguments, 10 and above when it knows why the file cannot be read (see
// loader/helperExit.h). Its address space is limited (--memory-limit, or derived from the
// file's size and the machine's memory), so that a damaged file cannot take the machine's
// memory: running into the limit ends it with the out-of-memory status.

#include "loader/ModelStreamWriter.h"
#include "loader/helperExit.h"
#include "mdb/MdbLoader.h"
#include "model/fileCheck.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <system_error>

using namespace vellum;

#if defined(__SANITIZE_ADDRESS__)
#define VELLUM_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELLUM_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef VELLUM_ADDRESS_SANITIZER
constexpr bool kAddressSanitizerBuild = true;
#else
constexpr bool kAddressSanitizerBuild = false;
#endif

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
                 "[--parallel-from CELLS] [--split-from CELLS] [--codepage NAME] [--memory-limit BYTES] [--password-fd "
                 "N] [--] FILE\n",
                 message);
    return kExitUsage;
}

/// Ends the helper when an allocation fails: the parent learns why from the exit status.
[[noreturn]] void outOfMemory()
{
    static const char message[] = "vellum-loader: out of memory\n";
    [[maybe_unused]] const ssize_t written = write(2, message, sizeof message - 1);
    _exit(helperExitStatusFor(OpenFailure::OutOfMemory));
}

/// The address-space limit in force, for the fault handler.
volatile std::uint64_t g_memoryLimit = 0;

/// The address space in use, from /proc/self/statm (its first field, in pages); 0 when unknown.
/// Only calls that are safe in a signal handler.
std::uint64_t addressSpaceInUse()
{
    const int fd = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    char text[64];
    const ssize_t n = read(fd, text, sizeof text - 1);
    close(fd);
    std::uint64_t pages = 0;
    for (ssize_t i = 0; i < n && text[i] >= '0' && text[i] <= '9'; ++i)
        pages = pages * 10 + static_cast<std::uint64_t>(text[i] - '0');
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

/// A fault close to the memory limit is an allocation that failed and was not checked (libmdb
/// uses the result of malloc unchecked): reported as running out of memory. Any other fault is
/// a crash, left to the default action.
void onFault(int number)
{
    constexpr std::uint64_t kNearTheLimit = 64ull << 20;
    const std::uint64_t limit = g_memoryLimit;
    if (limit && addressSpaceInUse() + kNearTheLimit >= limit)
        outOfMemory();
    ::signal(number, SIG_DFL);
    raise(number);
}

/// Routes SIGSEGV and SIGBUS to onFault, on a stack of its own (the fault may be a full stack).
void catchFaults()
{
    static char alternateStack[64 * 1024];
    stack_t stack{};
    stack.ss_sp = alternateStack;
    stack.ss_size = sizeof alternateStack;
    sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_handler = onFault;
    action.sa_flags = SA_ONSTACK | SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    sigaction(SIGSEGV, &action, nullptr);
    sigaction(SIGBUS, &action, nullptr);
}

/// Limits the address space: `limit` bytes, or when 0 what helperMemoryLimit gives for the file.
void limitMemory(unsigned long long limit, const std::string &path)
{
    if (!limit) {
        struct stat st {};
        const std::uint64_t size = stat(path.c_str(), &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
        const long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
        const std::uint64_t machine =
            pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
        limit = helperMemoryLimit(size, machine);
    }
    // An AddressSanitizer build has reserved terabytes of shadow address space before main: a
    // limit on the address space would fail its every allocation, so such a build runs without.
    if (!kAddressSanitizerBuild) {
        const rlimit wanted{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
        if (setrlimit(RLIMIT_AS, &wanted) == 0) // a lower limit already in place stays
            g_memoryLimit = limit;
    }
    catchFaults();
}

} // namespace

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "C");
    unsigned long long fd = 3, parent = 0, workers = 2, memoryLimit = 0, passwordFd = 0;
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
                   arg == "--split-from" || arg == "--memory-limit") {
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
            else if (arg == "--memory-limit")
                memoryLimit = value;
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
    // Checked here too, for a helper started by hand: a FIFO or device is never opened.
    if (const OpenFailure failure = checkDatabaseFile(path); failure != OpenFailure::None)
        return helperExitStatusFor(failure);
    std::set_new_handler(outOfMemory);
    limitMemory(memoryLimit, path);
    const int out = static_cast<int>(fd);
    try {
        TOrbMDBFile relationships;
        ModelStreamWriter writer([out](const void *data, std::size_t length) { return writeAll(out, data, length); },
                                 relationships);
        if (!writer.begin())
            return kExitFailure;
        if (!loadDatabase(path, relationships, writer, options))
            return kExitFailure;
        // The stream is complete: end at once and leave the freeing of the model to the system.
        _exit(writer.finish() ? kExitOk : kExitFailure);
    } catch (const std::system_error &error) {
        // A thread whose stack does not fit into the address space left.
        if (error.code() == std::errc::resource_unavailable_try_again || error.code() == std::errc::not_enough_memory)
            outOfMemory();
        return kExitFailure;
    }
}

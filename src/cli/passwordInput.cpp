#include "cli/passwordInput.h"

#include "cli/CliContext.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace vellum::cli {
namespace {

constexpr std::size_t kMaxPasswordFileBytes = 64 * 1024;

/// Reads one line from `fd` byte by byte (nothing beyond it is consumed); nullopt at an end of
/// input before any line end.
std::optional<std::string> readLine(int fd)
{
    std::string line;
    for (;;) {
        char c = 0;
        const ssize_t n = ::read(fd, &c, 1);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return line.empty() ? std::nullopt : std::optional<std::string>(line);
        if (c == '\n')
            break;
        line.push_back(c);
    }
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

void writeText(int fd, const std::string &text)
{
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        done += static_cast<std::size_t>(n);
    }
}

} // namespace

std::string firstLine(const std::string &text)
{
    std::string line = text.substr(0, text.find('\n'));
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

int takePasswordOptions(CliContext &context, std::string &error)
{
    auto &args = context.args;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--")
            break;
        const bool inline_ = args[i] == "--db-password";
        if (!inline_ && args[i] != "--db-password-file")
            continue;
        if (i + 1 >= args.size()) {
            error = "option " + args[i] + (inline_ ? " needs the password" : " needs a file name");
            return kExitUsage;
        }
        if (context.password) {
            error = "the password may be given only once (--db-password or --db-password-file)";
            return kExitUsage;
        }
        if (inline_) {
            context.password = args[i + 1];
        } else {
            std::ifstream in(args[i + 1], std::ios::binary);
            std::string text(kMaxPasswordFileBytes, '\0');
            if (in)
                in.read(text.data(), static_cast<std::streamsize>(text.size()));
            if (!in && !in.eof()) {
                error = "cannot read the password file " + args[i + 1];
                return kExitFailure;
            }
            text.resize(static_cast<std::size_t>(in.gcount()));
            context.password = firstLine(text);
        }
        args.erase(args.begin() + static_cast<std::ptrdiff_t>(i), args.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        --i;
    }
    return kExitOk;
}

std::optional<std::string> promptForPassword(const std::string &name)
{
    int in = ::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    const bool ownTerminal = in >= 0;
    if (!ownTerminal)
        in = STDIN_FILENO;
    const int out = ownTerminal ? in : STDERR_FILENO;
    // Echo goes off before the prompt shows, so that nothing typed after it is ever echoed.
    termios saved{};
    const bool echoOff = tcgetattr(in, &saved) == 0;
    if (echoOff) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        quiet.c_lflag |= ECHONL;
        tcsetattr(in, TCSAFLUSH, &quiet);
    }
    writeText(out, "Password for " + name + ": ");
    std::optional<std::string> line = readLine(in);
    if (echoOff)
        tcsetattr(in, TCSANOW, &saved);
    if (ownTerminal)
        ::close(in);
    return line;
}

} // namespace vellum::cli

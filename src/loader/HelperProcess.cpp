#include "loader/HelperProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

extern char **environ;

namespace vellum {

namespace {
constexpr std::size_t kBufferSize = 256 * 1024;
constexpr auto kCancelPollInterval = std::chrono::milliseconds(50);
/// Both pipe ends are moved above the descriptors the child sets up, so that setting up
/// descriptor 3 never meets one of them.
constexpr int kFirstPrivateDescriptor = 10;

int moveAbove(int fd)
{
    const int moved = fcntl(fd, F_DUPFD_CLOEXEC, kFirstPrivateDescriptor);
    close(fd);
    return moved;
}

/// Writes everything into a descriptor; false when it cannot.
bool writeAllTo(int fd, const char *data, std::size_t length)
{
    while (length > 0) {
        const ssize_t n = ::write(fd, data, length);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data += n;
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

/// A pipe whose ends lie above the descriptors the child sets up; false when none can be made.
bool makePipe(int &readFd, int &writeFd)
{
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return false;
    readFd = moveAbove(fds[0]);
    writeFd = moveAbove(fds[1]);
    if (readFd >= 0 && writeFd >= 0)
        return true;
    if (readFd >= 0)
        close(readFd);
    if (writeFd >= 0)
        close(writeFd);
    return false;
}
} // namespace

HelperProcess::HelperProcess(std::chrono::milliseconds stallTimeout, std::function<bool()> shouldCancel)
    : m_stallTimeout(stallTimeout), m_shouldCancel(std::move(shouldCancel))
{
}

HelperProcess::~HelperProcess()
{
    kill();
}

bool HelperProcess::start(const std::vector<std::string> &argv)
{
    if (argv.empty() || m_pid > 0)
        return false;
    int readFd = -1, writeFd = -1, errorReadFd = -1, errorWriteFd = -1;
    if (!makePipe(readFd, writeFd))
        return false;
    if (!makePipe(errorReadFd, errorWriteFd)) {
        close(readFd);
        close(writeFd);
        return false;
    }
    // The input goes into a pipe of its own before the child starts; it fits the pipe's buffer.
    int inputReadFd = -1;
    if (!m_input.empty()) {
        int inputWriteFd = -1;
        if (m_input.size() > kMaxInput || !makePipe(inputReadFd, inputWriteFd)) {
            for (const int fd : {readFd, writeFd, errorReadFd, errorWriteFd})
                close(fd);
            return false;
        }
        const bool written = writeAllTo(inputWriteFd, m_input.data(), m_input.size());
        close(inputWriteFd);
        if (!written) {
            for (const int fd : {readFd, writeFd, errorReadFd, errorWriteFd, inputReadFd})
                close(fd);
            return false;
        }
    }
    fcntl(readFd, F_SETPIPE_SZ, 1 << 20); // fewer, larger transfers; the default size also works
    fcntl(errorReadFd, F_SETFL, O_NONBLOCK);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, errorWriteFd, 2);
    posix_spawn_file_actions_adddup2(&actions, writeFd, kChildPipe);
    if (inputReadFd >= 0)
        posix_spawn_file_actions_adddup2(&actions, inputReadFd, kChildInput);
    posix_spawn_file_actions_addclosefrom_np(&actions, (inputReadFd >= 0 ? kChildInput : kChildPipe) + 1);
    // The child starts with no blocked signals and every signal at its default action.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<char *> args;
    for (const auto &arg : argv)
        args.push_back(const_cast<char *>(arg.c_str()));
    args.push_back(nullptr);
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, args[0], &actions, &attributes, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(writeFd);
    close(errorWriteFd);
    if (inputReadFd >= 0)
        close(inputReadFd);
    if (rc != 0) {
        close(readFd);
        close(errorReadFd);
        return false;
    }
    m_pid = pid;
    m_fd = readFd;
    m_errorFd = errorReadFd;
    m_errorBytes = 0;
    m_diagnostics.clear();
    m_waitStatus = -1;
    m_killedByParent = false;
    m_pipeEnded = false;
    m_peakMemoryBytes = 0;
    m_buffer.resize(kBufferSize);
    m_begin = m_end = 0;
    m_lastByte = m_lastCancelPoll = std::chrono::steady_clock::now();
    return true;
}

bool HelperProcess::cancelRequested()
{
    if (m_cancelled)
        return true;
    if (!m_shouldCancel)
        return false;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastCancelPoll < kCancelPollInterval)
        return false;
    m_lastCancelPoll = now;
    m_cancelled = m_shouldCancel();
    return m_cancelled;
}

HelperProcess::Wait HelperProcess::waitReadable()
{
    for (;;) {
        if (cancelRequested())
            return Wait::Failed;
        const auto idle = std::chrono::steady_clock::now() - m_lastByte;
        if (idle >= m_stallTimeout) {
            m_stalled = true;
            return Wait::Failed;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_stallTimeout - idle);
        const auto slice =
            std::min<std::chrono::milliseconds>(left + std::chrono::milliseconds(1), kCancelPollInterval);
        pollfd descriptors[2] = {{m_fd, POLLIN, 0}, {m_errorFd, POLLIN, 0}}; // a negative fd is skipped
        const int ready = poll(descriptors, 2, static_cast<int>(slice.count()));
        if (ready < 0 && errno != EINTR)
            return Wait::Failed;
        if (ready > 0 && descriptors[1].revents)
            relayErrors(); // always drained, or a chatty child would block on a full pipe
        if (ready > 0 && descriptors[0].revents)
            return Wait::Ready; // data, or the end of the pipe: read() tells which
    }
}

bool HelperProcess::read(void *data, std::size_t length)
{
    if (m_fd < 0)
        return false;
    auto *out = static_cast<char *>(data);
    while (length > 0) {
        if (m_begin < m_end) {
            const std::size_t n = std::min(length, m_end - m_begin);
            std::memcpy(out, m_buffer.data() + m_begin, n);
            m_begin += n;
            out += n;
            length -= n;
            continue;
        }
        if (cancelRequested() || waitReadable() != Wait::Ready)
            return false;
        // Large reads go straight to their destination.
        const bool direct = length >= m_buffer.size();
        char *target = direct ? out : m_buffer.data();
        const ssize_t n = ::read(m_fd, target, direct ? length : m_buffer.size());
        if (n < 0) {
            if (errno == EINTR || errno == EAGAIN)
                continue;
            return false;
        }
        if (n == 0) {
            m_pipeEnded = true;
            return false; // the child closed the pipe early
        }
        m_lastByte = std::chrono::steady_clock::now();
        if (direct) {
            out += n;
            length -= static_cast<std::size_t>(n);
        } else {
            m_begin = 0;
            m_end = static_cast<std::size_t>(n);
        }
    }
    return true;
}

bool HelperProcess::finish()
{
    if (m_pid <= 0 || m_fd < 0 || m_begin < m_end) {
        kill();
        return false;
    }
    // Nothing may follow the last message.
    for (;;) {
        if (waitReadable() != Wait::Ready) {
            kill();
            return false;
        }
        char extra;
        const ssize_t n = ::read(m_fd, &extra, 1);
        if (n == 0)
            break;
        if (n < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        kill();
        return false;
    }
    close(m_fd);
    m_fd = -1;
    const auto deadline = std::chrono::steady_clock::now() + m_stallTimeout;
    auto pause = std::chrono::microseconds(100);
    for (;;) {
        int status = 0;
        struct rusage usage {};
        const pid_t done = wait4(m_pid, &status, WNOHANG, &usage);
        if (done == m_pid) {
            m_pid = -1;
            m_waitStatus = status;
            m_peakMemoryBytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
            relayErrors();
            closePipes();
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        }
        if (done < 0 && errno == ECHILD) {
            m_pid = -1; // reaped elsewhere (SIGCHLD ignored): its stream was complete
            closePipes();
            return true;
        }
        if (done < 0 && errno != EINTR) {
            kill();
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            kill();
            return false;
        }
        relayErrors();
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(20000));
    }
}

bool HelperProcess::reap(std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    auto pause = std::chrono::microseconds(100);
    for (;;) {
        int status = 0;
        struct rusage usage {};
        const pid_t done = wait4(m_pid, &status, patience.count() < 0 ? 0 : WNOHANG, &usage);
        if (done == m_pid) {
            m_pid = -1;
            m_waitStatus = status;
            m_peakMemoryBytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
            return true;
        }
        if (done < 0 && errno == EINTR)
            continue;
        if (done < 0) {
            m_pid = -1; // reaped elsewhere
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        relayErrors();
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(20000));
    }
}

void HelperProcess::kill()
{
    if (m_pid > 0) {
        // A child that closed its pipe is ending by itself (a crash, its memory limit, a
        // failure it names by its exit status): let it, so that its status tells why.
        constexpr auto kEndingPatience = std::chrono::milliseconds(2000);
        if (!reap(m_pipeEnded ? kEndingPatience : std::chrono::milliseconds(0))) {
            m_killedByParent = true;
            ::kill(m_pid, SIGKILL);
            reap(std::chrono::milliseconds(-1));
        }
        relayErrors();
    }
    closePipes();
}

void HelperProcess::relayErrors()
{
    char buffer[8192];
    while (m_errorFd >= 0) {
        const ssize_t n = ::read(m_errorFd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0 || errno != EAGAIN) {
                close(m_errorFd);
                m_errorFd = -1;
            }
            return;
        }
        const std::size_t room = m_errorBytes < kErrorRelayLimit ? kErrorRelayLimit - m_errorBytes : 0;
        const std::size_t keep = std::min(room, static_cast<std::size_t>(n));
        m_diagnostics.append(buffer, keep);
        m_errorBytes += static_cast<std::size_t>(n);
    }
}

void HelperProcess::closePipes()
{
    for (int *fd : {&m_fd, &m_errorFd}) {
        if (*fd >= 0) {
            close(*fd);
            *fd = -1;
        }
    }
    m_begin = m_end = 0;
}

} // namespace vellum

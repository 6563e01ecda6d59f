#include "support/RunProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

namespace vellum::test {

ProcessResult runProcess(const std::vector<std::string> &argv, double timeoutSeconds)
{
    ProcessResult result;
    int outPipe[2], errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0 || pipe2(errPipe, O_CLOEXEC) != 0)
        return result;
    const pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0);
        const int devNull = open("/dev/null", O_RDONLY);
        dup2(devNull, 0);
        dup2(outPipe[1], 1);
        dup2(errPipe[1], 2);
        std::vector<char *> args;
        for (const auto &arg : argv)
            args.push_back(const_cast<char *>(arg.c_str()));
        args.push_back(nullptr);
        execv(args[0], args.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    if (pid < 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        return result;
    }
    setpgid(pid, pid);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    int open = 2;
    char buffer[65536];
    while (open > 0) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            result.timedOut = true;
            kill(-pid, SIGKILL);
            break;
        }
        if (poll(fds, 2, static_cast<int>(std::min<long long>(left.count(), 1000))) < 0)
            break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                (i == 0 ? result.out : result.err).append(buffer, static_cast<size_t>(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    for (auto &fd : fds)
        if (fd.fd >= 0)
            close(fd.fd);
    int status = 0;
    waitpid(pid, &status, 0);
    kill(-pid, SIGKILL); // anything the program left behind in its group
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    return result;
}

} // namespace vellum::test

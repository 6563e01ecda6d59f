#pragma once

#include "loader/WireReader.h"

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace vellum {

/// A helper program run as a child process that sends its results through a pipe. The child
/// gets /dev/null as standard input and output (nothing it prints reaches ours) and writes its
/// results to the pipe on descriptor 3. What it writes to standard error is kept, up to
/// kErrorRelayLimit bytes (a damaged file can make libmdb warn millions of times), for the
/// caller to classify: it never reaches our standard error raw. Reading waits at most the stall timeout for each new
/// byte and polls the cancel function every 50 ms. Unless `finish` succeeded, the destructor kills the child and reaps
/// it, so none is left behind.
class HelperProcess : public ByteSource {
public:
    /// `shouldCancel` may be empty.
    HelperProcess(std::chrono::milliseconds stallTimeout, std::function<bool()> shouldCancel);
    ~HelperProcess() override;
    HelperProcess(const HelperProcess &) = delete;
    HelperProcess &operator=(const HelperProcess &) = delete;

    /// The descriptor on which the child finds the pipe.
    static constexpr int kChildPipe = 3;
    /// The descriptor on which the child reads the bytes given to `setInput`, when there are any.
    static constexpr int kChildInput = 4;
    /// Most bytes `setInput` takes: they are written into the pipe before the child starts.
    static constexpr std::size_t kMaxInput = 16 * 1024;
    /// Bytes of the child's standard error kept per run.
    static constexpr std::size_t kErrorRelayLimit = 16 * 1024;

    /// Bytes the next started child reads on kChildInput, up to their end (at most kMaxInput):
    /// a secret such as a password travels this way, never on the command line.
    void setInput(std::string input) { m_input = std::move(input); }
    /// Starts the program (argv[0] is its path); false when it cannot be started (or the
    /// input is too long).
    [[nodiscard]] bool start(const std::vector<std::string> &argv);
    /// Fills the buffer from the pipe; false at its end, a stall, a cancel or an error.
    [[nodiscard]] bool read(void *data, std::size_t length) override;
    /// After the last expected byte: true when the pipe ends there and the child exits with
    /// status 0 in time. The child is reaped either way.
    [[nodiscard]] bool finish();
    /// Kills and reaps the child (if it still runs).
    void kill();

    bool cancelled() const { return m_cancelled; }
    bool stalled() const { return m_stalled; }
    /// The start of what the child wrote to standard error (at most kErrorRelayLimit bytes).
    const std::string &diagnostics() const { return m_diagnostics; }
    /// Once the child is reaped: its wait status (as waitpid gives it); -1 before.
    int waitStatus() const { return m_waitStatus; }
    /// True when `kill` had to end a child that was still running.
    bool killedByParent() const { return m_killedByParent; }
    /// Once the child is reaped: the most memory it held at once (its peak resident size).
    std::uint64_t peakMemoryBytes() const { return m_peakMemoryBytes; }

private:
    enum class Wait { Ready, Failed };
    /// Waits until the pipe is readable (or at its end).
    Wait waitReadable();
    bool cancelRequested();
    /// Keeps what the child wrote to standard error so far, without waiting.
    void relayErrors();
    /// Reaps the child if it has ended (waiting up to `patience` for that); true when it has.
    bool reap(std::chrono::milliseconds patience);
    void closePipes();

    std::string m_input;
    std::chrono::milliseconds m_stallTimeout;
    std::function<bool()> m_shouldCancel;
    pid_t m_pid = -1;
    int m_fd = -1;
    int m_errorFd = -1;
    std::size_t m_errorBytes = 0;
    std::string m_diagnostics;
    int m_waitStatus = -1;
    bool m_killedByParent = false;
    bool m_pipeEnded = false;
    std::uint64_t m_peakMemoryBytes = 0;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::chrono::steady_clock::time_point m_lastByte;
    std::chrono::steady_clock::time_point m_lastCancelPoll;
    bool m_cancelled = false;
    bool m_stalled = false;
};

} // namespace vellum

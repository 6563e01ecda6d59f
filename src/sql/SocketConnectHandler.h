#pragma once

#include <atomic>
#include <functional>

namespace vellum {

class DBSocketBase;

/// Runs a socket's connect step on a short-lived worker (a BackgroundTask) while the calling
/// thread waits, so a connect that hangs can still be abandoned by the caller's cancel check.
class SocketConnectHandler {
public:
    /// Connect finished successfully / failed / was cancelled.
    enum Outcome : int { kConnected = 0, kFailed = 1, kCancelled = 2 };

    explicit SocketConnectHandler(DBSocketBase &socket);

    /// Connects `socket` on a worker thread and waits for it, asking `shouldCancel` (may be empty)
    /// about every 10 ms. A cancelled connect is still waited for, then the socket is closed.
    static Outcome ConnectWithSocket(DBSocketBase &socket, const std::function<bool()> &shouldCancel);

    /// Starts the connect thread and waits; see `ConnectWithSocket`.
    Outcome run(const std::function<bool()> &shouldCancel);
    /// Stops waiting (from any thread); `run` then answers kCancelled.
    void CancelConnection() { _cancel.store(true); }

private:
    DBSocketBase &_socket;
    std::atomic<bool> _connecting{false};
    std::atomic<bool> _success{false};
    std::atomic<bool> _cancel{false};
};

} // namespace vellum

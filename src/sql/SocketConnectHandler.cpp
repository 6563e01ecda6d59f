#include "sql/SocketConnectHandler.h"

#include "sql/DBSocketBase.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace vellum {

SocketConnectHandler::SocketConnectHandler(DBSocketBase &socket) : _socket(socket) {}

SocketConnectHandler::Outcome SocketConnectHandler::ConnectWithSocket(DBSocketBase &socket,
                                                                      const std::function<bool()> &shouldCancel)
{
    SocketConnectHandler handler(socket);
    return handler.run(shouldCancel);
}

SocketConnectHandler::Outcome SocketConnectHandler::run(const std::function<bool()> &shouldCancel)
{
    std::mutex mutex;
    std::condition_variable finished;
    _connecting.store(true);
    std::thread worker([&] {
        const bool success = _socket.connect();
        std::lock_guard<std::mutex> lock(mutex);
        _success.store(success);
        _connecting.store(false);
        finished.notify_one();
    });

    bool cancelled = false;
    {
        std::unique_lock<std::mutex> lock(mutex);
        while (_connecting.load()) {
            if (_cancel.load() || (shouldCancel && shouldCancel())) {
                cancelled = true;
                break;
            }
            finished.wait_for(lock, std::chrono::milliseconds(10));
        }
    }
    // The thread touches the socket, so it is always joined before anyone else uses it.
    worker.join();
    if (cancelled) {
        _socket.close();
        return kCancelled;
    }
    return _success.load() ? kConnected : kFailed;
}

} // namespace vellum

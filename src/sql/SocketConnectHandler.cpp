#include "sql/SocketConnectHandler.h"

#include "sql/DBSocketBase.h"
#include "util/BackgroundTask.h"

#include <chrono>

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
    BackgroundTask worker;
    _connecting.store(true);
    worker.post([this](const BackgroundTask::Run &) {
        _success.store(_socket.connect());
        _connecting.store(false);
    });

    bool cancelled = false;
    while (_connecting.load()) {
        if (_cancel.load() || (shouldCancel && shouldCancel())) {
            cancelled = true;
            break;
        }
        if (worker.waitFor(std::chrono::milliseconds(10)))
            break;
    }
    // The worker touches the socket, so it always ends before anyone else uses it.
    worker.wait();
    if (cancelled) {
        _socket.close();
        return kCancelled;
    }
    return _success.load() ? kConnected : kFailed;
}

} // namespace vellum

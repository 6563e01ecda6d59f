#include "sql/DBSocketAddress.h"

namespace vellum {

DBSocketAddress::DBSocketAddress(std::string host, std::string port, std::string login, std::string password,
                                 std::string db)
    : _host(std::move(host)), _port(std::move(port)), _db(std::move(db)), _login(std::move(login)),
      _password(std::move(password))
{
}

std::unique_ptr<DBSocketAddress> DBSocketAddress::copyAsSocketAddress() const
{
    return std::make_unique<DBSocketAddress>(*this);
}

} // namespace vellum

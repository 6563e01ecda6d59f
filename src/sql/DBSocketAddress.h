#pragma once

#include <memory>
#include <string>

namespace vellum {

/// The settings of one connection. Every server kind has its fields here; SQLite reads only
/// the database name, the database file path and the password (which keys the file through
/// sqlite3_key). An empty text means "not set".
class DBSocketAddress {
public:
    DBSocketAddress() = default;
    /// Settings for a server connection (the fields that `SQLConnection` fills when it is made).
    DBSocketAddress(std::string host, std::string port, std::string login, std::string password, std::string db);

    /// A copy of these settings.
    std::unique_ptr<DBSocketAddress> copyAsSocketAddress() const;

    const std::string &connectionName() const { return _connectionName; }
    void setConnectionName(std::string v) { _connectionName = std::move(v); }
    const std::string &host() const { return _host; }
    void setHost(std::string v) { _host = std::move(v); }
    const std::string &port() const { return _port; }
    void setPort(std::string v) { _port = std::move(v); }
    const std::string &socketFile() const { return _socketFile; }
    void setSocketFile(std::string v) { _socketFile = std::move(v); }
    int mode() const { return _mode; }
    void setMode(int v) { _mode = v; }
    const std::string &serviceName() const { return _serviceName; }
    void setServiceName(std::string v) { _serviceName = std::move(v); }
    const std::string &instanceType() const { return _instanceType; }
    void setInstanceType(std::string v) { _instanceType = std::move(v); }
    int authRole() const { return _authRole; }
    void setAuthRole(int v) { _authRole = v; }
    const std::string &useOSAuth() const { return _useOSAuth; }
    void setUseOSAuth(std::string v) { _useOSAuth = std::move(v); }
    const std::string &db() const { return _db; }
    void setDb(std::string v) { _db = std::move(v); }
    int authType() const { return _authType; }
    void setAuthType(int v) { _authType = v; }
    const std::string &domain() const { return _domain; }
    void setDomain(std::string v) { _domain = std::move(v); }
    const std::string &login() const { return _login; }
    void setLogin(std::string v) { _login = std::move(v); }
    const std::string &password() const { return _password; }
    void setPassword(std::string v) { _password = std::move(v); }
    const std::string &dbFilePath() const { return _dbFilePath; }
    void setDbFilePath(std::string v) { _dbFilePath = std::move(v); }
    const std::string &encrypted() const { return _encrypted; }
    void setEncrypted(std::string v) { _encrypted = std::move(v); }

private:
    std::string _connectionName;
    std::string _host;
    std::string _port;
    std::string _socketFile;
    int _mode = 0;
    std::string _serviceName;
    std::string _instanceType;
    int _authRole = 0;
    std::string _useOSAuth;
    std::string _db;
    int _authType = 0;
    std::string _domain;
    std::string _login;
    std::string _password;
    std::string _dbFilePath;
    std::string _encrypted;
};

} // namespace vellum

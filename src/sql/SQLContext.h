#pragma once

#include "sql/ServerType.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace vellum {

class SQLEscapeMethods;

/// A SQL dialect context: the server type, the client-side string encoding, the default schema
/// and the escape methods that make a text safe inside a quoted string literal. Connections
/// derive from it; a plain context (`copyAsSQLContext`) carries the same facts without a server.
class SQLContext {
public:
    SQLContext();
    virtual ~SQLContext();
    SQLContext(const SQLContext &) = delete;
    SQLContext &operator=(const SQLContext &) = delete;

    ServerType serverType() const { return m_serverType; }
    /// Sets the server type; a connection overrides this to bind the type's escape methods.
    virtual void setServerType(ServerType type) { m_serverType = type; }

    std::int32_t version() const { return m_version; }
    void setVersion(std::int32_t version) { m_version = version; }
    std::int32_t edition() const { return m_edition; }
    void setEdition(std::int32_t edition) { m_edition = edition; }

    /// The client encoding (a code of the encoding table: 4 UTF-8, 5 ISO Latin 1, 30 Mac Roman …).
    std::uint64_t encoding() const { return mEncoding; }
    void setEncoding(std::uint64_t encoding) { mEncoding = encoding; }

    bool isEnablesServerCharsetSupport() const { return m_isEnablesServerCharsetSupport; }
    void setEnablesServerCharsetSupport(bool enabled) { m_isEnablesServerCharsetSupport = enabled; }

    /// The default schema; nullopt when none is set.
    const std::optional<std::string> &getDefaultSchema() const { return m_defaultNamespace; }
    void setDefaultSchema(std::optional<std::string> schema) { m_defaultNamespace = std::move(schema); }

    /// The escaper bound to this context, or nullptr (every server type but SQLite has none).
    SQLEscapeMethods *sqlEscapeMethods() const { return m_escapeMethods.get(); }
    /// Binds escape methods (shared with copies of this context) and points them back here.
    void setSqlEscapeMethods(std::shared_ptr<SQLEscapeMethods> methods);

    /// The object that serves this context (its connection); not owned.
    void *serviceProvider() const { return mServiceProvider; }
    void setServiceProvider(void *provider) { mServiceProvider = provider; }

    /// Option bits of the context; none are defined.
    std::uint32_t options() const { return 0; }

    /// A new plain context with the same charset flag, schema, encoding, server type, version and
    /// the same (shared) escape methods.
    std::unique_ptr<SQLContext> copyAsSQLContext() const;

    /// The server's name for the client encoding (MySQL only; nullopt for other servers).
    std::optional<std::string> backendCharset() const;
    std::optional<std::string> queryCharset() const;
    std::optional<std::string> resultCharset() const;

private:
    ServerType m_serverType = ServerTypeNone;
    std::int32_t m_version = 0;
    std::int32_t m_edition = 0;
    std::uint64_t mEncoding = 4;
    bool m_isEnablesServerCharsetSupport = false;
    std::optional<std::string> m_defaultNamespace;
    std::shared_ptr<SQLEscapeMethods> m_escapeMethods;
    void *mServiceProvider = nullptr;
};

} // namespace vellum

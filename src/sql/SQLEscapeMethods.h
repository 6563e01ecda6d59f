#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

class SQLContext;

/// What the escape methods need from a driver socket to switch its database or schema.
class SQLSwitchableSocket {
public:
    virtual ~SQLSwitchableSocket() = default;
    /// True when the socket keeps one connection open between queries.
    virtual bool hasPersistentConnection() const = 0;
    /// Runs one statement; true on success.
    [[nodiscard]] virtual bool executeSwitchQuery(const std::string &query) = 0;
};

/// Makes a text safe inside a quoted SQL string literal for one context. The base class copies
/// bytes unchanged; drivers derive from it. Not thread-safe: one context uses it at a time.
class SQLEscapeMethods {
public:
    SQLEscapeMethods();
    virtual ~SQLEscapeMethods();
    SQLEscapeMethods(const SQLEscapeMethods &) = delete;
    SQLEscapeMethods &operator=(const SQLEscapeMethods &) = delete;

    /// The escaped form of a text, converted through the bound context's encoding (UTF-8 when
    /// no context is bound; characters the encoding lacks are dropped).
    std::string EscStr(std::string_view text);

    /// Escapes `length` bytes into `to` (room for `maxOutputLengthOfInputLengthOfEscXStr(length)`
    /// bytes) and answers the output length.
    virtual std::size_t EscCStr(const char *bytes, std::size_t length, char *to);

    /// Escapes into the reusable buffer, or into a new buffer of exactly the needed size when the
    /// reusable one is too small. `newBuffer` is the output; `ownedBuffer` holds it when it was
    /// allocated for this call (the caller frees it by dropping it). False when no output buffer
    /// could be had.
    [[nodiscard]] bool EscCStr(const char *bytes, std::size_t length, std::size_t &newLength, char *&newBuffer,
                               std::unique_ptr<char[]> &ownedBuffer);

    /// The most bytes the escaping of n input bytes can need: 2n + 1.
    static std::size_t maxOutputLengthOfInputLengthOfEscXStr(std::size_t n) { return 2 * n + 1; }

    void setBindedSqlContext(SQLContext *context) { m_sqlContext = context; }
    SQLContext *sqlContext() const { return m_sqlContext; }
    void setAPIDbConn(void *connection) { m_dbConnPtr = connection; }
    void *apiDbConn() const { return m_dbConnPtr; }
    /// Forgets the context and the native connection.
    void invalidateTheContext();
    /// Frees the reusable buffer (its capacity becomes 0).
    void reduceMemoryUseSafely();
    /// The reusable buffer's size in bytes.
    std::size_t capacity() const { return m_capacity; }

    /// Switches the socket's database: success at once without a persistent connection,
    /// otherwise the switch query is run (failure when there is none).
    [[nodiscard]] bool dbSocketSwitchDB(SQLSwitchableSocket &socket, const std::string &database);
    /// Switches the socket's schema the same way.
    [[nodiscard]] bool dbSocketSwitchSqlSchema(SQLSwitchableSocket &socket, const std::string &schema);

    /// Whether a database and a schema are the same thing for this server.
    virtual bool isDatabaseEquivalentToSqlSchema() const { return false; }
    /// The statement that switches to a database; nullopt when there is none.
    virtual std::optional<std::string> getQueryToSwitchDB(const std::string &database) const;
    /// The statement that switches to a schema; nullopt when there is none.
    virtual std::optional<std::string> getQueryToSwitchSqlSchema(const std::string &schema) const;

    /// Size of the reusable buffer when it is first made.
    static constexpr std::size_t kReusableBufferSize = 512;

private:
    SQLContext *m_sqlContext = nullptr;
    void *m_dbConnPtr = nullptr;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
};

/// Escapes a text with a set of escape methods (the shared body of `EscStr`).
std::string EscStrUsingEscCStr(SQLEscapeMethods &methods, std::string_view text);

} // namespace vellum

#include "sql/SQLEscapeMethods.h"

#include "sql/SQLContext.h"
#include "sql/SQLEncoding.h"
#include "util/logging.h"

#include <cstring>
#include <new>

namespace vellum {

SQLEscapeMethods::SQLEscapeMethods() = default;
SQLEscapeMethods::~SQLEscapeMethods() = default;

std::string EscStrUsingEscCStr(SQLEscapeMethods &methods, std::string_view text)
{
    const std::uint64_t encoding = methods.sqlContext() ? methods.sqlContext()->encoding() : 4;
    std::string bytes = SQLEncoding::bytesFromText(text, encoding);
    const std::size_t length = bytes.size();
    bytes.append(2, '\0'); // room after the end, as the C-string escapers expect
    std::size_t newLength = 0;
    char *output = nullptr;
    std::unique_ptr<char[]> owned;
    if (!methods.EscCStr(bytes.data(), length, newLength, output, owned)) {
        C_LogError("Failed EscStr (SQLEscapeMethods, line %d)", __LINE__);
        return {};
    }
    return SQLEncoding::textFromBytes(std::string_view(output, newLength), encoding);
}

std::string SQLEscapeMethods::EscStr(std::string_view text)
{
    return EscStrUsingEscCStr(*this, text);
}

std::size_t SQLEscapeMethods::EscCStr(const char *bytes, std::size_t length, char *to)
{
    if (length)
        std::memcpy(to, bytes, length);
    return length;
}

bool SQLEscapeMethods::EscCStr(const char *bytes, std::size_t length, std::size_t &newLength, char *&newBuffer,
                               std::unique_ptr<char[]> &ownedBuffer)
{
    const std::size_t need = maxOutputLengthOfInputLengthOfEscXStr(length);
    if (need > m_capacity) {
        if (!m_buffer) {
            m_buffer.reset(new (std::nothrow) char[kReusableBufferSize]);
            m_capacity = m_buffer ? kReusableBufferSize : 0;
        }
    }
    if (need > m_capacity) {
        ownedBuffer.reset(new (std::nothrow) char[need]);
        newBuffer = ownedBuffer.get();
    } else {
        newBuffer = m_buffer.get();
    }
    if (!newBuffer)
        return false;
    newLength = EscCStr(bytes, length, newBuffer);
    return true;
}

void SQLEscapeMethods::invalidateTheContext()
{
    m_sqlContext = nullptr;
    m_dbConnPtr = nullptr;
}

void SQLEscapeMethods::reduceMemoryUseSafely()
{
    m_buffer.reset();
    m_capacity = 0;
}

bool SQLEscapeMethods::dbSocketSwitchDB(SQLSwitchableSocket &socket, const std::string &database)
{
    if (!socket.hasPersistentConnection())
        return true;
    const std::optional<std::string> query = getQueryToSwitchDB(database);
    return query && socket.executeSwitchQuery(*query);
}

bool SQLEscapeMethods::dbSocketSwitchSqlSchema(SQLSwitchableSocket &socket, const std::string &schema)
{
    if (!socket.hasPersistentConnection())
        return true;
    const std::optional<std::string> query = getQueryToSwitchSqlSchema(schema);
    return query && socket.executeSwitchQuery(*query);
}

std::optional<std::string> SQLEscapeMethods::getQueryToSwitchDB(const std::string &) const
{
    return std::nullopt;
}

std::optional<std::string> SQLEscapeMethods::getQueryToSwitchSqlSchema(const std::string &) const
{
    return std::nullopt;
}

} // namespace vellum

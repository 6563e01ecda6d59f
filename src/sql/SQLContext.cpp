#include "sql/SQLContext.h"

#include "sql/SQLEncoding.h"
#include "sql/SQLEscapeMethods.h"

namespace vellum {

SQLContext::SQLContext() = default;

SQLContext::~SQLContext()
{
    if (m_escapeMethods && m_escapeMethods->sqlContext() == this)
        m_escapeMethods->invalidateTheContext();
}

void SQLContext::setSqlEscapeMethods(std::shared_ptr<SQLEscapeMethods> methods)
{
    if (m_escapeMethods && m_escapeMethods->sqlContext() == this)
        m_escapeMethods->invalidateTheContext();
    m_escapeMethods = std::move(methods);
    if (m_escapeMethods)
        m_escapeMethods->setBindedSqlContext(this);
}

std::unique_ptr<SQLContext> SQLContext::copyAsSQLContext() const
{
    auto copy = std::make_unique<SQLContext>();
    copy->setEnablesServerCharsetSupport(m_isEnablesServerCharsetSupport);
    copy->setDefaultSchema(m_defaultNamespace);
    copy->setEncoding(mEncoding);
    // Through the plain base setter: the copy is a context, never a connection.
    copy->SQLContext::setServerType(m_serverType);
    copy->setVersion(m_version);
    // Shared, not rebound: the escape methods keep serving the original context.
    copy->m_escapeMethods = m_escapeMethods;
    return copy;
}

std::optional<std::string> SQLContext::backendCharset() const
{
    return SQLEncoding::charsetForStringEncoding(mEncoding, *this);
}

std::optional<std::string> SQLContext::queryCharset() const
{
    return SQLEncoding::charsetForStringEncoding(mEncoding, *this);
}

std::optional<std::string> SQLContext::resultCharset() const
{
    return SQLEncoding::charsetForStringEncoding(mEncoding, *this);
}

} // namespace vellum

#include "export/IndexNameRegister.h"

#include "util/format.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace vellum {

std::string lowercasedName(std::string_view name)
{
    std::string out;
    icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), static_cast<int32_t>(name.size())))
        .toLower(icu::Locale::getRoot())
        .toUTF8String(out);
    return out;
}

void IndexNameRegister::recordTable(std::string_view name)
{
    m_counts[lowercasedName(name)] = 1;
}

std::string IndexNameRegister::uniqueIndexName(const std::string &name)
{
    const auto [entry, added] = m_counts.try_emplace(m_ignoreCase ? lowercasedName(name) : name, 1);
    if (added)
        return name;
    return name + formatString("_%d", entry->second++);
}

} // namespace vellum

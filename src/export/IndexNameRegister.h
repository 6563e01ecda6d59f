#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vellum {

/// Keeps index names unique across one export job: every name handed out is counted, and a
/// name seen before gets "_n" added, n counting up per name from 1 ("ix", "ix_1", "ix_2" …).
/// For SQLite, which compares names without regard to letter case, names are compared
/// lower-cased and the exported tables' names are recorded too, so that an index named like
/// a table gets a suffix. The suffixed names themselves are not recorded.
class IndexNameRegister {
public:
    explicit IndexNameRegister(bool ignoreCase) : m_ignoreCase(ignoreCase) {}

    /// Records an exported table's name (lower-cased, whatever the case rule).
    void recordTable(std::string_view name);
    /// The name an index gets.
    std::string uniqueIndexName(const std::string &name);

private:
    bool m_ignoreCase;
    std::unordered_map<std::string, std::int32_t> m_counts;
};

/// The Unicode lower-case form of a name.
std::string lowercasedName(std::string_view name);

} // namespace vellum

#include "model/TOrbMDBIndex.h"

#include "util/format.h"
#include "util/localized.h"

namespace vellum {

void TOrbMDBIndex::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    std::vector<std::string> keys;
    for (const IndexKey &key : m_keys)
        keys.push_back(formatObjects("%@ (%@)", {key.name, localized(key.ascending ? "Ascending" : "Descending")}));
    labels = {"Name", "Index keys", "Primary key", "Unique"};
    values = {m_name, join(keys, ", "), localized(m_isPrimaryKey ? "YES" : "NO"), localized(m_isUnique ? "YES" : "NO")};
}

} // namespace vellum

#pragma once

// What the corpus truth's rows say about the file's indexes, for suites that check the index
// failures an export must report.

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace vellum::test {

/// "NAME for table TABLE failed." of every unique index (not a primary key) that two rows of
/// the truth break with the same non-null key.
inline std::set<std::string> uniqueIndexesTheRowsBreak(const nlohmann::json &truth)
{
    std::set<std::string> failures;
    for (const auto &table : truth["tables"]) {
        std::vector<std::string> names;
        std::set<std::string> complexColumns; // their truth cells are the values, not the stored id
        for (const auto &column : table["columns"]) {
            names.push_back(column["name"]);
            if (column["type"] == "COMPLEX_TYPE")
                complexColumns.insert(column["name"].get<std::string>());
        }
        for (const auto &index : table["indexes"]) {
            if (!index["unique"].get<bool>() || index["primaryKey"].get<bool>() || index["columns"].empty())
                continue;
            std::vector<std::size_t> positions;
            bool complex = false;
            for (const auto &key : index["columns"]) {
                complex = complex || complexColumns.count(key["name"].get<std::string>()) != 0;
                positions.push_back(static_cast<std::size_t>(
                    std::find(names.begin(), names.end(), key["name"].get<std::string>()) - names.begin()));
            }
            if (complex)
                continue;
            std::set<std::string> seen;
            for (const auto &row : table["rows"]) {
                std::string key;
                bool hasNull = false;
                for (const std::size_t position : positions) {
                    hasNull = hasNull || position >= row.size() || row[position].is_null();
                    key += (position < row.size() ? row[position].dump() : std::string()) + '\x1f';
                }
                if (!hasNull && !seen.insert(key).second) {
                    failures.insert(index["name"].get<std::string>() + " for table " +
                                    table["name"].get<std::string>() + " failed.");
                    break;
                }
            }
        }
    }
    return failures;
}

} // namespace vellum::test

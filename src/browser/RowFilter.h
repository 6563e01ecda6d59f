#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// How the data search compares a cell with the search text (the values are the tags of the
/// search field's menu items).
enum class SearchOption : std::uint32_t { Contains = 0, BeginsWith = 1, Equals = 2, EndsWith = 3 };

/// The data search: a text, a match mode and a case option. A row passes when one of its
/// cells outside OLE columns matches; null cells never match. An empty text lets every row pass.
class RowFilter {
public:
    RowFilter() = default;
    RowFilter(std::string text, SearchOption option, bool ignoreCase);

    const std::string &text() const { return m_text; }
    SearchOption option() const { return m_option; }
    bool ignoreCase() const { return m_ignoreCase; }
    /// True while the text is not empty (the filter narrows the rows).
    bool active() const { return !m_text.empty(); }

    /// Whether one cell text matches (as the predicate of the mode and case option).
    bool matches(std::string_view cell) const;
    /// Whether a row of a table passes; `searchColumns` are the column positions to look at.
    bool rowPasses(const TOrbMDBTable &table, std::size_t row, const std::vector<std::size_t> &searchColumns) const;
    /// The positions of the columns that are searched: every column whose type is not "OLE".
    static std::vector<std::size_t> searchColumns(const TOrbMDBTable &table);

private:
    bool matchesFolded(std::string_view haystack) const;

    std::string m_text;
    std::string m_foldedText; ///< the text case-folded, when the case is ignored
    bool m_foldedTextIsAscii = true;
    SearchOption m_option = SearchOption::Contains;
    bool m_ignoreCase = true;
};

/// Full Unicode case folding of UTF-8 text (ASCII takes a fast path). Invalid UTF-8 is kept as
/// replacement characters.
std::string foldCase(std::string_view text);

/// True when `haystack` contains `needle` ignoring case (the file and table name filter).
bool containsIgnoringCase(std::string_view haystack, std::string_view needle);

} // namespace vellum

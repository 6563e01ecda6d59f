#include "browser/RowFilter.h"

#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"

#include <unicode/unistr.h>

namespace vellum {

namespace {

/// Case-folds into `out` (cleared first). ASCII text is lowered byte by byte; anything else
/// goes through ICU's full case folding.
void foldInto(std::string_view text, std::string &out)
{
    out.clear();
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) {
            out.clear();
            icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
                .foldCase()
                .toUTF8String(out);
            return;
        }
        out.push_back(byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : c);
    }
}

bool matchesMode(std::string_view haystack, std::string_view needle, SearchOption option)
{
    switch (option) {
    case SearchOption::Contains:
        return haystack.find(needle) != std::string_view::npos;
    case SearchOption::BeginsWith:
        return haystack.size() >= needle.size() && haystack.compare(0, needle.size(), needle) == 0;
    case SearchOption::Equals:
        return haystack == needle;
    case SearchOption::EndsWith:
        return haystack.size() >= needle.size() &&
               haystack.compare(haystack.size() - needle.size(), needle.size(), needle) == 0;
    }
    return false;
}

bool isAscii(std::string_view text)
{
    unsigned char bits = 0;
    for (const char c : text)
        bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

inline char lowerAscii(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// `text` (ASCII) equals `lowerNeedle` (ASCII, already lowered) ignoring case.
bool equalsLowered(const char *text, std::string_view lowerNeedle)
{
    for (std::size_t i = 0; i < lowerNeedle.size(); ++i)
        if (lowerAscii(text[i]) != lowerNeedle[i])
            return false;
    return true;
}

/// The case-insensitive match of an ASCII cell against a lowered ASCII needle, without copying.
bool matchesAsciiIgnoringCase(std::string_view cell, std::string_view needle, SearchOption option)
{
    switch (option) {
    case SearchOption::Contains: {
        if (needle.empty())
            return true;
        if (cell.size() < needle.size())
            return false;
        const char first = needle[0];
        const std::size_t last = cell.size() - needle.size();
        for (std::size_t i = 0; i <= last; ++i)
            if (lowerAscii(cell[i]) == first && equalsLowered(cell.data() + i + 1, needle.substr(1)))
                return true;
        return false;
    }
    case SearchOption::BeginsWith:
        return cell.size() >= needle.size() && equalsLowered(cell.data(), needle);
    case SearchOption::Equals:
        return cell.size() == needle.size() && equalsLowered(cell.data(), needle);
    case SearchOption::EndsWith:
        return cell.size() >= needle.size() && equalsLowered(cell.data() + cell.size() - needle.size(), needle);
    }
    return false;
}

} // namespace

std::string foldCase(std::string_view text)
{
    std::string out;
    foldInto(text, out);
    return out;
}

bool containsIgnoringCase(std::string_view haystack, std::string_view needle)
{
    return foldCase(haystack).find(foldCase(needle)) != std::string::npos;
}

RowFilter::RowFilter(std::string text, SearchOption option, bool ignoreCase)
    : m_text(std::move(text)), m_option(option), m_ignoreCase(ignoreCase)
{
    if (m_ignoreCase) {
        foldInto(m_text, m_foldedText);
        m_foldedTextIsAscii = isAscii(m_foldedText);
    }
}

bool RowFilter::matches(std::string_view cell) const
{
    if (!m_ignoreCase)
        return matchesMode(cell, m_text, m_option);
    return matchesFolded(cell);
}

bool RowFilter::matchesFolded(std::string_view haystack) const
{
    if (isAscii(haystack)) {
        // ASCII folds to ASCII: a needle with other characters cannot match.
        return m_foldedTextIsAscii && matchesAsciiIgnoringCase(haystack, m_foldedText, m_option);
    }
    std::string folded;
    foldInto(haystack, folded);
    return matchesMode(folded, m_foldedText, m_option);
}

bool RowFilter::rowPasses(const TOrbMDBTable &table, std::size_t row,
                          const std::vector<std::size_t> &searchColumns) const
{
    if (!active())
        return true;
    // One pass over the row: `cell` would read the row's header again for each column.
    thread_local std::vector<CellValue> cells;
    table.rowCells(row, cells);
    for (const std::size_t column : searchColumns) {
        const CellValue &value = column < cells.size() ? cells[column] : CellValue{};
        if (value.complex) {
            // A complex cell is searched by what the grid shows, not by its stored id.
            if (matches(value.complex->displayText()))
                return true;
            continue;
        }
        if (value.isText() && matches(value.text))
            return true;
    }
    return false;
}

std::vector<std::size_t> RowFilter::searchColumns(const TOrbMDBTable &table)
{
    std::vector<std::size_t> out;
    const auto &columns = table.columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i]->dataType() != "OLE")
            out.push_back(i);
    return out;
}

} // namespace vellum

#include "export/xls/sheetNames.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace vellum::xls {

namespace {

bool isForbidden(char16_t u)
{
    switch (u) {
    case u':':
    case u'\\':
    case u'/':
    case u'?':
    case u'*':
    case u'[':
    case u']':
        return true;
    default:
        return false;
    }
}

bool isHighSurrogate(char16_t u)
{
    return u >= 0xD800 && u <= 0xDBFF;
}

/// The trailing "(digits)" of a name, or empty.
std::u16string_view continuationSuffix(std::u16string_view name)
{
    if (name.size() < 3 || name.back() != u')')
        return {};
    std::size_t i = name.size() - 1;
    while (i > 0 && name[i - 1] >= u'0' && name[i - 1] <= u'9')
        --i;
    if (i == name.size() - 1 || i == 0 || name[i - 1] != u'(')
        return {};
    return name.substr(i - 1);
}

std::u16string cutTo(std::u16string_view text, std::size_t units)
{
    if (text.size() <= units)
        return std::u16string(text);
    if (units > 0 && isHighSurrogate(text[units - 1]))
        --units;
    return std::u16string(text.substr(0, units));
}

} // namespace

std::u16string excelSheetName(std::u16string_view proposed)
{
    std::u16string name;
    if (proposed.size() <= kMaxSheetNameUnits) {
        name = proposed;
    } else {
        std::u16string_view suffix = continuationSuffix(proposed);
        if (suffix.size() < kMaxSheetNameUnits)
            name = cutTo(proposed.substr(0, proposed.size() - suffix.size()), kMaxSheetNameUnits - suffix.size()) +
                   std::u16string(suffix);
        else
            name = cutTo(proposed, kMaxSheetNameUnits);
    }
    for (char16_t &u : name)
        if (isForbidden(u))
            u = u'_';
    if (!name.empty() && name.front() == u'\'')
        name.front() = u'_';
    if (!name.empty() && name.back() == u'\'')
        name.back() = u'_';
    return name;
}

bool sameSheetName(std::u16string_view a, std::u16string_view b)
{
    UErrorCode status = U_ZERO_ERROR;
    int32_t order = u_strCaseCompare(a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()),
                                     U_FOLD_CASE_DEFAULT, &status);
    if (U_FAILURE(status))
        return a == b;
    return order == 0;
}

} // namespace vellum::xls

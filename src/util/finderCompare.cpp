#include "util/finderCompare.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/ucol.h>
#include <unicode/uiter.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace vellum {
namespace {

/// One collator per thread: ICU collators are not safe for concurrent use.
icu::Collator *threadCollator()
{
    thread_local std::unique_ptr<icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> c(icu::Collator::createInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status) || !c)
            return std::unique_ptr<icu::Collator>();
        c->setStrength(icu::Collator::TERTIARY);
        c->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        c->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
        return c;
    }();
    return collator.get();
}

/// True when the UTF-8 text holds a character with a narrow or wide twin: one of the Halfwidth
/// and Fullwidth Forms (U+FF00 to U+FFEF, bytes EF BC 80 to EF BF AF) or the ideographic space
/// U+3000 (E3 80 80). Most texts hold none, and this scan is all they cost.
bool hasWidthForms(std::string_view text)
{
    const auto *p = reinterpret_cast<const unsigned char *>(text.data());
    const std::size_t n = text.size();
    for (std::size_t i = 0; i + 2 < n; ++i) {
        if (p[i] < 0xE3)
            continue;
        if (p[i] == 0xEF && p[i + 1] >= 0xBC && p[i + 1] <= 0xBF)
            return true;
        if (p[i] == 0xE3 && p[i + 1] == 0x80 && p[i + 2] == 0x80)
            return true;
    }
    return false;
}

bool isWidthForm(UChar32 c)
{
    return (c >= 0xFF00 && c <= 0xFFEF) || c == 0x3000;
}

/// The text with every width form replaced by its compatibility form (the NFKC mapping of that
/// character alone: "Ａ" becomes "A", "ｶ" becomes "カ", the ideographic space a space), every
/// other character kept as it is, so that the collation cannot tell the two widths apart.
void foldWidth(std::string_view text, std::string &out)
{
    out.clear();
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2 *nfkc = icu::Normalizer2::getNFKCInstance(status);
    const auto *bytes = reinterpret_cast<const uint8_t *>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    int32_t i = 0;
    while (i < length) {
        const int32_t start = i;
        UChar32 c = 0;
        U8_NEXT(bytes, i, length, c);
        if (c < 0 || !isWidthForm(c) || U_FAILURE(status)) {
            out.append(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start)));
            continue;
        }
        UErrorCode normalized = U_ZERO_ERROR;
        const icu::UnicodeString folded = nfkc->normalize(icu::UnicodeString(c), normalized);
        if (U_FAILURE(normalized))
            out.append(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start)));
        else
            folded.toUTF8String(out);
    }
}

} // namespace

int finderCompare(std::string_view a, std::string_view b)
{
    icu::Collator *collator = threadCollator();
    if (!collator) {
        const int c = a.compare(b);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    // The buffers are touched only for the rare text with width forms.
    if (hasWidthForms(a)) {
        thread_local std::string foldedA;
        foldWidth(a, foldedA);
        a = foldedA;
    }
    if (hasWidthForms(b)) {
        thread_local std::string foldedB;
        foldWidth(b, foldedB);
        b = foldedB;
    }
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult r =
        collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                              icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
    if (U_FAILURE(status)) {
        const int c = a.compare(b);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
}

std::size_t finderSortKeyPart(std::string_view text, unsigned char *dest, std::size_t capacity)
{
    std::uint32_t state[2] = {0, 0};
    return finderSortKeyNext(text, state, dest, capacity);
}

std::size_t finderSortKeyNext(std::string_view text, std::uint32_t state[2], unsigned char *dest, std::size_t capacity)
{
    icu::Collator *collator = threadCollator();
    if (!collator || capacity == 0)
        return 0;
    // Each call folds the text again, the same way, so that the parts of one key join.
    if (hasWidthForms(text)) {
        thread_local std::string folded;
        foldWidth(text, folded);
        text = folded;
    }
    UCharIterator iter;
    uiter_setUTF8(&iter, text.data(), static_cast<int32_t>(text.size()));
    UErrorCode status = U_ZERO_ERROR;
    const int32_t written =
        ucol_nextSortKeyPart(collator->toUCollator(), &iter, state, dest, static_cast<int32_t>(capacity), &status);
    if (U_FAILURE(status) || written < 0)
        return 0;
    return static_cast<std::size_t>(written);
}

namespace {

/// The collation's view of each ASCII character, read from the collator once: its primary rank
/// (0 for a character the collation ignores, one rank for all digits, which are compared as
/// numbers) and whether it is an upper-case letter (the only tertiary difference within ASCII).
struct AsciiCollation {
    unsigned char rank[128] = {};
    bool upper[128] = {};
    unsigned char digitRank = 0;
    bool valid = false;
};

const AsciiCollation &asciiCollation()
{
    static const AsciiCollation table = [] {
        AsciiCollation t;
        // The primary part of a key is everything before its first level separator (0x01).
        std::string primaries[128];
        std::string tertiaries[128];
        for (int c = 1; c < 128; ++c) {
            const char text[1] = {static_cast<char>(c)};
            unsigned char key[64];
            const std::size_t length = finderSortKeyPart(std::string_view(text, 1), key, sizeof key);
            if (length == 0 || length == sizeof key)
                return t; // no collator: the fast path stays off
            const std::string whole(reinterpret_cast<const char *>(key), length);
            const std::size_t first = whole.find('\x01');
            const std::size_t second = first == std::string::npos ? first : whole.find('\x01', first + 1);
            primaries[c] = whole.substr(0, first);
            tertiaries[c] = second == std::string::npos ? std::string() : whole.substr(second + 1);
        }
        std::vector<std::string> distinct;
        for (int c = 1; c < 128; ++c)
            if (!primaries[c].empty() && !(c >= '1' && c <= '9'))
                distinct.push_back(primaries[c]); // '0' stands for every number
        std::sort(distinct.begin(), distinct.end());
        distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
        if (distinct.size() > 250)
            return t;
        for (int c = 1; c < 128; ++c) {
            if (primaries[c].empty())
                continue;
            const std::string &primary = (c >= '1' && c <= '9') ? primaries['0'] : primaries[c];
            t.rank[c] = static_cast<unsigned char>(
                2 + (std::lower_bound(distinct.begin(), distinct.end(), primary) - distinct.begin()));
            // Upper case is the tertiary weight above that of its lower-case letter.
            t.upper[c] = c >= 'A' && c <= 'Z' && tertiaries[c] > tertiaries[c - 'A' + 'a'];
        }
        t.digitRank = t.rank['0'];
        t.valid = true;
        return t;
    }();
    return table;
}

/// The longest number the collation takes as one; longer runs of digits are several numbers.
constexpr std::size_t kMaxNumberDigits = 254;

} // namespace

bool finderAsciiSortKey(std::string_view text, std::string &out)
{
    const AsciiCollation &table = asciiCollation();
    if (!table.valid)
        return false;
    for (const char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    // Primary level: one rank byte per character; a number is the digit rank, the count of its
    // digits without leading zeros, and those digits. Then a separator and one case byte per
    // element (1 for an upper-case letter, 0 otherwise, both above the separator).
    out.clear();
    std::string tertiary;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= '0' && c <= '9') {
            std::size_t end = i;
            while (end < text.size() && text[end] >= '0' && text[end] <= '9' && end - i < kMaxNumberDigits)
                ++end;
            std::size_t start = i;
            while (start + 1 < end && text[start] == '0')
                ++start;
            out.push_back(static_cast<char>(table.digitRank));
            out.push_back(static_cast<char>(end - start));
            out.append(text.substr(start, end - start));
            tertiary.push_back('\x02');
            i = end;
            continue;
        }
        if (table.rank[c] != 0) {
            out.push_back(static_cast<char>(table.rank[c]));
            tertiary.push_back(table.upper[c] ? '\x03' : '\x02');
        }
        ++i;
    }
    out.push_back('\x01');
    out += tertiary;
    return true;
}

} // namespace vellum

#include "util/finderCompare.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/ucol.h>
#include <unicode/uiter.h>

#include <memory>

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

} // namespace

int finderCompare(std::string_view a, std::string_view b)
{
    icu::Collator *collator = threadCollator();
    if (!collator) {
        const int c = a.compare(b);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult r = collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
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
    UCharIterator iter;
    uiter_setUTF8(&iter, text.data(), static_cast<int32_t>(text.size()));
    UErrorCode status = U_ZERO_ERROR;
    const int32_t written = ucol_nextSortKeyPart(collator->toUCollator(), &iter, state, dest,
                                                 static_cast<int32_t>(capacity), &status);
    if (U_FAILURE(status) || written < 0)
        return 0;
    return static_cast<std::size_t>(written);
}

} // namespace vellum

#include "app/support/qtStrings.h"

#include "util/localized.h"

namespace vellum {

QString localizedQ(const char *english)
{
    return toQString(localized(english));
}

} // namespace vellum

#include "util/fileSize.h"

#include "util/format.h"

namespace vellum {

std::string formatComputerFileSize(std::uint64_t bytes)
{
    const double kb = static_cast<double>((bytes >> 10) + ((bytes & 0x3FF) ? 1 : 0));
    if (kb <= 1023)
        return formatString("%1.0lf KB", kb);
    const double mb = kb / 1024;
    if (mb <= 1023)
        return formatString("%1.1lf MB", mb);
    return formatString("%1.1lf GB", kb / 1024 / 1024);
}

} // namespace vellum

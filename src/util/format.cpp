#include "util/format.h"

#include <cstdarg>
#include <cstdio>

namespace vellum {

std::string formatString(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string out;
    if (n > 0) {
        out.resize(static_cast<size_t>(n) + 1);
        std::vsnprintf(out.data(), out.size(), format, args);
        out.resize(static_cast<size_t>(n));
    }
    va_end(args);
    return out;
}

std::string formatObjects(std::string_view format, const std::vector<std::string> &args)
{
    std::string out;
    out.reserve(format.size() + 32);
    size_t next = 0;
    for (size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '%' && i + 1 < format.size() && format[i + 1] == '@') {
            if (next < args.size())
                out += args[next];
            ++next;
            ++i;
        } else {
            out += format[i];
        }
    }
    return out;
}

std::string join(const std::vector<std::string> &parts, std::string_view separator)
{
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i)
            out += separator;
        out += parts[i];
    }
    return out;
}

} // namespace vellum

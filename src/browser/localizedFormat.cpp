#include "browser/localizedFormat.h"

#include "util/localized.h"

namespace vellum {

std::string localizedFormat(const char *english, const std::vector<FormatArg> &args)
{
    const std::string format = localized(english);
    std::string out;
    std::size_t next = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%' || i + 1 >= format.size()) {
            out.push_back(format[i]);
            continue;
        }
        std::size_t end = i + 1;
        if (format[end] == 'l')
            ++end;
        const char kind = end < format.size() ? format[end] : '\0';
        if (kind == '%') {
            out.push_back('%');
            i = end;
        } else if ((kind == 'd' || kind == '@') && next < args.size()) {
            const FormatArg &arg = args[next++];
            out += std::holds_alternative<long long>(arg) ? std::to_string(std::get<long long>(arg))
                                                          : std::get<std::string>(arg);
            i = end;
        } else {
            out.push_back(format[i]);
        }
    }
    return out;
}

} // namespace vellum

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// printf-style formatting into a std::string (the formats of the user-visible texts).
std::string formatString(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Replaces each "%@" of a localised format, in order, with the given arguments.
std::string formatObjects(std::string_view format, const std::vector<std::string> &args);

/// Joins texts with a separator.
std::string join(const std::vector<std::string> &parts, std::string_view separator);

} // namespace vellum

#pragma once

#include <string>
#include <variant>
#include <vector>

namespace vellum {

/// One argument of a user-visible format: a number (for "%d", "%ld") or a text (for "%@").
using FormatArg = std::variant<long long, std::string>;

/// Looks an English format up with localized() and fills its placeholders "%d", "%ld" and
/// "%@" in order ("%%" is a percent sign). Unmatched placeholders stay as they are.
std::string localizedFormat(const char *english, const std::vector<FormatArg> &args);

} // namespace vellum

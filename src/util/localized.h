#pragma once

#include <string>

namespace vellum {

/// Looks a user-visible English text up in the application's string table (English is the key).
/// Below the GUI this is the identity until the GUI installs its translator.
std::string localized(const char *english);

/// The translator the GUI installs (called from any thread; must be thread-safe). nullptr
/// restores the identity.
using LocalizeFunction = std::string (*)(const char *english);
void setLocalizeFunction(LocalizeFunction function);

} // namespace vellum

#include "util/localized.h"

#include <atomic>

namespace vellum {
namespace {
std::atomic<LocalizeFunction> g_localize{nullptr};
}

std::string localized(const char *english)
{
    if (LocalizeFunction f = g_localize.load(std::memory_order_acquire))
        return f(english);
    return english ? std::string(english) : std::string();
}

void setLocalizeFunction(LocalizeFunction function)
{
    g_localize.store(function, std::memory_order_release);
}

} // namespace vellum

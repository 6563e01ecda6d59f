#include "util/logging.h"

#include <cstdarg>
#include <cstdio>

namespace vellum {

void C_LogError(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
    std::fputc('\n', stderr);
}

void C_Debug(const char *, ...) {}
void C_DebugPrint(const char *, ...) {}
void C_VerbosePrint(const char *, ...) {}
void C_VerboseError(const char *, ...) {}
void C_VerboseMessage(const char *, ...) {}

} // namespace vellum

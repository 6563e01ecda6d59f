#pragma once

// Diagnostics. Error lines go to standard error; the debug and verbose variants are kept as
// call sites for developers and print nothing.

namespace vellum {

/// Writes one printf-style error line to standard error (a newline is added).
void C_LogError(const char *format, ...) __attribute__((format(printf, 1, 2)));
void C_Debug(const char *format, ...) __attribute__((format(printf, 1, 2)));
void C_DebugPrint(const char *format, ...) __attribute__((format(printf, 1, 2)));
void C_VerbosePrint(const char *format, ...) __attribute__((format(printf, 1, 2)));
void C_VerboseError(const char *format, ...) __attribute__((format(printf, 1, 2)));
void C_VerboseMessage(const char *format, ...) __attribute__((format(printf, 1, 2)));

} // namespace vellum

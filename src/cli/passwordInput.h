#pragma once

#include <optional>
#include <string>

namespace vellum::cli {

struct CliContext;

/// Takes "--db-password TEXT" and "--db-password-file FILE" (the file's first line, without its
/// line end) out of the context's arguments into `context.password`. Answers kExitOk, or
/// kExitUsage (a missing value, both options, an option twice) or kExitFailure (the file cannot
/// be read) with `error` set.
int takePasswordOptions(CliContext &context, std::string &error);

/// The first line of `text` without its line end ("\n" or "\r\n").
std::string firstLine(const std::string &text);

/// Asks for the password of `name` without echo: "Password for NAME: " on /dev/tty (or on
/// standard error, reading standard input, when there is no terminal device). nullopt when
/// nothing could be read (end of input).
std::optional<std::string> promptForPassword(const std::string &name);

} // namespace vellum::cli

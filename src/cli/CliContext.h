#pragma once

#include "model/FileReader.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {
class TOrbMDBFile;
class TOrbMDBQuery;
} // namespace vellum

namespace vellum::cli {

/// Exit statuses of every command: kExitFailure when the input cannot be read (the file, or a
/// table named on the command line); kExitUsage for a command line that is wrong in itself,
/// found before anything is read or written; kExitLosses when the work was done but something
/// was lost: the file could not be read completely (each loss is told on standard error), a
/// table or file could not be written, the output was cut short, or an export was stopped.
enum ExitStatus { kExitOk = 0, kExitFailure = 1, kExitUsage = 2, kExitLosses = 3 };

/// What a command gets: its arguments (after the command name) and the real standard output.
/// libmdb prints diagnostics and hex dumps on file descriptor 1, so the tool moves that
/// descriptor to standard error at start-up and writes its own output through `out` only.
struct CliContext {
    std::vector<std::string> args;
    std::FILE *out = stdout;
    /// How `openDatabase` reads files; chosen at the first open (isolated when vellum-loader
    /// is beside vellum-cli, otherwise in process with a line on standard error saying so).
    std::unique_ptr<FileReader> reader;
    /// `--codepage NAME`: the code page of Jet 3 files' text (they do not record it); empty
    /// for windows-1252.
    std::string codePage;
    /// Set by `openDatabase` when a file opened with losses: the command's success becomes
    /// kExitLosses.
    bool lossesReported = false;
    /// `--db-password TEXT` or `--db-password-file FILE`: the password of encrypted files; when
    /// absent, `openDatabase` asks for it on a terminal.
    std::optional<std::string> password;
};

/// A command: name, one-line summary, usage text and the function that runs it.
struct Command {
    const char *name;
    const char *summary;
    const char *usage;
    int (*run)(CliContext &context);
};

/// Takes "--codepage NAME" (accepted by every command that reads a file) out of the context's
/// arguments into `context.codePage`; false, with `error` set, when the name is missing or iconv
/// does not know it.
bool takeCodePageOption(CliContext &context, std::string &error);

/// True when the arguments ask for help.
bool wantsHelp(const std::vector<std::string> &args);
/// Prints "vellum-cli: MESSAGE" and the command's usage on standard error; answers kExitUsage.
int usageError(const Command &command, const std::string &message);
/// Prints "vellum-cli: MESSAGE" on standard error.
void printError(const std::string &message);

/// Opens a database path into a loaded file model with the context's reader; prints "File
/// (NAME) cannot be opened" and the line that says why on standard error and answers nullptr on
/// failure (a file whose catalog cannot be read included; "File (NAME) is encrypted: a password
/// is needed" or "The password for (NAME) is not correct" for an encrypted file). An encrypted
/// file opened without a password while standard input is a terminal asks for it first. A file
/// that opens with losses gets one warning line per loss and sets `context.lossesReported`.
/// Shows progress for large files on a terminal.
std::unique_ptr<TOrbMDBFile> openDatabase(CliContext &context, const std::string &path);

extern const Command kListCommand;
extern const Command kSchemaCommand;
extern const Command kRowsCommand;
extern const Command kExtractCommand;
extern const Command kExportCommand;
extern const Command kQueriesCommand;

/// Appends queries as JSON objects {"name", "type", "sql"}, one a line (the inside of an
/// array: `queries` and `schema --json` share it).
void appendQueriesJson(std::string &out, const std::vector<const TOrbMDBQuery *> &queries);

/// All commands, in the order `--help` lists them.
const std::vector<const Command *> &allCommands();

} // namespace vellum::cli

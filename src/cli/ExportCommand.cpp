// vellum-cli export: converts tables of a database through the core's export job.

#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "cli/TerminalBar.h"
#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/OutputFile.h"
#include "export/exportPaths.h"
#include "export/exportRegistry.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"
#include "util/stringEncodings.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <set>

namespace vellum::cli {

namespace {

// ---- Ctrl-C, kill, hang-up ----

static_assert(std::atomic<bool>::is_always_lock_free, "the stop flag is set from a signal handler");
std::atomic<std::atomic<bool> *> g_stopFlag{nullptr};

std::atomic<int> g_signalsSeen{0};

extern "C" void onInterrupt(int signal)
{
    if (g_signalsSeen.fetch_add(1) == 0) {
        if (std::atomic<bool> *flag = g_stopFlag.load())
            flag->store(true, std::memory_order_relaxed);
        return;
    }
    // A second signal ends the program at once, still leaving no temporary file behind.
    OutputFile::removePendingFiles();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Routes SIGINT (Ctrl-C), SIGTERM (kill, timeout) and SIGHUP (a closed terminal) to a job's
/// stop flag while it lives, so that each stops the export the same way: the file being written
/// is deleted and the report says what was done. A second signal ends the program at once,
/// after removing the temporary files (`timeout` sends its signal twice: to the program and to
/// its process group).
class InterruptStopsJob {
public:
    explicit InterruptStopsJob(std::atomic<bool> &flag)
    {
        g_stopFlag.store(&flag);
        struct sigaction action = {};
        g_signalsSeen.store(0);
        action.sa_handler = onInterrupt;
        action.sa_flags = 0;
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            sigaction(kSignals[i], &action, &m_previous[i]);
    }
    ~InterruptStopsJob()
    {
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            sigaction(kSignals[i], &m_previous[i], nullptr);
        g_stopFlag.store(nullptr);
    }

private:
    static constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, 3> m_previous = {};
};

// ---- progress bar ----

/// The progress label and a bar on standard error, only when it is a terminal.
class ExportProgress : public ExportObserver {
public:
    void updateProgressPanel(const ExportJob &job, std::size_t index) override
    {
        m_count = job.entries().size();
        m_index = index;
        m_fraction = 0;
        m_label = index < m_count ? exportProgressLabel(job.entries()[index].tableName, index, m_count) : std::string();
        draw();
    }
    void updateRowProgress(const ExportJob &, std::size_t rowsDone, std::size_t rowCount) override
    {
        m_fraction = rowCount ? static_cast<double>(rowsDone) / static_cast<double>(rowCount) : 1.0;
        draw();
    }
    void exportThreadFinished(const ExportJob &) override { m_bar.clear(); }

private:
    void draw()
    {
        if (m_count > 0)
            m_bar.draw((static_cast<double>(m_index) + m_fraction) / static_cast<double>(m_count), m_label);
    }

    TerminalBar m_bar;
    std::size_t m_index = 0;
    std::size_t m_count = 0;
    double m_fraction = 0;
    std::string m_label;
};

// ---- arguments ----

const char *exportUsage();
int runExport(CliContext &context);

/// What the command has settled before the job starts.
struct ExportRequest {
    ExportFileType kind = ExportFileType::CSV;
    /// The kind's defaults, then every option given.
    ExportOptions options;
    /// The --table names in the order given; empty = every table of the file.
    std::vector<std::string> tables;
    /// OUTPUT as given.
    std::string output;

    bool wholeFile() const { return tables.empty(); }
};

const ExportKindInfo *formatNamed(const std::string &name)
{
    for (const ExportKindInfo &format : exportKinds())
        if (name == format.name)
            return &format;
    return nullptr;
}

std::string formatNames()
{
    std::string names;
    for (const ExportKindInfo &format : exportKinds())
        names += (names.empty() ? "" : "|") + std::string(format.name);
    return names;
}

ArgParser makeParser()
{
    std::set<std::string> switches = {"--list-encodings"};
    std::set<std::string> valued = {"--format", "--table"};
    for (const ExportCommandLineForm &form : exportCommandLineForms())
        (form.valueName ? valued : switches).insert(form.flag);
    return ArgParser(switches, valued);
}

/// Applies every option given, in the order of the forms, through the form whose kinds hold
/// the request's kind; false with `error` for an option the kind does not take or a bad value.
bool applyOptions(const ArgParser &parser, ExportRequest &request, std::string &error)
{
    std::set<std::string> applied;
    for (const ExportCommandLineForm &form : exportCommandLineForms()) {
        if (!parser.has(form.flag) || !containsKind(form.kinds, request.kind) || applied.count(form.flag))
            continue;
        applied.insert(form.flag);
        const ExportOptionInfo &option = exportOptionInfo(form.option);
        ExportOptionValue value = form.switchValue;
        if (form.valueName &&
            !parseExportOptionText(option, request.kind, form.flag, parser.value(form.flag).value_or(""), value, error))
            return false;
        chooseExportOption(option, request.options, value);
    }
    for (const ExportCommandLineForm &form : exportCommandLineForms()) {
        if (parser.has(form.flag) && !applied.count(form.flag)) {
            error = std::string("option ") + form.flag + " does not apply to --format " +
                    fileExtensionByExportFileType(request.kind).value_or("");
            return false;
        }
    }
    return true;
}

void listEncodings(std::FILE *out)
{
    for (const StringEncoding &encoding : availableStringEncodings())
        std::fprintf(out, "%-12llu %-18s %s\n", static_cast<unsigned long long>(encoding.code), encoding.iconvName,
                     encoding.displayName);
}

bool isDirectory(const std::string &path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool isRegularFile(const std::string &path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool isDeviceOrPipe(const std::string &path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && (S_ISCHR(info.st_mode) || S_ISFIFO(info.st_mode));
}

bool exists(const std::string &path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

/// True when the last component of `path` ends with "." and `extension` (any case).
bool hasExtension(const std::string &path, const std::string &extension)
{
    const std::string name = std::filesystem::path(path).filename().string();
    return !extension.empty() && name.size() > extension.size() + 1 &&
           name[name.size() - extension.size() - 1] == '.' &&
           strcasecmp(name.c_str() + name.size() - extension.size(), extension.c_str()) == 0;
}

/// Creates a folder and its parents; prints the error and answers false when it cannot.
bool makeFolder(const std::string &path)
{
    if (path.empty() || isDirectory(path))
        return true;
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error || !isDirectory(path)) {
        printError("cannot create folder '" + path + "': " + (error ? error.message() : "not a folder"));
        return false;
    }
    return true;
}

// ---- the command ----

int runExport(CliContext &context)
{
    ArgParser parser = makeParser();
    if (!parser.parse(context.args))
        return usageError(kExportCommand, parser.error());
    if (parser.has("--list-encodings")) {
        listEncodings(context.out);
        return kExitOk;
    }
    if (parser.positionals().size() != 2)
        return usageError(kExportCommand, "expected FILE and OUTPUT");
    const auto formatName = parser.value("--format");
    if (!formatName)
        return usageError(kExportCommand, "missing --format (" + formatNames() + ")");
    const ExportKindInfo *format = formatNamed(*formatName);
    if (!format || !isExportFileTypeAvailable(format->kind))
        return usageError(kExportCommand, "unknown format '" + *formatName + "' (use " + formatNames() + ")");

    ExportRequest request;
    request.kind = format->kind;
    request.tables = parser.values("--table");
    request.output = parser.positionals()[1];
    request.options = ExportOptions::defaultsFor(request.kind, request.wholeFile());
    // Scripts and servers want output that loads and keeps every value: the command line
    // writes the lossless output unless --classic asks for the window's default.
    request.options.lossless = true;
    std::string error;
    if (!applyOptions(parser, request, error) || (format->validate && !format->validate(request.options, error)))
        return usageError(kExportCommand, error);

    // With --table, a workbook or script OUTPUT named with the kind's extension is that one
    // file (holding the named tables), not a folder of that name.
    if (!request.wholeFile() && !parser.has("--single-file") && !parser.has("--file-per-table") &&
        containsKind(exportOptionInfo(ExportOptionId::SingleFile).kinds, request.kind) &&
        hasExtension(request.output, fileExtensionByExportFileType(request.kind).value_or("")))
        request.options.exportSingleFile = true;
    const bool singleFile = request.options.exportSingleFile;
    const bool toStandardOutput = request.output == OutputFile::kStandardOutput;
    // The standard output, a device or a named pipe takes one stream of bytes: the single file,
    // or the one table of a kind that writes a file per table.
    const bool toStream = toStandardOutput || isDeviceOrPipe(request.output);
    if (toStandardOutput && request.kind == ExportFileType::SQLite) {
        // One stream of bytes cannot be a database file.
        printError("OUTPUT - (standard output) cannot take --format sqlite: a SQLite database needs a regular file");
        return kExitUsage;
    } else if (request.kind == ExportFileType::SQLite && exists(request.output) && !isDirectory(request.output) &&
               !isRegularFile(request.output)) {
        printError("OUTPUT '" + request.output +
                   "' is not a regular file; --format sqlite writes a database file and replaces only a regular "
                   "file");
        return kExitUsage;
    }
    if (!toStream && singleFile && isDirectory(request.output)) {
        printError("OUTPUT '" + request.output + "' is a folder; --format " + format->name + " writes one file");
        return kExitUsage;
    }
    if (!toStream && !singleFile && exists(request.output) && !isDirectory(request.output)) {
        printError("OUTPUT '" + request.output + "' is a file; --format " + format->name +
                   " writes one file per table into a folder");
        return kExitUsage;
    }

    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    const TOrbMDBTable *firstTable = nullptr;
    for (const std::string &name : request.tables) {
        const TOrbMDBTable *table = file->tableNamed(name);
        if (!table) {
            printError("unknown table '" + name + "'");
            return kExitFailure;
        }
        if (!firstTable)
            firstTable = table;
    }

    if (toStream && !singleFile) {
        const std::size_t count = request.wholeFile() ? file->tables().size() : request.tables.size();
        if (count != 1) {
            printError("OUTPUT '" + request.output + "' takes one stream of bytes, which holds one table; " +
                       (request.wholeFile() ? "the file has " + std::to_string(count) + " tables"
                                            : std::to_string(count) + " were named") +
                       ": choose one with --table");
            return kExitUsage;
        }
    }
    const std::string folder = toStream     ? std::string()
                               : singleFile ? std::filesystem::path(request.output).parent_path().string()
                                            : request.output;
    if (!makeFolder(folder))
        return kExitFailure;
    if (toStandardOutput) {
        // The data goes to the real standard output; the report then goes to standard error.
        std::fflush(context.out);
    }

    ExportJob job(*file, firstTable, request.kind);
    for (std::size_t i = 0; i < job.entries().size(); ++i) {
        const ExportEntry &entry = job.entries()[i];
        for (const std::string &name : request.tables)
            if (entry.tableName == name)
                job.setEntrySelected(i, true);
        job.setEntryFileName(i, folderSafeFileName(entry.exportFileName));
    }
    job.setOptions(request.options);
    job.setExportPath(request.output);

    ExportProgress progress;
    {
        InterruptStopsJob interrupt(job.terminateFlag());
        if (!job.startExport(&progress)) {
            printError(std::string("nothing to run for --format ") + format->name);
            return kExitFailure;
        }
        job.wait();
    }

    const ExportReport report = job.report();
    std::FILE *reportOut = toStandardOutput ? stderr : context.out;
    std::fprintf(reportOut, "%s\n", report.title.c_str());
    if (!report.message.empty())
        std::fprintf(reportOut, "%s\n", report.message.c_str());
    // A table that was not written (a failure, a stop) is a loss: the file itself opened.
    // So is a value the lossless output could only approximate (the report counts them).
    const bool complete = !job.terminated() &&
                          job.successTableCount() == static_cast<std::int64_t>(job.entries().size()) &&
                          job.approximations().empty();
    return complete ? kExitOk : kExitLosses;
}

const char *exportUsage()
{
    static const std::string usage = [] {
        std::string text = "vellum-cli export FILE OUTPUT --format " + formatNames() +
                           " [--table NAME]... [OPTIONS]\n"
                           "       vellum-cli export --list-encodings\n"
                           "  Converts every table of FILE, or the tables named with --table, into OUTPUT: a folder\n"
                           "  (created when missing) with one file per table, or the file itself for formats that\n"
                           "  write one file. OUTPUT - writes one file (a script, a workbook, or one table's text)\n"
                           "  to standard output; the report then goes to standard error. A device or named pipe at\n"
                           "  OUTPUT is written into, never replaced; only a regular file is ever replaced.\n"
                           "  Without --classic the output is lossless: standard types and exact values.\n"
                           "  Ctrl-C (or SIGTERM, SIGHUP) stops; no partial file is left.\n"
                           "  Exit status 0 when every chosen table was written completely, 1 when FILE cannot be\n"
                           "  opened, 2 for a wrong argument, 3 when a table was not written, the output was cut\n"
                           "  short, the export was stopped or a value could only be approximated.\n"
                           "  --format FORMAT      one of:";
        for (const ExportKindInfo &format : exportKinds())
            text += formatString("\n      %-7s %s", format.name, format.summary);
        text += "\n  --table NAME         a table to export (repeatable; default every table)"
                "\n  --list-encodings     print the encodings --encoding takes: code, name, display name";
        for (const ExportCommandLineForm &form : exportCommandLineForms()) {
            std::string kinds;
            for (const ExportFileType kind : form.kinds)
                kinds += (kinds.empty() ? "" : ", ") + fileExtensionByExportFileType(kind).value_or("");
            const std::string head = std::string(form.flag) + (form.valueName ? std::string(" ") + form.valueName : "");
            text += "\n  " + head + "\n      " + form.help + " [" + kinds + "]";
        }
        return text;
    }();
    return usage.c_str();
}

} // namespace

extern const Command kExportCommand = {"export", "convert tables into files of another format", exportUsage(),
                                       runExport};

} // namespace vellum::cli

#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "export/OutputFile.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <set>

namespace vellum::cli {

namespace {

/// A table or column name as part of a file name: "/" and NUL would leave the folder or end
/// the name, so they become "_".
std::string fileNamePart(const std::string &name)
{
    std::string part = name;
    for (char &c : part)
        if (c == '/' || c == '\0')
            c = '_';
    return part;
}

/// An attachment's stored file name as a file name in its row's folder: "/" and NUL become
/// "_", and a name that would not name a file of its own ("", ".", "..") becomes
/// "attachment-N" (N counting the cell's attachments from 1).
std::string attachmentFileName(const std::string &stored, std::size_t ordinal)
{
    if (stored.empty() || stored == "." || stored == "..")
        return "attachment-" + std::to_string(ordinal);
    return fileNamePart(stored);
}

bool ensureFolder(const std::string &path)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode))
            return true;
        printError("(" + path + ") is not a folder");
        return false;
    }
    if (::mkdir(path.c_str(), 0777) == 0)
        return true;
    printError("cannot create the folder (" + path + "): " + std::strerror(errno));
    return false;
}

/// Writes the payload under a temporary name and renames it into place: a failed write
/// leaves nothing behind.
bool writeBlob(const std::string &path, const TOrbBlobData &blob)
{
    OutputFile output;
    if (!output.begin(path)) {
        printError("cannot write (" + path + "): " + output.errorText());
        return false;
    }
    const auto &data = blob.data();
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(output.descriptor(), data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const std::string reason = std::strerror(n < 0 ? errno : ENOSPC);
            output.abandon();
            printError("cannot write (" + path + "): " + reason);
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    if (!output.commit()) {
        printError("cannot write (" + path + "): " + output.errorText());
        return false;
    }
    return true;
}

/// `name`, or "NAME (2).EXT", "NAME (3).EXT", … when an earlier cell of this run took it: two
/// cells never write one file.
std::string distinctName(const std::string &name, const std::string &extension, std::set<std::string> &used)
{
    const std::string suffix = extension.empty() ? std::string() : "." + extension;
    std::string candidate = name + suffix;
    for (int n = 2; used.count(candidate); ++n)
        candidate = name + " (" + std::to_string(n) + ")" + suffix;
    used.insert(candidate);
    return candidate;
}

int runExtract(CliContext &context)
{
    ArgParser parser({}, {"--column"});
    if (!parser.parse(context.args))
        return usageError(kExtractCommand, parser.error());
    if (parser.positionals().size() != 3)
        return usageError(kExtractCommand, "expected FILE, TABLE and OUTDIR");
    const std::string &tableName = parser.positionals()[1];
    std::string folder = parser.positionals()[2];
    while (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();

    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    const TOrbMDBTable *table = file->tableNamed(tableName);
    if (!table) {
        printError("table (" + tableName + ") does not exist");
        return kExitFailure;
    }
    const auto &columns = table->columns();
    std::vector<std::size_t> chosen;
    const auto onlyColumn = parser.value("--column");
    for (std::size_t c = 0; c < columns.size(); ++c)
        if (!onlyColumn || columns[c]->name() == *onlyColumn)
            chosen.push_back(c);
    if (onlyColumn && chosen.empty()) {
        printError("column (" + *onlyColumn + ") does not exist in table (" + tableName + ")");
        return kExitFailure;
    }
    if (!ensureFolder(folder))
        return kExitFailure;

    int status = kExitOk;
    std::set<std::string> used;
    for (std::size_t r = 0; r < table->rowCount(); ++r) {
        for (const std::size_t c : chosen) {
            const CellValue cell = table->cell(r, c);
            if (cell.complex && cell.complex->kind() == ComplexKind::Attachment) {
                const auto &attachments = cell.complex->attachments();
                if (attachments.empty())
                    continue;
                const std::string rowFolder = folder + "/" + std::to_string(r + 1);
                if (!ensureFolder(rowFolder)) {
                    status = kExitLosses;
                    continue;
                }
                for (std::size_t a = 0; a < attachments.size(); ++a) {
                    // Two attachment columns of a row may hold files of one name: never overwrite.
                    const std::string stored = attachmentFileName(attachments[a].fileName, a + 1);
                    const std::size_t dot = stored.rfind('.');
                    const bool dotted = dot != std::string::npos && dot > 0;
                    const std::string path =
                        folder + "/" +
                        distinctName(std::to_string(r + 1) + "/" + (dotted ? stored.substr(0, dot) : stored),
                                     dotted ? stored.substr(dot + 1) : std::string(), used);
                    if (writeBlob(path, *attachments[a].data))
                        std::fprintf(context.out, "%s\n", path.c_str());
                    else
                        status = kExitLosses;
                }
                continue;
            }
            if (!cell.isBlob())
                continue;
            const std::string name = distinctName(fileNamePart(table->name()) + "-" + std::to_string(r + 1) + "-" +
                                                      fileNamePart(columns[c]->name()),
                                                  fileNamePart(cell.blob->fileExtension()), used);
            const std::string path = folder + "/" + name;
            if (writeBlob(path, *cell.blob))
                std::fprintf(context.out, "%s\n", path.c_str());
            else
                status = kExitLosses;
        }
    }
    return status;
}

} // namespace

extern const Command kExtractCommand = {
    "extract", "write the pictures and documents of a table's OLE Object cells to files",
    "vellum-cli extract FILE TABLE OUTDIR [--column NAME]\n"
    "  Writes the payload of each picture or document cell as OUTDIR/TABLE-ROW-COLUMN.EXT (ROW\n"
    "  counts from 1 in storage order; no dot without an extension; \"/\" in a name becomes \"_\")\n"
    "  and prints each written path on its own line. OUTDIR is created when missing; files of\n"
    "  the same name are replaced; cells whose names would be the same get \" (2)\", \" (3)\", … A\n"
    "  file appears only when completely written.\n"
    "  The files of an attachment column are written as OUTDIR/ROW/NAME, NAME the file name\n"
    "  stored with each attachment.\n"
    "  --column NAME  only the cells of that column",
    runExtract};

} // namespace vellum::cli

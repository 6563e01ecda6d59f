#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

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

bool writeBlob(const std::string &path, const TOrbBlobData &blob)
{
    std::FILE *out = std::fopen(path.c_str(), "wb");
    if (!out) {
        printError("cannot write (" + path + "): " + std::strerror(errno));
        return false;
    }
    const auto &data = blob.data();
    const bool written = std::fwrite(data.data(), 1, data.size(), out) == data.size();
    const int writeErrno = errno;
    const bool closed = std::fclose(out) == 0;
    if (!written || !closed) {
        printError("cannot write (" + path + "): " + std::strerror(written ? errno : writeErrno));
        return false;
    }
    return true;
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
    for (std::size_t r = 0; r < table->rowCount(); ++r) {
        for (const std::size_t c : chosen) {
            const CellValue cell = table->cell(r, c);
            if (cell.complex && cell.complex->kind() == ComplexKind::Attachment) {
                const auto &attachments = cell.complex->attachments();
                if (attachments.empty())
                    continue;
                const std::string rowFolder = folder + "/" + std::to_string(r + 1);
                if (!ensureFolder(rowFolder)) {
                    status = kExitFailure;
                    continue;
                }
                for (std::size_t a = 0; a < attachments.size(); ++a) {
                    const std::string path = rowFolder + "/" + attachmentFileName(attachments[a].fileName, a + 1);
                    if (writeBlob(path, *attachments[a].data))
                        std::fprintf(context.out, "%s\n", path.c_str());
                    else
                        status = kExitFailure;
                }
                continue;
            }
            if (!cell.isBlob())
                continue;
            std::string name =
                fileNamePart(table->name()) + "-" + std::to_string(r + 1) + "-" + fileNamePart(columns[c]->name());
            if (!cell.blob->fileExtension().empty())
                name += "." + cell.blob->fileExtension();
            const std::string path = folder + "/" + name;
            if (writeBlob(path, *cell.blob))
                std::fprintf(context.out, "%s\n", path.c_str());
            else
                status = kExitFailure;
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
    "  the same name are replaced.\n"
    "  The files of an attachment column are written as OUTDIR/ROW/NAME, NAME the file name\n"
    "  stored with each attachment.\n"
    "  --column NAME  only the cells of that column",
    runExtract};

} // namespace vellum::cli

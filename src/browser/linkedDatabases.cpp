#include "browser/linkedDatabases.h"

#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBLinkedTable.h"

#include <filesystem>
#include <system_error>

namespace vellum {

namespace {

bool equalIgnoringAsciiCase(const std::string &a, const std::string &b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (fold(a[i]) != fold(b[i]))
            return false;
    }
    return true;
}

/// A regular file whose name has an extension: the model rebuilds a file's path from folder,
/// name and extension, so a name without one cannot be opened.
bool isRegularFile(const std::filesystem::path &path)
{
    const std::string name = path.filename().string();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == name.size())
        return false;
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

} // namespace

std::string storedFileName(const std::string &storedPath)
{
    const std::size_t separator = storedPath.find_last_of("\\/");
    return separator == std::string::npos ? storedPath : storedPath.substr(separator + 1);
}

std::optional<std::string> findLinkedDatabase(const TOrbMDBLinkedTable &link, const std::string &databaseFolder)
{
    if (link.kind() != TOrbMDBLinkedTable::Kind::Access || link.database().empty())
        return std::nullopt;
    // The model keeps "" as the folder of a file at the root.
    const std::filesystem::path folder(databaseFolder.empty() ? std::string("/") : databaseFolder);
    // A path that reads as a path here ("/data/x.mdb", "x.mdb", "../x.mdb"); a Windows path
    // with a drive letter or backslashes never names a file here.
    const std::string &stored = link.database();
    if (stored.find('\\') == std::string::npos) {
        const std::filesystem::path path(stored);
        const std::filesystem::path candidate = path.is_absolute() ? path : folder / path;
        if (isRegularFile(candidate))
            return candidate.lexically_normal().string();
    }
    const std::string name = storedFileName(stored);
    if (name.empty() || name == "." || name == "..")
        return std::nullopt;
    if (isRegularFile(folder / name))
        return (folder / name).string();
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        if (equalIgnoringAsciiCase(it->path().filename().string(), name) && isRegularFile(it->path()))
            return it->path().string();
    }
    return std::nullopt;
}

TOrbMDBTable *findLinkedTargetTable(const TOrbMDBFile &file, const std::string &name)
{
    if (TOrbMDBTable *exact = file.tableNamed(name))
        return exact;
    for (const auto &table : file.tables())
        if (equalIgnoringAsciiCase(table->name(), name))
            return table.get();
    return nullptr;
}

} // namespace vellum

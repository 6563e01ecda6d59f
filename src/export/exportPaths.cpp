#include "export/exportPaths.h"

#include "export/ExportEntry.h"
#include "util/format.h"
#include "util/localized.h"

#include <strings.h>
#include <sys/stat.h>

namespace vellum {

std::string exportPathLabel(bool exportSingleFile)
{
    return formatObjects("%@:", {localized(exportSingleFile ? "Export file" : "Export path")});
}

std::string updateExportSingleFilePath(const std::string &path, bool exportSingleFile, const std::string &databaseName,
                                       ExportFileType kind)
{
    if (path.empty())
        return path;
    const std::string extension = fileExtensionByExportFileType(kind).value_or("");
    if (exportSingleFile) {
        const std::string separator = path.back() == '/' ? "" : "/";
        return formatObjects("%@%@%@.%@", {path, separator, databaseName, extension});
    }
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    const bool hasExtension = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
    if (!hasExtension || strcasecmp(path.c_str() + dot + 1, extension.c_str()) != 0)
        return path;
    if (slash == std::string::npos)
        return std::string();
    return slash == 0 ? std::string("/") : path.substr(0, slash);
}

bool exportPathUsable(const std::string &path, bool exportSingleFile)
{
    if (path.empty() || path.front() != '/')
        return false;
    struct stat info {};
    if (!exportSingleFile)
        return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    if (stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode))
        return false;
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == 0 ? std::string("/") : path.substr(0, slash);
    return stat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::string exportOutputPath(const std::string &folder, const ExportEntry &entry)
{
    return formatObjects("%@/%@", {folder, entry.exportFileName});
}

std::string folderSafeFileName(const std::string &fileName)
{
    if (fileName == ".")
        return "_";
    if (fileName == "..")
        return "__";
    std::string safe = fileName;
    for (char &c : safe)
        if (c == '/' || c == '\0')
            c = '_';
    return safe;
}

} // namespace vellum

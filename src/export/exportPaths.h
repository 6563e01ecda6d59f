#pragma once

#include "export/ExportFileType.h"

#include <string>

namespace vellum {

struct ExportEntry;

/// The path field's label: "Export file:" with single file on, "Export path:" otherwise.
std::string exportPathLabel(bool exportSingleFile);

/// The path text after the single-file flag changed (`updateExportSingleFileLabels`). An empty
/// path stays empty. On: "%@%@%@.%@" of the path, "/" unless it ends with one, the database
/// file's name and the kind's extension. Off: a path whose extension is the kind's
/// (case-insensitive) is cut to its parent folder; any other path stays.
std::string updateExportSingleFilePath(const std::string &path, bool exportSingleFile, const std::string &databaseName,
                                       ExportFileType kind);

/// True when the wizard may write to `path`: an absolute path whose folder exists (the folder
/// itself when one file per table is written, the file's folder otherwise, and then the path is
/// not a folder). An empty or relative path is never usable: it is not a place the user chose.
bool exportPathUsable(const std::string &path, bool exportSingleFile);

/// Where an entry is written with one file per table: "%@/%@" of the folder and the file name.
std::string exportOutputPath(const std::string &folder, const ExportEntry &entry);

/// A file name that stays inside its folder: every "/" and NUL becomes "_", and "." or ".."
/// become "_" and "__". For names that come from the file rather than from the user.
std::string folderSafeFileName(const std::string &fileName);

} // namespace vellum

#pragma once

#include <optional>
#include <string>

namespace vellum {

class TOrbMDBFile;
class TOrbMDBLinkedTable;
class TOrbMDBTable;

/// The file name at the end of a path as a database stores it: after the last '\' or '/'
/// (Access on Windows stores paths such as "C:\data\orders.mdb").
std::string storedFileName(const std::string &storedPath);

/// Where the Access file a linked table refers to is found here: the stored path when a file
/// is there (a relative path taken from `databaseFolder`, the folder of the database that holds
/// the link), else a file of the stored name in `databaseFolder`, the name compared exactly and
/// then ignoring ASCII case (a path written on Windows may differ in case). Only files whose
/// names have an extension count (the model opens a file by folder, name and extension).
/// nullopt for ODBC links and when no such file exists.
std::optional<std::string> findLinkedDatabase(const TOrbMDBLinkedTable &link, const std::string &databaseFolder);

/// The table of a loaded file that a linked table names: the exact name, else the first one
/// equal ignoring ASCII case (Access names are not case-sensitive); nullptr when none.
TOrbMDBTable *findLinkedTargetTable(const TOrbMDBFile &file, const std::string &name);

} // namespace vellum

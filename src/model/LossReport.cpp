#include "model/LossReport.h"

#include <algorithm>

namespace vellum {

namespace {

std::string quoted(const std::string &name)
{
    return "\"" + name + "\"";
}

/// "1 table", "3 tables".
std::string counted(std::uint64_t n, const char *one, const char *many)
{
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

} // namespace

std::string lossText(const LossReport &loss)
{
    switch (loss.kind) {
    case LossReport::Kind::Catalog:
        return "the catalog could not be read: no table can be listed";
    case LossReport::Kind::CatalogPart:
        return "the catalog could not be read completely: " + std::to_string(loss.count) + " of " +
               std::to_string(loss.expected) + " entries were read, tables may be missing";
    case LossReport::Kind::TableDefinition:
        return "table " + quoted(loss.table) + " could not be read: its definition is damaged";
    case LossReport::Kind::Rows:
        return "table " + quoted(loss.table) + " could not be read: only " + std::to_string(loss.count) + " of " +
               std::to_string(loss.expected) + " rows could be read";
    case LossReport::Kind::LongValues:
        return "table " + quoted(loss.table) +
               " could not be read: " + counted(loss.count, "memo or OLE value is", "memo or OLE values are") +
               " missing";
    }
    return {};
}

std::string lossNotice(const std::vector<LossReport> &losses)
{
    if (losses.empty())
        return {};
    std::uint64_t missingTables = 0, shortTables = 0, longValues = 0;
    bool catalog = false, catalogPart = false;
    for (const LossReport &loss : losses) {
        switch (loss.kind) {
        case LossReport::Kind::Catalog:
            catalog = true;
            break;
        case LossReport::Kind::CatalogPart:
            catalogPart = true;
            break;
        case LossReport::Kind::TableDefinition:
            ++missingTables;
            break;
        case LossReport::Kind::Rows:
            ++shortTables;
            break;
        case LossReport::Kind::LongValues:
            longValues += loss.count;
            break;
        }
    }
    std::vector<std::string> parts;
    if (catalog)
        parts.push_back("its catalog is unreadable");
    if (catalogPart)
        parts.push_back("its catalog is incomplete");
    if (missingTables)
        parts.push_back(counted(missingTables, "table is", "tables are") + " missing");
    if (shortTables)
        parts.push_back(counted(shortTables, "table is", "tables are") + " missing rows");
    if (longValues)
        parts.push_back(counted(longValues, "memo or OLE value is", "memo or OLE values are") + " missing");
    std::string text = "This file could not be read completely: ";
    for (std::size_t i = 0; i < parts.size(); ++i)
        text += (i ? ", " : "") + parts[i];
    return text;
}

std::string openFailureText(OpenFailure failure)
{
    switch (failure) {
    case OpenFailure::None:
        return {};
    case OpenFailure::NotFound:
        return "The file does not exist.";
    case OpenFailure::NotReadable:
        return "You do not have permission to read the file.";
    case OpenFailure::NotRegularFile:
        return "It is not a regular file (a folder, a pipe or a device).";
    case OpenFailure::NotAccessFile:
        return "It is not a Microsoft Access database.";
    case OpenFailure::PasswordNeeded:
        return "The database is encrypted and needs a password.";
    case OpenFailure::WrongPassword:
        return "The password does not decrypt the database.";
    case OpenFailure::CatalogUnreadable:
        return "The database's catalog is damaged and cannot be read.";
    case OpenFailure::NoProgress:
        return "The reader stopped making progress.";
    case OpenFailure::OutOfMemory:
        return "The reader ran out of memory.";
    case OpenFailure::Crashed:
        return "The reader crashed.";
    case OpenFailure::Cancelled:
        return "The open was cancelled.";
    case OpenFailure::Other:
        return "The database could not be read.";
    }
    return {};
}

bool catalogLost(const std::vector<LossReport> &losses)
{
    return std::any_of(losses.begin(), losses.end(),
                       [](const LossReport &loss) { return loss.kind == LossReport::Kind::Catalog; });
}

} // namespace vellum

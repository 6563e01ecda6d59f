#include "export/ExportFileType.h"

#include <array>

namespace vellum {

namespace {

constexpr std::array<std::pair<ExportFileType, const char *>, 7> kExtensions = {{
    {ExportFileType::CSV, "csv"},
    {ExportFileType::TXT, "txt"},
    {ExportFileType::XML, "xml"},
    {ExportFileType::XLS, "xls"},
    {ExportFileType::SQL, "sql"},
    {ExportFileType::SQLite, "sqlite"},
    {ExportFileType::XLSX, "xlsx"},
}};

} // namespace

std::optional<std::string> fileExtensionByExportFileType(ExportFileType kind)
{
    for (const auto &[k, extension] : kExtensions)
        if (k == kind)
            return std::string(extension);
    return std::nullopt;
}

std::string exportFileNameSuffix(ExportFileType kind)
{
    if (kind == ExportFileType::SQLite)
        return {};
    const auto extension = fileExtensionByExportFileType(kind);
    return extension ? "." + *extension : std::string();
}

std::optional<ExportFileType> exportFileTypeFromName(std::string_view name)
{
    for (const auto &[kind, extension] : kExtensions)
        if (name == extension)
            return kind;
    return std::nullopt;
}

std::optional<ExportFileType> exportFileTypeFromValue(std::uint32_t value)
{
    for (const auto &[kind, extension] : kExtensions)
        if (static_cast<std::uint32_t>(kind) == value)
            return kind;
    return std::nullopt;
}

} // namespace vellum

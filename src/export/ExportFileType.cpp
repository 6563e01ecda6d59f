#include "export/ExportFileType.h"

#include "export/exportRegistry.h"

namespace vellum {

std::optional<std::string> fileExtensionByExportFileType(ExportFileType kind)
{
    if (const ExportKindInfo *info = exportKindInfo(kind))
        return std::string(info->extension);
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
    for (const ExportKindInfo &info : exportKinds())
        if (name == info.extension)
            return info.kind;
    return std::nullopt;
}

std::optional<ExportFileType> exportFileTypeFromValue(std::uint32_t value)
{
    for (const ExportKindInfo &info : exportKinds())
        if (static_cast<std::uint32_t>(info.kind) == value)
            return info.kind;
    return std::nullopt;
}

} // namespace vellum

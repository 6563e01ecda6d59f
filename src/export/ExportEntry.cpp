#include "export/ExportEntry.h"

#include "util/stringEncodings.h"

namespace vellum {

ExportEntry ExportEntry::exportEntryWithTableName(const std::string &tableName, ExportFileType kind)
{
    ExportEntry entry;
    entry.tableName = tableName;
    entry.exportFileName = tableName + exportFileNameSuffix(kind);
    return entry;
}

EncodingEntry EncodingEntry::encodingEntryWithEncoding(std::uint64_t encoding)
{
    EncodingEntry entry;
    entry.encoding = encoding;
    if (const StringEncoding *known = stringEncodingForCode(encoding))
        entry.encodingName = known->displayName;
    return entry;
}

bool SortEncoding(const EncodingEntry &a, const EncodingEntry &b)
{
    return a.encodingName < b.encodingName;
}

} // namespace vellum

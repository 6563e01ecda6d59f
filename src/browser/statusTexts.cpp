#include "browser/statusTexts.h"

#include "browser/localizedFormat.h"
#include "util/format.h"
#include "util/localized.h"

namespace vellum {

namespace {

long long n(std::size_t value)
{
    return static_cast<long long>(value);
}

std::string joinComma(const std::string &a, const std::string &b)
{
    return formatObjects(localized("%@, %@"), {a, b});
}

} // namespace

std::string statusForNoSelection(std::size_t filesListed)
{
    return localizedFormat("%d %@", {n(filesListed), localized(filesListed == 1 ? "file" : "files")});
}

std::string statusForFileSelection(std::size_t filesListed, std::optional<std::size_t> tableCount)
{
    std::string text = filesListed == 1 ? localized("1 of 1 file") : localizedFormat("1 of %d files", {n(filesListed)});
    if (tableCount)
        text = joinComma(text, *tableCount == 1 ? localized("contains 1 table")
                                                : localizedFormat("contains %d tables", {n(*tableCount)}));
    return text;
}

std::string statusForTableSelection(std::size_t tablesListed, std::size_t rowCount)
{
    const std::string tables =
        tablesListed == 1 ? localized("1 of 1 table") : localizedFormat("1 of %d tables", {n(tablesListed)});
    const std::string records =
        rowCount == 1 ? localized("contains 1 record") : localizedFormat("contains %d records", {n(rowCount)});
    return joinComma(tables, records);
}

std::string statusForRecordSelection(std::size_t selectedCount, std::size_t firstSelectedPosition,
                                     std::size_t rowsShown)
{
    if (selectedCount == 0)
        return localizedFormat("%d %@", {n(rowsShown), localized(rowsShown == 1 ? "record" : "records")});
    if (selectedCount == 1)
        return localizedFormat("Record %d of %d", {n(firstSelectedPosition + 1), n(rowsShown)});
    return localizedFormat("%d of %d records", {n(selectedCount), n(rowsShown)});
}

} // namespace vellum

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// The summary shown when an export ends: the alert's title and message.
struct ExportReport {
    std::string title;
    std::string message;
};

/// Most log lines the report lists; the rest are counted.
inline constexpr std::size_t kExportReportMaxLogLines = 10;

/// Builds the final report: title "Export terminated." or "Export finished."; the message is
/// "%d table(s) exported successfully." when any succeeded, then the first ten log lines each
/// after a line break (when the message is not empty yet, no break before the first), then
/// "\n…and %d more." when there are more. All texts localized.
ExportReport makeExportReport(bool terminated, std::int64_t successTableCount, const std::vector<std::string> &msgLog);

/// The progress label "%@... <%@>" of "Exporting %@" (table name) and "%ld of %ld" (index, count).
/// `index` is shown as it stands: the first table reads "0 of N".
std::string exportProgressLabel(std::string_view tableName, std::size_t index, std::size_t count);

/// A log line "<%@> %@: %@" of the table name, localized "Failed" and localized `reason`.
std::string exportFailureLine(std::string_view tableName, const char *reason);

/// A log line "<%@> %@: %@" of the table name, localized "Warning" and an already localized
/// text, for a table that was written but with a remark (e.g. substituted characters).
std::string exportWarningLine(std::string_view tableName, const std::string &localizedText);

} // namespace vellum

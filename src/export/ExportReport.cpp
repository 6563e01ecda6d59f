#include "export/ExportReport.h"

#include "util/format.h"
#include "util/localized.h"

namespace vellum {

ExportReport makeExportReport(bool terminated, std::int64_t successTableCount, const std::vector<std::string> &msgLog)
{
    ExportReport report;
    report.title = localized(terminated ? "Export terminated." : "Export finished.");
    std::string &message = report.message;
    if (successTableCount != 0) {
        const std::string format =
            localized(successTableCount == 1 ? "%d table exported successfully." : "%d tables exported successfully.");
        message = formatString(format.c_str(), static_cast<int>(successTableCount));
    }
    for (std::size_t i = 0; i < msgLog.size() && i < kExportReportMaxLogLines; ++i) {
        if (!message.empty())
            message += "\n";
        message += msgLog[i];
    }
    if (msgLog.size() > kExportReportMaxLogLines) {
        const std::string format = localized("\u2026and %d more.");
        message += "\n";
        message += formatString(format.c_str(), static_cast<int>(msgLog.size() - kExportReportMaxLogLines));
    }
    return report;
}

std::string exportProgressLabel(std::string_view tableName, std::size_t index, std::size_t count)
{
    const std::string exporting = formatObjects(localized("Exporting %@"), {std::string(tableName)});
    const std::string format = localized("%ld of %ld");
    const std::string position = formatString(format.c_str(), static_cast<long>(index), static_cast<long>(count));
    return formatObjects("%@... <%@>", {exporting, position});
}

std::string exportFailureLine(std::string_view tableName, const char *reason)
{
    return formatObjects("<%@> %@: %@", {std::string(tableName), localized("Failed"), localized(reason)});
}

std::string exportWarningLine(std::string_view tableName, const std::string &localizedText)
{
    return formatObjects("<%@> %@: %@", {std::string(tableName), localized("Warning"), localizedText});
}

} // namespace vellum

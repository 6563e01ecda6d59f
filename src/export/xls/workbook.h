#pragma once

#include "export/xls/LeBytes.h"
#include "export/xls/SharedStringTable.h"
#include "export/xls/SpillBuffer.h"
#include "export/xls/worksheet.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellum::xls {

/// An Excel 97-2003 workbook (BIFF8 inside a compound file) built sheet by sheet and saved
/// with `Dump`. Text is kept as UTF-16 (codepage 1200) in one shared string table; every cell
/// uses the default format. Records go to temporary storage as they are made (the shared
/// strings as they come, a sheet's rows a block of 32 at a time), so memory holds one block of
/// cells and a bounded set of recent texts whatever the size of the workbook; `Dump` then puts
/// the parts together. Not thread-safe; one thread builds it.
class workbook {
public:
    workbook();
    ~workbook();
    workbook(const workbook &) = delete;
    workbook &operator=(const workbook &) = delete;

    /// Adds a sheet after the others. The name goes through Excel's rules (`excelSheetName`);
    /// answers nullptr, with `lastError()` saying why, when it is empty or another sheet has
    /// it already (Excel ignores case), or the workbook was saved. The sheet belongs to the
    /// workbook. Adding a sheet finishes the one before it.
    worksheet *sheet(std::u16string_view name);
    /// The sheet at a 0-based position, or nullptr.
    worksheet *GetSheet(std::uint16_t index) const;
    std::size_t sheetCount() const { return m_sheets.size(); }

    /// The cell format (XF index, for `worksheet::number`) that shows numbers with the Excel
    /// number format `formatCode` (e.g. "yyyy-mm-dd hh:mm:ss"); asking twice for one code gives
    /// the same index. Each code asked for adds a FORMAT and an XF record to the workbook, after
    /// the default ones: a workbook that asks for none is written exactly as before.
    std::uint16_t numberFormat(std::u16string_view formatCode);

    /// Saves the workbook to a file (path in UTF-8), replacing it; on failure nothing is left
    /// at the path and `lastError()` says why. No sheet takes cells afterwards.
    [[nodiscard]] bool Dump(const std::string &path);
    /// Writes the workbook file to a sink.
    [[nodiscard]] bool Dump(ExportSink &sink);
    /// Writes only the BIFF8 "Workbook" stream (padding included), without the compound file
    /// around it: the records as a reader finds them.
    [[nodiscard]] bool DumpStream(ExportSink &sink);

    const std::string &lastError() const { return m_lastError; }
    /// Heap bytes held (recent shared texts, the block of cells being filled).
    std::size_t memoryUsage() const;

private:
    [[nodiscard]] bool closeOpenSheet();
    [[nodiscard]] bool writeGlobals(BiffStream &out, const std::vector<std::uint64_t> &sheetStarts);
    /// Sizes of the Workbook stream, known once every sheet is closed.
    struct StreamLayout {
        std::uint64_t globalsSize = 0;
        std::uint64_t streamSize = 0; ///< with the padding
    };
    /// Closes the open sheet and measures the stream; false with `lastError()` set.
    [[nodiscard]] bool layoutStream(StreamLayout &layout);
    [[nodiscard]] bool writeWorkbookStream(ExportSink &out, const StreamLayout &layout);

    SharedStringTable m_strings;
    SpillBuffer m_bodies; ///< the sheets' row blocks, one sheet after the other
    std::vector<std::unique_ptr<worksheet>> m_sheets;
    std::vector<std::u16string> m_formatCodes; ///< number formats asked for, in order
    std::string m_lastError;
    bool m_broken = false;
    bool m_saved = false;
};

/// The "\005SummaryInformation" property set the workbook carries: codepage and the name of the
/// writing application.
std::string summaryInformationStream();

} // namespace vellum::xls

#pragma once

#include "export/xls/LeBytes.h"
#include "export/xls/SpillBuffer.h"

#include <cstdint>
#include <string_view>

namespace vellum::xls {

/// BIFF8 record numbers the writer uses.
namespace biff {
inline constexpr std::uint16_t kBof = 0x0809;
inline constexpr std::uint16_t kEof = 0x000A;
inline constexpr std::uint16_t kInterfaceHdr = 0x00E1;
inline constexpr std::uint16_t kMms = 0x00C1;
inline constexpr std::uint16_t kInterfaceEnd = 0x00E2;
inline constexpr std::uint16_t kCodepage = 0x0042;
inline constexpr std::uint16_t kWindowProtect = 0x0019;
inline constexpr std::uint16_t kProtect = 0x0012;
inline constexpr std::uint16_t kPassword = 0x0013;
inline constexpr std::uint16_t kWindow1 = 0x003D;
inline constexpr std::uint16_t kBackup = 0x0040;
inline constexpr std::uint16_t kHideObj = 0x008D;
inline constexpr std::uint16_t kDateMode = 0x0022;
inline constexpr std::uint16_t kPrecision = 0x000E;
inline constexpr std::uint16_t kBookBool = 0x00DA;
inline constexpr std::uint16_t kFont = 0x0031;
inline constexpr std::uint16_t kFormat = 0x041E;
inline constexpr std::uint16_t kXf = 0x00E0;
inline constexpr std::uint16_t kStyle = 0x0293;
inline constexpr std::uint16_t kBoundSheet = 0x0085;
inline constexpr std::uint16_t kSst = 0x00FC;
inline constexpr std::uint16_t kContinue = 0x003C;
inline constexpr std::uint16_t kExtSst = 0x00FF;
inline constexpr std::uint16_t kIndex = 0x020B;
inline constexpr std::uint16_t kCalcMode = 0x000D;
inline constexpr std::uint16_t kCalcCount = 0x000C;
inline constexpr std::uint16_t kRefMode = 0x000F;
inline constexpr std::uint16_t kIteration = 0x0011;
inline constexpr std::uint16_t kDelta = 0x0010;
inline constexpr std::uint16_t kSaveRecalc = 0x005F;
inline constexpr std::uint16_t kPrintHeaders = 0x002A;
inline constexpr std::uint16_t kPrintGridlines = 0x002B;
inline constexpr std::uint16_t kGridSet = 0x0082;
inline constexpr std::uint16_t kGuts = 0x0080;
inline constexpr std::uint16_t kDefaultRowHeight = 0x0225;
inline constexpr std::uint16_t kWsBool = 0x0081;
inline constexpr std::uint16_t kDefColWidth = 0x0055;
inline constexpr std::uint16_t kDimensions = 0x0200;
inline constexpr std::uint16_t kRow = 0x0208;
inline constexpr std::uint16_t kLabelSst = 0x00FD;
inline constexpr std::uint16_t kNumber = 0x0203;
inline constexpr std::uint16_t kBlank = 0x0201;
inline constexpr std::uint16_t kBoolErr = 0x0205;
inline constexpr std::uint16_t kDbCell = 0x00D7;
inline constexpr std::uint16_t kWindow2 = 0x023E;

/// Largest payload of one record; longer data goes on in CONTINUE records.
inline constexpr std::size_t kMaxPayload = 8224;
/// The cell format (XF) every cell refers to: the default cell XF after the 15 style XFs.
inline constexpr std::uint16_t kDefaultCellXf = 15;
/// The first number format code a workbook defines itself (those below are Excel's built-ins).
inline constexpr std::uint16_t kFirstCustomFormat = 164;
/// Rows and columns of a BIFF8 sheet.
inline constexpr std::uint32_t kMaxRows = 65536;
inline constexpr std::uint32_t kMaxColumns = 256;
/// Longest text of a cell, in UTF-16 code units.
inline constexpr std::size_t kMaxTextUnits = 32767;

/// Substream kinds of a BOF record.
inline constexpr std::uint16_t kGlobalsSubstream = 0x0005;
inline constexpr std::uint16_t kWorksheetSubstream = 0x0010;
} // namespace biff

/// The payload of a BIFF8 BOF record opening a substream of that kind.
LeBytes bofPayload(std::uint16_t substreamKind);

/// Writes BIFF records (type, length, payload) to a sink and knows the stream position of the
/// next record, which several records refer to.
class BiffStream {
public:
    /// `startPosition` is the stream position of the first byte written.
    explicit BiffStream(ExportSink &sink, std::uint64_t startPosition = 0) : m_sink(sink), m_position(startPosition) {}

    /// Writes one record; false when the payload is too long or the sink failed.
    [[nodiscard]] bool record(std::uint16_t type, std::string_view payload);
    [[nodiscard]] bool record(std::uint16_t type, const LeBytes &payload) { return record(type, payload.data()); }

    /// Copies records kept in temporary storage as they stand.
    [[nodiscard]] bool copy(SpillBuffer &spill, std::uint64_t offset, std::uint64_t length);

    std::uint64_t position() const { return m_position; }
    /// False once any record could not be written.
    bool ok() const { return m_ok; }

private:
    ExportSink &m_sink;
    std::uint64_t m_position;
    bool m_ok = true;
};

} // namespace vellum::xls

#include "export/xls/workbook.h"

#include "export/xls/CompoundFileWriter.h"
#include "export/xls/sheetNames.h"
#include "export/xls/utf16.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace vellum::xls {

namespace {

constexpr std::uint16_t kCodepageUtf16 = 1200;
constexpr std::size_t kStyleXfs = 15;
/// Excel expects the Workbook stream to fill at least the 4096 bytes below which a compound
/// file would keep it in the mini stream; it is padded with zeros after the last EOF.
constexpr std::uint64_t kMinWorkbookStream = CompoundFileWriter::kMiniStreamCutoff;

LeBytes u16Payload(std::uint16_t v)
{
    LeBytes b;
    b.u16(v);
    return b;
}

LeBytes fontPayload()
{
    LeBytes b;
    b.u16(200 /* 10 pt in twips */).u16(0).u16(0x7FFF).u16(400 /* normal weight */).u16(0);
    b.u8(0).u8(0).u8(0).u8(0);
    b.u8(5).u8(0).bytes("Arial", 5);
    return b;
}

/// An XF record: number format `numberFormat` (0 = general), bottom-aligned, no borders, no
/// fill. `typeAndParent` is 0xFFF5 for a style XF and 0x0001 (locked, parent style 0) for a cell
/// XF; `usedAttributes` marks which attribute groups the XF sets itself.
LeBytes xfPayload(std::uint16_t font, std::uint16_t typeAndParent, std::uint8_t usedAttributes,
                  std::uint16_t numberFormat = 0)
{
    LeBytes b;
    b.u16(font).u16(numberFormat).u16(typeAndParent).u8(0x20).u8(0).u8(0).u8(usedAttributes);
    b.u32(0).u32(0).u16(0x20C0);
    return b;
}

} // namespace

workbook::workbook() = default;
workbook::~workbook() = default;

worksheet *workbook::sheet(std::u16string_view proposed)
{
    std::u16string name = excelSheetName(proposed);
    if (name.empty()) {
        m_lastError = "A sheet needs a name.";
        return nullptr;
    }
    for (const auto &existing : m_sheets) {
        if (sameSheetName(existing->name(), name)) {
            m_lastError = "The workbook has a sheet named \"" + utf16ToUtf8(name) + "\" already.";
            return nullptr;
        }
    }
    if (m_saved) {
        m_lastError = "The workbook was saved; it takes no more sheets.";
        return nullptr;
    }
    if (m_sheets.size() >= 0xFFFF) {
        m_lastError = "The workbook has the most sheets it can hold.";
        return nullptr;
    }
    if (!closeOpenSheet())
        return nullptr;
    auto index = static_cast<std::uint16_t>(m_sheets.size());
    m_sheets.push_back(std::unique_ptr<worksheet>(new worksheet(m_strings, m_bodies, std::move(name), index)));
    return m_sheets.back().get();
}

std::uint16_t workbook::numberFormat(std::u16string_view formatCode)
{
    for (std::size_t i = 0; i < m_formatCodes.size(); ++i)
        if (m_formatCodes[i] == formatCode)
            return static_cast<std::uint16_t>(biff::kDefaultCellXf + 1 + i);
    m_formatCodes.emplace_back(formatCode);
    return static_cast<std::uint16_t>(biff::kDefaultCellXf + m_formatCodes.size());
}

worksheet *workbook::GetSheet(std::uint16_t index) const
{
    return index < m_sheets.size() ? m_sheets[index].get() : nullptr;
}

bool workbook::closeOpenSheet()
{
    if (m_broken)
        return false;
    if (!m_sheets.empty() && !m_sheets.back()->close()) {
        m_broken = true;
        m_lastError = "Unable to keep the finished sheet in temporary storage: " + std::string(std::strerror(errno));
        return false;
    }
    return true;
}

std::size_t workbook::memoryUsage() const
{
    std::size_t bytes = m_strings.memoryUsage();
    for (const auto &s : m_sheets)
        bytes += s->m_cells.capacity() * sizeof(worksheet::Cell) + s->m_dbCells.capacity() * 4 + sizeof(worksheet);
    return bytes;
}

bool workbook::writeGlobals(BiffStream &out, const std::vector<std::uint64_t> &sheetStarts)
{
    bool ok = out.record(biff::kBof, bofPayload(biff::kGlobalsSubstream)) &&
              out.record(biff::kInterfaceHdr, u16Payload(kCodepageUtf16)) && out.record(biff::kMms, u16Payload(0)) &&
              out.record(biff::kInterfaceEnd, std::string_view()) &&
              out.record(biff::kCodepage, u16Payload(kCodepageUtf16)) &&
              out.record(biff::kWindowProtect, u16Payload(0)) && out.record(biff::kProtect, u16Payload(0)) &&
              out.record(biff::kPassword, u16Payload(0));
    LeBytes window1;
    window1.u16(0).u16(0).u16(15000).u16(9000).u16(0x0038).u16(0).u16(0).u16(1).u16(600);
    ok = ok && out.record(biff::kWindow1, window1) && out.record(biff::kBackup, u16Payload(0)) &&
         out.record(biff::kHideObj, u16Payload(0)) && out.record(biff::kDateMode, u16Payload(0)) &&
         out.record(biff::kPrecision, u16Payload(1)) && out.record(biff::kBookBool, u16Payload(0));
    // Four fonts: Excel's font table has no entry 4, and readers expect the first four.
    for (int i = 0; ok && i < 4; ++i)
        ok = out.record(biff::kFont, fontPayload());
    // The number formats asked for, numbered from the first code Excel leaves to workbooks.
    for (std::size_t i = 0; ok && i < m_formatCodes.size(); ++i) {
        const std::u16string &code = m_formatCodes[i];
        bool wide = false;
        for (char16_t u : code)
            wide = wide || u > 0xFF;
        LeBytes format;
        format.u16(static_cast<std::uint16_t>(biff::kFirstCustomFormat + i))
            .u16(static_cast<std::uint16_t>(code.size()))
            .u8(wide ? 1 : 0)
            .units(code.data(), code.size(), wide);
        ok = out.record(biff::kFormat, format);
    }
    // The 15 style XFs Excel expects (0 is "Normal"), then the one cell XF that every cell uses.
    static const std::uint16_t styleFonts[kStyleXfs] = {0, 1, 1, 2, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    for (std::size_t i = 0; ok && i < kStyleXfs; ++i)
        ok = out.record(biff::kXf, xfPayload(styleFonts[i], 0xFFF5, i == 0 ? 0x00 : 0xF4));
    ok = ok && out.record(biff::kXf, xfPayload(0, 0x0001, 0x00));
    // One cell XF per number format (0x04: the XF sets its number format itself).
    for (std::size_t i = 0; ok && i < m_formatCodes.size(); ++i)
        ok =
            out.record(biff::kXf, xfPayload(0, 0x0001, 0x04, static_cast<std::uint16_t>(biff::kFirstCustomFormat + i)));
    ok = ok && out.record(biff::kStyle, LeBytes().u16(0x8000).u8(0).u8(0xFF));
    for (std::size_t i = 0; ok && i < m_sheets.size(); ++i) {
        const std::u16string &name = m_sheets[i]->name();
        bool wide = false;
        for (char16_t u : name)
            wide = wide || u > 0xFF;
        LeBytes bound;
        bound.u32(static_cast<std::uint32_t>(sheetStarts[i]))
            .u8(0)
            .u8(0)
            .u8(static_cast<std::uint8_t>(name.size()))
            .u8(wide ? 1 : 0);
        for (char16_t u : name) {
            if (wide)
                bound.u16(u);
            else
                bound.u8(static_cast<std::uint8_t>(u));
        }
        ok = out.record(biff::kBoundSheet, bound);
    }
    ok = ok && m_strings.write(out);
    return ok && out.record(biff::kEof, std::string_view());
}

bool workbook::writeWorkbookStream(ExportSink &sink, const StreamLayout &layout)
{
    std::vector<std::uint64_t> starts;
    std::uint64_t at = layout.globalsSize;
    for (const auto &s : m_sheets) {
        starts.push_back(at);
        at += s->closedSize();
    }
    BiffStream out(sink);
    if (!writeGlobals(out, starts) || out.position() != layout.globalsSize)
        return false;
    for (std::size_t i = 0; i < m_sheets.size(); ++i)
        if (out.position() != starts[i] || !m_sheets[i]->writeClosed(out))
            return false;
    const std::string padding(layout.streamSize - at, '\0');
    return sink.write(padding);
}

bool workbook::layoutStream(StreamLayout &layout)
{
    if (!closeOpenSheet())
        return false;
    if (!m_strings.ok()) {
        m_lastError = "Unable to keep the shared strings in temporary storage.";
        return false;
    }
    if (m_sheets.empty()) {
        m_lastError = "The workbook has no sheet.";
        return false;
    }
    // The globals hold the sheets' stream positions, so they are measured first.
    CountingSink counter;
    BiffStream measure(counter);
    if (!writeGlobals(measure, std::vector<std::uint64_t>(m_sheets.size(), 0))) {
        m_lastError = "The workbook's global records could not be written.";
        return false;
    }
    layout.globalsSize = counter.count();
    std::uint64_t total = layout.globalsSize;
    for (const auto &s : m_sheets)
        total += s->closedSize();
    if (total > 0xFFFFFFFFu) {
        m_lastError = "The workbook is larger than 4 GB.";
        return false;
    }
    layout.streamSize = std::max(total, kMinWorkbookStream);
    return true;
}

bool workbook::DumpStream(ExportSink &sink)
{
    StreamLayout layout;
    if (!layoutStream(layout))
        return false;
    if (!writeWorkbookStream(sink, layout)) {
        m_lastError = "Unable to write the workbook stream.";
        return false;
    }
    return true;
}

bool workbook::Dump(ExportSink &sink)
{
    StreamLayout layout;
    if (!layoutStream(layout))
        return false;
    CompoundFileWriter file;
    bool ok = file.addStream(u"Workbook", layout.streamSize, [this, layout](ExportSink &out) {
        return writeWorkbookStream(out, layout);
    }) && file.addStream(u"\x05SummaryInformation", summaryInformationStream());
    if (!ok || !file.write(sink)) {
        m_lastError = "Unable to write the workbook file.";
        return false;
    }
    m_saved = true;
    return true;
}

bool workbook::Dump(const std::string &path)
{
    vellum::FileSink sink;
    if (!sink.open(path)) {
        m_lastError = "Unable to create " + path + ": " + sink.errorText();
        return false;
    }
    // Nothing is left under the name unless the whole workbook reached the disk.
    if (!Dump(sink)) {
        sink.discard();
        if (!sink.errorText().empty())
            m_lastError = "Unable to write " + path + ": " + sink.errorText();
        return false;
    }
    if (!sink.close()) {
        m_lastError = "Unable to write " + path + ": " + sink.errorText();
        return false;
    }
    return true;
}

std::string summaryInformationStream()
{
    // Property set stream: header, one section (FMTID_SummaryInformation), two properties:
    // the codepage (VT_I2) and the application name (VT_LPSTR).
    static const unsigned char fmtid[16] = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                            0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
    const char appName[] = "Vellum"; // 7 bytes with the NUL, padded to 8
    LeBytes section;
    section.u32(48).u32(2);
    section.u32(0x0001).u32(24);
    section.u32(0x0012).u32(32);
    section.u16(0x0002).u16(0).u16(1252).u16(0);
    section.u16(0x001E).u16(0).u32(sizeof appName).bytes(appName, sizeof appName).zeros(8 - sizeof appName);
    LeBytes stream;
    stream.u16(0xFFFE).u16(0).u32(0x00020006).zeros(16).u32(1).bytes(fmtid, 16).u32(48);
    stream.bytes(section.data().data(), section.size());
    return std::string(stream.data());
}

} // namespace vellum::xls

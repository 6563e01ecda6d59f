#include "export/xls/BiffStream.h"

namespace vellum::xls {

LeBytes bofPayload(std::uint16_t substreamKind)
{
    LeBytes b;
    b.u16(0x0600).u16(substreamKind).u16(0x0DBB).u16(0x07CC).u32(0).u32(0x00000006);
    return b;
}

bool BiffStream::record(std::uint16_t type, std::string_view payload)
{
    if (!m_ok || payload.size() > biff::kMaxPayload) {
        m_ok = false;
        return false;
    }
    LeBytes header;
    header.u16(type).u16(static_cast<std::uint16_t>(payload.size()));
    m_ok = m_sink.write(header.data()) && m_sink.write(payload);
    m_position += 4 + payload.size();
    return m_ok;
}

bool BiffStream::copy(SpillBuffer &spill, std::uint64_t offset, std::uint64_t length)
{
    m_ok = m_ok && spill.copyTo(m_sink, offset, length);
    m_position += length;
    return m_ok;
}

} // namespace vellum::xls

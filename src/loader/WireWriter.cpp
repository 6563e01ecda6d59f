#include "loader/WireWriter.h"

#include <cstring>

namespace vellum {

void WireWriter::putCopied(const void *data, std::size_t length)
{
    if (m_pieces.empty() || m_pieces.back().borrowed)
        m_pieces.emplace_back();
    m_pieces.back().copied.append(static_cast<const char *>(data), length);
    m_size += length;
}

void WireWriter::putString(std::string_view text)
{
    putU32(static_cast<std::uint32_t>(text.size()));
    putCopied(text.data(), text.size());
}

void WireWriter::putOptionalString(const std::optional<std::string> &text)
{
    putBool(text.has_value());
    if (text)
        putString(*text);
}

void WireWriter::putBorrowed(const void *data, std::size_t length)
{
    if (length == 0)
        return;
    Piece piece;
    piece.borrowed = data;
    piece.borrowedLength = length;
    m_pieces.push_back(std::move(piece));
    m_size += length;
}

bool WireWriter::send(std::uint8_t type, const ByteOutput &output) const
{
    char header[1 + sizeof(std::uint64_t)];
    header[0] = static_cast<char>(type);
    const std::uint64_t length = m_size;
    std::memcpy(header + 1, &length, sizeof length);
    if (!output(header, sizeof header))
        return false;
    for (const Piece &piece : m_pieces) {
        const bool ok = piece.borrowed ? output(piece.borrowed, piece.borrowedLength)
                                       : output(piece.copied.data(), piece.copied.size());
        if (!ok)
            return false;
    }
    return true;
}

} // namespace vellum

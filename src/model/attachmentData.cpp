#include "model/attachmentData.h"
#include "util/littleEndian.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace vellum {
namespace {

constexpr std::size_t kWrapperSize = 8;
constexpr std::uint32_t kPlain = 0;
constexpr std::uint32_t kCompressed = 1;
/// zlib cannot expand data more than about 1032 times: a declared length beyond that is false.
constexpr std::uint64_t kMaxInflateRatio = 1032;

/// Inflates a zlib stream into exactly `length` bytes; false when it ends early or is damaged.
bool inflateExactly(std::span<const std::uint8_t> source, std::vector<std::uint8_t> &out, std::size_t length)
{
    out.resize(length);
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return false;
    std::size_t produced = 0;
    std::size_t consumed = 0;
    int status = Z_OK;
    // zlib counts in 32 bits: feed it in slices.
    constexpr std::size_t kSlice = 1u << 30;
    while (produced < length && status == Z_OK) {
        stream.next_in = const_cast<Bytef *>(source.data() + consumed);
        stream.avail_in = static_cast<uInt>(std::min(kSlice, source.size() - consumed));
        stream.next_out = out.data() + produced;
        stream.avail_out = static_cast<uInt>(std::min(kSlice, length - produced));
        const uInt inBefore = stream.avail_in;
        const uInt outBefore = stream.avail_out;
        status = inflate(&stream, Z_NO_FLUSH);
        consumed += inBefore - stream.avail_in;
        produced += outBefore - stream.avail_out;
        if (status == Z_BUF_ERROR && inBefore == stream.avail_in && outBefore == stream.avail_out)
            break; // no progress: the input ran out
        if (status == Z_BUF_ERROR)
            status = Z_OK;
    }
    inflateEnd(&stream);
    return produced == length && (status == Z_OK || status == Z_STREAM_END);
}

} // namespace

std::optional<std::vector<std::uint8_t>> decodeAttachmentData(std::span<const std::uint8_t> stored)
{
    if (stored.size() < kWrapperSize)
        return std::nullopt;
    const std::uint32_t kind = readLe32(stored.data());
    const std::uint32_t contentLength = readLe32(stored.data() + 4);
    const std::span<const std::uint8_t> body = stored.subspan(kWrapperSize);
    std::vector<std::uint8_t> content;
    if (kind == kPlain) {
        if (body.size() < contentLength)
            return std::nullopt;
        content.assign(body.begin(), body.begin() + contentLength);
    } else if (kind == kCompressed) {
        if (contentLength > kMaxInflateRatio * body.size() + 64 ||
            contentLength > std::numeric_limits<std::size_t>::max() / 2)
            return std::nullopt;
        if (!inflateExactly(body, content, contentLength))
            return std::nullopt;
    } else {
        return std::nullopt;
    }
    // The content's header: its own length (counting these 4 bytes), then what describes the file.
    if (content.size() < 4)
        return std::nullopt;
    const std::uint32_t headerLength = readLe32(content.data());
    if (headerLength < 4 || headerLength > content.size())
        return std::nullopt;
    content.erase(content.begin(), content.begin() + headerLength);
    return content;
}

} // namespace vellum

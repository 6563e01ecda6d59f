#include "model/ole/inflateRaw.h"

#include <zlib.h>

#include <cstdint>

namespace vellum {

int inflateRaw(unsigned char *dest, std::size_t *destLength, const unsigned char *source, std::size_t sourceLength)
{
    if (!destLength || *destLength > UINT32_MAX || sourceLength > UINT32_MAX)
        return Z_BUF_ERROR;
    z_stream stream{};
    stream.next_in = const_cast<Bytef *>(source);
    stream.avail_in = static_cast<uInt>(sourceLength);
    stream.next_out = dest;
    stream.avail_out = static_cast<uInt>(*destLength);
    int result = inflateInit2(&stream, -15);
    if (result != Z_OK)
        return result;
    result = inflate(&stream, Z_FINISH);
    if (result == Z_STREAM_END) {
        *destLength = stream.total_out;
        return inflateEnd(&stream);
    }
    inflateEnd(&stream);
    if (result == Z_NEED_DICT || (result == Z_BUF_ERROR && stream.avail_in == 0))
        return Z_DATA_ERROR;
    return result;
}

} // namespace vellum

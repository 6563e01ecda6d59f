#include "mdb/longValues.h"
#include "util/littleEndian.h"

#include <sys/stat.h>

#include <cstring>
#include <limits>
#include <unordered_set>

namespace vellum {
namespace {

constexpr std::size_t kHeaderSize = 12;
constexpr std::uint32_t kInline = 0x80000000u;
constexpr std::uint32_t kSinglePage = 0x40000000u;
constexpr std::uint32_t kLengthMask = 0x3FFFFFFFu;

/// The bytes of row `pgRow` (page << 8 | row) in libmdb's second page buffer.
std::optional<std::span<const unsigned char>> rowAt(MdbHandle *mdb, std::uint32_t pgRow)
{
    void *page = nullptr;
    int offset = 0;
    size_t length = 0;
    if (mdb_find_pg_row(mdb, static_cast<int>(pgRow), &page, &offset, &length) != 0 || !page || offset < 0)
        return std::nullopt;
    if (static_cast<std::size_t>(offset) + length > static_cast<std::size_t>(mdb->fmt->pg_size))
        return std::nullopt;
    return std::span<const unsigned char>(static_cast<const unsigned char *>(page) + offset, length);
}

} // namespace

std::optional<std::string> readLongValue(MdbHandle *mdb, std::span<const unsigned char> field, std::uint64_t limit)
{
    if (field.size() < kHeaderSize)
        return std::nullopt;
    const std::uint32_t header = readLe32(field.data());
    if (header & kInline)
        return std::string(reinterpret_cast<const char *>(field.data()) + kHeaderSize, field.size() - kHeaderSize);
    const std::uint32_t length = header & kLengthMask;
    if (length > limit)
        return std::nullopt;
    std::uint32_t pgRow = readLe32(field.data() + 4);
    std::string out;
    if (header & kSinglePage) {
        const auto row = rowAt(mdb, pgRow);
        if (!row || row->size() < length)
            return std::nullopt;
        out.assign(reinterpret_cast<const char *>(row->data()), length);
        return out;
    }
    if (header & ~kLengthMask)
        return std::nullopt; // a flag combination no writer makes
    out.reserve(length);
    // No chain has more links than the file has pages: a longer one is damaged even when it
    // visits no row twice (rows that hold no data would otherwise keep it going).
    const std::uint64_t pageSize = mdb->fmt->pg_size > 0 ? static_cast<std::uint64_t>(mdb->fmt->pg_size) : 1;
    const std::uint64_t maxLinks = limit / pageSize + 1;
    std::unordered_set<std::uint32_t> visited;
    while (out.size() < length) {
        if (pgRow == 0 || visited.size() >= maxLinks || !visited.insert(pgRow).second)
            return std::nullopt; // the chain ends early, loops or is longer than the file
        const auto row = rowAt(mdb, pgRow);
        if (!row || row->size() < 4)
            return std::nullopt;
        pgRow = readLe32(row->data());
        const std::size_t take = std::min<std::size_t>(row->size() - 4, length - out.size());
        out.append(reinterpret_cast<const char *>(row->data()) + 4, take);
    }
    return out;
}

std::uint64_t longValueLimit(MdbHandle *mdb)
{
    struct stat st {};
    if (mdb->f && mdb->f->stream && ::fstat(fileno(mdb->f->stream), &st) == 0 && st.st_size > 0)
        return static_cast<std::uint64_t>(st.st_size);
    return std::numeric_limits<std::uint32_t>::max();
}

} // namespace vellum

#include "model/ole/poleIO.h"

#include <algorithm>
#include <cstring>

namespace vellum::POLE {

namespace {

constexpr unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t kCacheCapacity = 4096;

std::uint16_t readU16(const unsigned char *p)
{
    return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}

std::uint32_t readU32(const unsigned char *p)
{
    return p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

} // namespace

// ---- Header ----

Header::Header()
    : b_shift(9), s_shift(6), num_bat(0), dirent_start(0), threshold(4096), sbat_start(0), num_sbat(0), mbat_start(0),
      num_mbat(0)
{
    std::memcpy(id, kSignature, sizeof id);
    std::fill(std::begin(bat_blocks), std::end(bat_blocks), AllocTable::Avail);
}

void Header::load(const unsigned char *buffer)
{
    std::memcpy(id, buffer, sizeof id);
    b_shift = readU16(buffer + 30);
    s_shift = readU16(buffer + 32);
    num_bat = readU32(buffer + 44);
    dirent_start = readU32(buffer + 48);
    threshold = readU32(buffer + 56);
    sbat_start = readU32(buffer + 60);
    num_sbat = readU32(buffer + 64);
    mbat_start = readU32(buffer + 68);
    num_mbat = readU32(buffer + 72);
    for (unsigned i = 0; i < kBatInHeader; ++i)
        bat_blocks[i] = readU32(buffer + 76 + 4 * i);
}

bool Header::hasSignature() const
{
    return std::memcmp(id, kSignature, sizeof id) == 0;
}

bool Header::valid() const
{
    return threshold == 4096 && num_bat != 0 && !(num_bat < kBatInHeader && num_mbat != 0) && s_shift <= b_shift &&
           b_shift >= 7 && b_shift <= 30;
}

// ---- AllocTable ----

void AllocTable::load(const unsigned char *buffer, std::size_t length)
{
    m_data.resize(length / 4);
    for (std::size_t i = 0; i < m_data.size(); ++i)
        m_data[i] = readU32(buffer + 4 * i);
}

std::vector<std::uint32_t> AllocTable::follow(std::uint32_t start, std::uint64_t usableBlocks) const
{
    std::vector<std::uint32_t> chain;
    std::vector<bool> seen(m_data.size(), false);
    for (std::uint32_t block = start; block < m_data.size() && block < usableBlocks && block < MetaBat;
         block = m_data[block]) {
        if (seen[block])
            break;
        seen[block] = true;
        chain.push_back(block);
    }
    return chain;
}

// ---- DirTree ----

DirTree::DirTree()
{
    DirEntry root;
    root.valid = true;
    root.name = "Root Entry";
    root.dir = true;
    root.start = AllocTable::Eof;
    m_entries.push_back(root);
}

void DirTree::load(const unsigned char *buffer, std::size_t length)
{
    m_entries.clear();
    const std::size_t records = length / kRecordSize;
    m_entries.reserve(records);
    for (std::size_t r = 0; r < records; ++r) {
        const unsigned char *record = buffer + r * kRecordSize;
        const unsigned nameLength = readU16(record + 0x40);
        const unsigned type = record[0x42];
        DirEntry e;
        const unsigned limit = std::min(nameLength, 64u);
        for (unsigned j = 0; j + 2 <= limit; j += 2) {
            if (readU16(record + j) == 0)
                break;
            e.name += static_cast<char>(record[j]);
        }
        // Special streams start with a control character (0x01 CompObj, 0x05 SummaryInformation).
        if (record[0] < 32 && !e.name.empty())
            e.name.erase(0, 1);
        e.dir = type != 2;
        e.valid = (type == 1 || type == 2 || type == 5) && nameLength != 0;
        e.prev = readU32(record + 0x44);
        e.next = readU32(record + 0x48);
        e.child = readU32(record + 0x4C);
        e.start = readU32(record + 0x74);
        e.size = readU32(record + 0x78);
        m_entries.push_back(std::move(e));
    }
}

const DirEntry *DirTree::entry(std::size_t index) const
{
    return index < m_entries.size() ? &m_entries[index] : nullptr;
}

const DirEntry *DirTree::entry(const std::string &path) const
{
    const long index = indexOf(path);
    return index < 0 ? nullptr : &m_entries[static_cast<std::size_t>(index)];
}

long DirTree::indexOf(const std::string &path) const
{
    if (path.empty() || m_entries.empty())
        return -1;
    long index = 0;
    std::size_t begin = 0;
    while (begin <= path.size()) {
        std::size_t end = path.find('/', begin);
        if (end == std::string::npos)
            end = path.size();
        if (end > begin) {
            index = find_child(static_cast<std::size_t>(index), path.substr(begin, end - begin));
            if (index < 0)
                return -1;
        }
        begin = end + 1;
    }
    return index;
}

std::vector<std::size_t> DirTree::children(std::size_t index) const
{
    std::vector<std::size_t> result;
    if (index >= m_entries.size() || !m_entries[index].valid)
        return result;
    const std::uint32_t child = m_entries[index].child;
    if (child == 0 || child >= m_entries.size())
        return result;
    // The siblings form a binary tree through prev and next; a damaged file may make it cyclic.
    std::vector<bool> seen(m_entries.size(), false);
    std::vector<std::size_t> pending{child};
    while (!pending.empty()) {
        const std::size_t i = pending.back();
        pending.pop_back();
        if (seen[i])
            continue;
        seen[i] = true;
        result.push_back(i);
        const DirEntry &e = m_entries[i];
        if (e.prev != 0 && e.prev < m_entries.size())
            pending.push_back(e.prev);
        if (e.next != 0 && e.next < m_entries.size())
            pending.push_back(e.next); // searched before prev
    }
    return result;
}

long DirTree::find_child(std::size_t index, const std::string &name) const
{
    for (const std::size_t i : children(index))
        if (m_entries[i].name == name)
            return static_cast<long>(i);
    return -1;
}

// ---- StorageIO ----

StorageIO::StorageIO(const std::string &fileName) : m_fileName(fileName) {}

StorageIO::StorageIO(const unsigned char *data, std::size_t size) : m_memory(data), m_memorySize(size) {}

StorageIO::~StorageIO()
{
    close();
}

void StorageIO::close()
{
    if (m_file) {
        std::fclose(m_file);
        m_file = nullptr;
    }
}

std::size_t StorageIO::readAt(std::uint64_t offset, unsigned char *data, std::size_t length)
{
    if (m_memory) {
        if (offset >= m_memorySize || length == 0)
            return 0;
        const std::size_t available = std::min<std::uint64_t>(length, m_memorySize - offset);
        std::memcpy(data, m_memory + offset, available);
        return available;
    }
    if (!m_file || offset >= filesize || length == 0)
        return 0;
    if (fseeko(m_file, static_cast<off_t>(offset), SEEK_SET) != 0)
        return 0;
    return std::fread(data, 1, length, m_file);
}

std::uint64_t StorageIO::usableBigBlocks() const
{
    const std::uint64_t size = bbat.blockSize;
    return filesize > size ? (filesize - size + size - 1) / size : 0;
}

std::vector<std::uint32_t> StorageIO::tableBlocks()
{
    // No more table blocks than blocks in the file: each must be a distinct block of it.
    const std::uint64_t limit = std::min<std::uint64_t>(header.num_bat, usableBigBlocks());
    std::vector<std::uint32_t> blocks;
    for (unsigned i = 0; i < Header::kBatInHeader && blocks.size() < limit; ++i)
        blocks.push_back(header.bat_blocks[i]);
    if (blocks.size() >= limit)
        return blocks;
    // The meta allocation table: each block lists (block size / 4 - 1) table blocks, then the
    // number of the next meta block. The walk ends at the file's end and on a repeated block.
    const std::size_t perBlock = bbat.blockSize / 4 - 1;
    std::vector<unsigned char> buffer(bbat.blockSize);
    std::vector<std::uint32_t> visited;
    std::uint32_t block = header.mbat_start;
    for (std::uint32_t k = 0; k < header.num_mbat && blocks.size() < limit; ++k) {
        if (block >= usableBigBlocks() || std::find(visited.begin(), visited.end(), block) != visited.end())
            break;
        visited.push_back(block);
        std::fill(buffer.begin(), buffer.end(), 0xFF);
        if (readBlockPart(false, block, 0, buffer.data(), buffer.size()) == 0)
            break;
        for (std::size_t i = 0; i < perBlock && blocks.size() < limit; ++i)
            blocks.push_back(readU32(buffer.data() + 4 * i));
        block = readU32(buffer.data() + 4 * perBlock);
    }
    return blocks;
}

void StorageIO::load()
{
    result = Storage::OpenFailed;
    close();
    if (m_memory) {
        filesize = m_memorySize;
    } else {
        m_file = std::fopen(m_fileName.c_str(), "rb");
        if (!m_file)
            return;
        if (fseeko(m_file, 0, SEEK_END) != 0) {
            close();
            return;
        }
        const off_t end = ftello(m_file);
        filesize = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    }

    unsigned char buffer[Header::kHeaderSize] = {};
    readAt(0, buffer, sizeof buffer);
    header.load(buffer);
    if (!header.hasSignature()) {
        result = Storage::NotOLE;
        return;
    }
    if (!header.valid()) {
        result = Storage::BadOLE;
        return;
    }
    bbat.blockSize = std::size_t{1} << header.b_shift;
    sbat.blockSize = std::size_t{1} << header.s_shift;

    // Parts of a table the file does not hold read as free blocks, parts of the directory as
    // empty records.
    const auto loadChain = [this](const std::vector<std::uint32_t> &blocks, unsigned char fill) {
        std::vector<unsigned char> data(blocks.size() * bbat.blockSize, fill);
        loadBigBlocks(blocks, data.data(), data.size());
        return data;
    };
    const std::uint64_t usable = usableBigBlocks();
    const auto bat = loadChain(tableBlocks(), 0xFF);
    bbat.load(bat.data(), bat.size());
    const auto sbatData = loadChain(bbat.follow(header.sbat_start, usable), 0xFF);
    sbat.load(sbatData.data(), sbatData.size());
    const auto dir = loadChain(bbat.follow(header.dirent_start, usable), 0);
    dirtree.load(dir.data(), dir.size());
    sb_blocks.clear();
    if (const DirEntry *root = dirtree.entry(std::size_t{0}))
        sb_blocks = bbat.follow(root->start, usable);
    result = Storage::Ok;
}

std::size_t StorageIO::loadBigBlocks(const std::vector<std::uint32_t> &blocks, unsigned char *data,
                                     std::size_t maxLength)
{
    std::size_t total = 0;
    for (const std::uint32_t block : blocks) {
        if (total >= maxLength)
            break;
        const std::size_t want = std::min(bbat.blockSize, maxLength - total);
        const std::size_t got = readBlockPart(false, block, 0, data + total, want);
        total += got;
        if (got < want)
            break;
    }
    return total;
}

std::size_t StorageIO::readBlockPart(bool small, std::uint32_t block, std::size_t offset, unsigned char *data,
                                     std::size_t length)
{
    const std::uint64_t big = bbat.blockSize;
    if (!small)
        return readAt((static_cast<std::uint64_t>(block) + 1) * big + offset, data, std::min(length, big - offset));
    const std::uint64_t smallSize = sbat.blockSize;
    const std::uint64_t position = static_cast<std::uint64_t>(block) * smallSize + offset;
    const std::uint64_t index = position / big;
    if (index >= sb_blocks.size())
        return 0;
    length = static_cast<std::size_t>(std::min<std::uint64_t>(length, smallSize - offset));
    return readAt((static_cast<std::uint64_t>(sb_blocks[index]) + 1) * big + position % big, data, length);
}

std::unique_ptr<StreamIO> StorageIO::streamIO(const std::string &name)
{
    if (name.empty() || result != Storage::Ok)
        return nullptr;
    const DirEntry *e = dirtree.entry(name);
    if (!e || e->dir)
        return nullptr;
    auto stream = std::make_unique<StreamIO>(this, *e);
    stream->fullName = name;
    return stream;
}

// ---- StreamIO ----

StreamIO::StreamIO(StorageIO *storage, const DirEntry &e) : io(storage), entry(e), m_cache(kCacheCapacity)
{
    const bool small = entry.size < io->header.threshold;
    std::size_t blockSize;
    if (small) {
        blockSize = io->smallBlockSize();
        const std::uint64_t usable = io->sb_blocks.size() * (io->bigBlockSize() / blockSize);
        blocks = io->sbat.follow(entry.start, usable);
    } else {
        blockSize = io->bigBlockSize();
        blocks = io->bbat.follow(entry.start, io->usableBigBlocks());
    }
    // A chain too short for the stream's size means a damaged file.
    fail = static_cast<std::uint64_t>(blocks.size()) * blockSize < entry.size;
    updateCache();
    if (m_cacheSize < std::min<std::uint64_t>(kCacheCapacity, entry.size))
        fail = true;
}

void StreamIO::seek(std::uint64_t position)
{
    m_pos = position;
    eof = false;
}

std::size_t StreamIO::read(std::uint64_t position, unsigned char *data, std::size_t maxLength)
{
    if (!data || maxLength == 0 || position >= entry.size)
        return 0;
    maxLength = static_cast<std::size_t>(std::min<std::uint64_t>(maxLength, entry.size - position));
    const bool small = entry.size < io->header.threshold;
    const std::size_t blockSize = small ? io->smallBlockSize() : io->bigBlockSize();
    std::uint64_t index = position / blockSize;
    std::size_t offset = static_cast<std::size_t>(position % blockSize);
    std::size_t total = 0;
    while (total < maxLength && index < blocks.size()) {
        const std::size_t want = std::min(maxLength - total, blockSize - offset);
        const std::size_t got = io->readBlockPart(small, blocks[index], offset, data + total, want);
        total += got;
        if (got < want)
            break;
        ++index;
        offset = 0;
    }
    return total;
}

std::size_t StreamIO::read(unsigned char *data, std::size_t maxLength)
{
    const std::size_t got = read(m_pos, data, maxLength);
    m_pos += got;
    if (m_pos >= entry.size)
        eof = true;
    return got;
}

void StreamIO::updateCache()
{
    m_cachePos = m_pos - m_pos % kCacheCapacity;
    const std::uint64_t left = entry.size > m_cachePos ? entry.size - m_cachePos : 0;
    const auto want = static_cast<std::size_t>(std::min<std::uint64_t>(kCacheCapacity, left));
    m_cacheSize = read(m_cachePos, m_cache.data(), want);
}

int StreamIO::getch()
{
    if (m_pos >= entry.size) {
        eof = true;
        return -1;
    }
    if (m_pos < m_cachePos || m_pos >= m_cachePos + m_cacheSize) {
        updateCache();
        if (m_pos >= m_cachePos + m_cacheSize) {
            fail = true;
            return -1;
        }
    }
    return m_cache[static_cast<std::size_t>(m_pos++ - m_cachePos)];
}

// ---- Storage ----

Storage::Storage(const std::string &fileName) : m_io(std::make_unique<StorageIO>(fileName)) {}

Storage::Storage(const unsigned char *data, std::size_t size) : m_io(std::make_unique<StorageIO>(data, size)) {}

Storage::~Storage() = default;

bool Storage::open()
{
    m_io->load();
    return m_io->result == Ok;
}

void Storage::close()
{
    m_io->close();
}

int Storage::result() const
{
    return m_io->result;
}

std::vector<std::string> Storage::entries(const std::string &path) const
{
    std::vector<std::string> names;
    if (m_io->result != Ok)
        return names;
    const DirEntry *e = m_io->dirtree.entry(path);
    if (!e || !e->dir)
        return names;
    const auto index = static_cast<std::size_t>(e - m_io->dirtree.entry(std::size_t{0}));
    for (const std::size_t child : m_io->dirtree.children(index))
        if (const DirEntry *c = m_io->dirtree.entry(child); c->valid)
            names.push_back(c->name);
    return names;
}

bool Storage::isDirectory(const std::string &name) const
{
    if (m_io->result != Ok)
        return false;
    const DirEntry *e = m_io->dirtree.entry(name);
    return e && e->dir;
}

// ---- Stream ----

Stream::Stream(Storage *storage, const std::string &name)
    : m_io(storage && storage->io() ? storage->io()->streamIO(name) : nullptr)
{
}

Stream::~Stream() = default;

std::string Stream::fullName() const
{
    return m_io ? m_io->fullName : std::string();
}

std::uint64_t Stream::size() const
{
    return m_io ? m_io->size() : 0;
}

std::uint64_t Stream::tell() const
{
    return m_io ? m_io->tell() : 0;
}

void Stream::seek(std::uint64_t position)
{
    if (m_io)
        m_io->seek(position);
}

std::size_t Stream::read(unsigned char *data, std::size_t maxLength)
{
    return m_io ? m_io->read(data, maxLength) : 0;
}

int Stream::getch()
{
    return m_io ? m_io->getch() : -1;
}

bool Stream::eof() const
{
    return !m_io || m_io->eof;
}

bool Stream::fail() const
{
    return !m_io || m_io->fail;
}

} // namespace vellum::POLE

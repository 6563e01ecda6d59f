#pragma once

#include "model/ole/pole.h"

#include <cstdio>

namespace vellum::POLE {

/// The first 512 bytes of a compound document.
class Header {
public:
    static constexpr unsigned kHeaderSize = 512;
    static constexpr unsigned kBatInHeader = 109;

    Header();
    /// Reads the fields from the first 512 bytes.
    void load(const unsigned char *buffer);
    /// True when the signature is D0 CF 11 E0 A1 B1 1A E1.
    bool hasSignature() const;
    /// Threshold 4096, at least one table block, no meta table under 109 table blocks, small
    /// blocks no bigger than big ones, big block shift between 7 and 30.
    bool valid() const;

    unsigned char id[8];
    unsigned b_shift;
    unsigned s_shift;
    std::uint32_t num_bat;
    std::uint32_t dirent_start;
    std::uint32_t threshold;
    std::uint32_t sbat_start;
    std::uint32_t num_sbat;
    std::uint32_t mbat_start;
    std::uint32_t num_mbat;
    std::uint32_t bat_blocks[kBatInHeader];
};

/// A block allocation table: one next-block entry per block.
class AllocTable {
public:
    static constexpr std::uint32_t Avail = 0xFFFFFFFF;
    static constexpr std::uint32_t Eof = 0xFFFFFFFE;
    static constexpr std::uint32_t Bat = 0xFFFFFFFD;
    static constexpr std::uint32_t MetaBat = 0xFFFFFFFC;

    std::size_t count() const { return m_data.size(); }
    std::uint32_t operator[](std::size_t index) const { return m_data[index]; }
    /// Reads 4-byte little-endian entries from a buffer.
    void load(const unsigned char *buffer, std::size_t length);
    /// The chain of blocks from `start`. It ends at an end-of-chain or other special value, at a
    /// block beyond the table or not below `usableBlocks` (outside the file), and at a block
    /// seen before, so a damaged, cyclic chain ends after at most count() steps.
    std::vector<std::uint32_t> follow(std::uint32_t start, std::uint64_t usableBlocks = UINT64_MAX) const;

    std::size_t blockSize = 512;

private:
    std::vector<std::uint32_t> m_data;
};

/// One 128-byte directory record.
struct DirEntry {
    static constexpr std::uint32_t End = 0xFFFFFFFF;

    bool valid = false;
    std::string name;
    bool dir = false;
    std::uint32_t size = 0;
    std::uint32_t start = 0;
    std::uint32_t prev = End;
    std::uint32_t next = End;
    std::uint32_t child = End;
};

/// All directory records in file order; index 0 is the root.
class DirTree {
public:
    static constexpr std::size_t kRecordSize = 128;

    DirTree();
    /// Replaces the entries with the records of a buffer (invalid records stay, so that
    /// indexes match the file).
    void load(const unsigned char *buffer, std::size_t length);
    std::size_t entryCount() const { return m_entries.size(); }
    const DirEntry *entry(std::size_t index) const;
    /// The entry of a path ("/", "Package", "/Storage/Stream"); nullptr when a part is missing.
    const DirEntry *entry(const std::string &path) const;
    /// Index of the child named `name` of entry `index`, or -1.
    long find_child(std::size_t index, const std::string &name) const;
    /// Indexes of the children of entry `index`, in tree order.
    std::vector<std::size_t> children(std::size_t index) const;

private:
    long indexOf(const std::string &path) const;
    std::vector<DirEntry> m_entries;
};

/// The loaded structure of a compound document and its block reading.
class StorageIO {
public:
    explicit StorageIO(const std::string &fileName);
    /// Reads a document held in memory (not copied: it must outlive this object).
    StorageIO(const unsigned char *data, std::size_t size);
    ~StorageIO();
    StorageIO(const StorageIO &) = delete;
    StorageIO &operator=(const StorageIO &) = delete;

    void load();
    void close();
    /// A new stream for a path naming a stream; nullptr for "", a missing name or a storage.
    std::unique_ptr<StreamIO> streamIO(const std::string &name);

    /// Copies big blocks one after the other into `data` (at most maxLength bytes), block b
    /// from file offset (b + 1) × block size; stops at the first block the file does not fully
    /// hold. Answers the bytes copied.
    std::size_t loadBigBlocks(const std::vector<std::uint32_t> &blocks, unsigned char *data, std::size_t maxLength);
    /// Copies `length` bytes from `offset` within one big or small block; a small block lies
    /// inside the root's chain of big blocks. Answers the bytes the file held.
    std::size_t readBlockPart(bool small, std::uint32_t block, std::size_t offset, unsigned char *data,
                              std::size_t length);
    std::size_t bigBlockSize() const { return bbat.blockSize; }
    std::size_t smallBlockSize() const { return sbat.blockSize; }
    /// Big blocks that begin inside the file.
    std::uint64_t usableBigBlocks() const;

    int result = Storage::OpenFailed;
    Header header;
    DirTree dirtree;
    AllocTable bbat;
    AllocTable sbat;
    std::vector<std::uint32_t> sb_blocks; ///< the big blocks holding the small blocks
    std::uint64_t filesize = 0;

private:
    /// Reads bytes at a file offset; answers how many were there.
    std::size_t readAt(std::uint64_t offset, unsigned char *data, std::size_t length);
    std::vector<std::uint32_t> tableBlocks();

    std::string m_fileName;
    std::FILE *m_file = nullptr;
    const unsigned char *m_memory = nullptr; ///< the document, when read from memory
    std::size_t m_memorySize = 0;
};

/// One open stream: its entry, block list, position and a 4096-byte read cache.
class StreamIO {
public:
    StreamIO(StorageIO *io, const DirEntry &entry);

    std::uint64_t size() const { return entry.size; }
    std::uint64_t tell() const { return m_pos; }
    void seek(std::uint64_t position);
    /// Reads at a position of the stream, never past its size; answers the bytes copied.
    std::size_t read(std::uint64_t position, unsigned char *data, std::size_t maxLength);
    /// Reads at the current position and moves it on.
    std::size_t read(unsigned char *data, std::size_t maxLength);
    int getch();

    StorageIO *io;
    DirEntry entry;
    std::string fullName;
    bool eof = false;
    bool fail = false;
    std::vector<std::uint32_t> blocks;

private:
    void updateCache();

    std::uint64_t m_pos = 0;
    std::uint64_t m_cachePos = 0;
    std::size_t m_cacheSize = 4096;
    std::vector<unsigned char> m_cache;
};

} // namespace vellum::POLE

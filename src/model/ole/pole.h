#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vellum::POLE {

class StorageIO;
class StreamIO;

/// A compound document (Compound File Binary format) opened read-only: a small file system of
/// storages and streams inside one file.
class Storage {
public:
    /// Load results.
    enum Result { Ok = 0, OpenFailed = 1, NotOLE = 2, BadOLE = 3 };

    explicit Storage(const std::string &fileName);
    /// A document held in memory, read in place (it must outlive the storage): nothing is
    /// written anywhere.
    Storage(const unsigned char *data, std::size_t size);
    ~Storage();
    Storage(const Storage &) = delete;
    Storage &operator=(const Storage &) = delete;

    /// Loads the file; true when result() is Ok.
    [[nodiscard]] bool open();
    void close();
    /// The load result (Ok, OpenFailed, NotOLE, BadOLE).
    int result() const;
    /// Names of the entries directly below a storage path ("/" is the root).
    std::vector<std::string> entries(const std::string &path = "/") const;
    /// True when the path names a storage (or the root).
    bool isDirectory(const std::string &name) const;

    StorageIO *io() const { return m_io.get(); }

private:
    std::unique_ptr<StorageIO> m_io;
};

/// One stream of an open storage. A name that does not resolve to a stream gives a stream
/// without StreamIO: size 0, nothing to read, fail() true.
class Stream {
public:
    Stream(Storage *storage, const std::string &name);
    ~Stream();
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    bool exists() const { return m_io != nullptr; }
    std::string fullName() const;
    std::uint64_t size() const;
    std::uint64_t tell() const;
    void seek(std::uint64_t position);
    /// Reads up to maxLength bytes at the current position (never past the stream's end) and
    /// answers how many were read.
    std::size_t read(unsigned char *data, std::size_t maxLength);
    /// The next byte, or -1 at the end.
    int getch();
    bool eof() const;
    /// True when the stream is missing or its blocks cannot supply its size (a damaged file).
    bool fail() const;

private:
    std::unique_ptr<StreamIO> m_io;
};

} // namespace vellum::POLE

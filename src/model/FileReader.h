#pragma once

#include <string>
#include <utility>

namespace vellum {

class LoadObserver;
class TOrbMDBFile;

/// Fills a file's model from the database on disk. The model cannot read a file by itself: a
/// layer above it (libmdb in this process, or a helper process) provides the reader, and the
/// caller of `TOrbMDBFile::open` chooses which.
class FileReader {
public:
    virtual ~FileReader() = default;
    /// Adds the kept tables (with columns, rows and indexes) and the relationships of the
    /// database at `file.fullPath()` to `file`, reporting progress to `observer` (may be null)
    /// and polling it for a cancel. False when the file cannot be read or the observer
    /// cancelled; the file may then hold part of the model, which `open` drops.
    [[nodiscard]] virtual bool read(TOrbMDBFile &file, LoadObserver *observer) = 0;

    /// The password (UTF-8) with which the following reads decrypt an encrypted file; empty
    /// when none was given. Files that are not encrypted ignore it.
    void setPassword(std::string password) { m_password = std::move(password); }
    const std::string &password() const { return m_password; }

private:
    std::string m_password;
};

} // namespace vellum

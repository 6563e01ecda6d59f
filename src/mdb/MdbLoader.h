#pragma once

// The layer over libmdb: reading a file into the model. Only src/mdb sees libmdb's structures;
// this header does not expose them.

#include "model/TOrbMDBFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace vellum {

class TOrbMDBTable;

/// Size of each libmdb value buffer where libmdb's own text is read (the relationships
/// catalog); table rows are decoded from their stored bytes and have no such bound.
constexpr int kBindBufferSize = 200000;

/// How a load spreads its work.
struct LoadOptions {
    /// libmdb handles that read rows at the same time, each on its own thread (1 or 2).
    unsigned workers = 2;
    /// A second handle is used only when at least two kept tables reach this many estimated
    /// cells (rows times columns): below it, opening a second handle costs more than it saves.
    std::uint64_t parallelFromCells = 100'000;
    /// When fewer than two tables reach `parallelFromCells`, the largest table, once it
    /// reaches this many estimated cells, is read by both handles: the first reads the earlier
    /// half of its data pages, the second the later half, and the rows are joined in order.
    std::uint64_t splitFromCells = 100'000;
    /// The code page of a Jet 3 (Access 97) file's text, as iconv names it: those files do not
    /// record it. Empty means windows-1252, what most of them use. Later formats store Unicode.
    std::string jet3CodePage{};
    /// The password of an encrypted Access 2007+ file (UTF-8); empty when none was given.
    std::string password{};
};

/// The code page Jet 3 text is read in when none is given.
inline constexpr const char *kDefaultJet3CodePage = "CP1252";

/// True when iconv can convert from `codePage` (a name such as "GBK" or "CP1251").
bool isKnownCodePage(const std::string &codePage);

/// Receives a load as it happens. Every call comes on the thread that called `loadDatabase`.
class LoadSink : public LoadObserver {
public:
    /// The catalog walk is done: `count` tables follow, at positions 0 to count - 1 in catalog
    /// order, with `expectedRows` rows between them as their definitions say, and the
    /// relationships are complete.
    virtual void catalogRead(std::size_t count, std::uint64_t expectedRows) = 0;
    /// The table at `position` is complete (columns, rows, indexes, name); the sink takes it.
    virtual void tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table) = 0;
    /// Rows were added to the table at `position`, which is loading on this thread; the sink
    /// may read the part of its store that is finished (a store only ever appends). Tables
    /// loaded by the second handle are not reported here.
    virtual void tableGrowing(std::size_t position, const TOrbMDBTable &table)
    {
        (void)position;
        (void)table;
    }
};

/// Reads the database at `path` with libmdb: walks the catalog, reads the relationships and the
/// linked tables into `relationships` (in the order read) and adds the saved queries to it (in
/// catalog order, their SQL rebuilt from "MSysQueries"), and hands every kept table to the sink, loading rows
/// with up to `options.workers` handles. False when libmdb cannot open the file, a table read
/// in the walk cannot be read again, memory runs out, or the sink cancelled. A catalog that
/// cannot be read gives true with no tables. An encrypted file is decrypted into memory with
/// `options.password` first; when that fails, `failure` (if given) says why (PasswordNeeded,
/// WrongPassword, or Other for an encryption that cannot be decrypted).
[[nodiscard]] bool loadDatabase(const std::string &path, TOrbMDBFile &relationships, LoadSink &sink,
                                const LoadOptions &options, OpenFailure *failure = nullptr);

/// Reads the whole file with libmdb in this process (catalog walk, kept tables with columns,
/// rows and indexes, relationships, linked tables, saved queries). False when libmdb cannot open
/// the file, the file is encrypted and `options.password` does not decrypt it (the file's open
/// failure says which), or the observer cancelled. Tables are added in catalog order, tables and
/// relationships left unsorted.
[[nodiscard]] bool loadFileInProcess(TOrbMDBFile &file, LoadObserver *observer, const LoadOptions &options = {});

} // namespace vellum

#pragma once

// The loader's pipe format: how vellum-loader sends a loaded model to the process that opens
// the file. A stream is the header (magic and version), then messages (type byte, 64-bit
// length, content): one Catalog, any number of TableStarted and Rows, one Table per kept
// table, one Losses (what the load could not read), and End. A large table may send the finished part of its row
// storage ahead in TablePart messages while it is still loading, so that the transfer overlaps the loading; its Table
// message then carries the rest.

#include "loader/WireReader.h"
#include "loader/WireWriter.h"

#include "model/LossReport.h"
#include "model/TableStore.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vellum {

class LoadObserver;
class TOrbMDBFile;
class TOrbMDBForeignKey;
class TOrbMDBLinkedTable;
class TOrbMDBQuery;
class TOrbMDBTable;

/// The first bytes of every stream.
inline constexpr char kLoaderStreamMagic[8] = {'V', 'L', 'M', 'L', 'O', 'A', 'D', 'R'};
/// Raised whenever the layout of any message changes.
constexpr std::uint32_t kLoaderStreamVersion = 12;

enum class LoaderMessage : std::uint8_t {
    Catalog =
        1, ///< table count, expected rows, the relationships in the order read, linked tables, queries, file protection
    TableStarted = 2, ///< ordinal, count, name
    Rows = 3,         ///< rows loaded so far
    Table = 4,        ///< catalog position, then the whole table
    End = 5,          ///< table count again
    TablePart = 6,    ///< catalog position, then finished row storage of a table still loading
    Losses = 7,       ///< what the load could not read, in the order found (right before End)
};

/// How much of a table's row storage has gone out in TablePart messages: blocks, row starts
/// and blobs, each counted from the first.
struct StoreParts {
    std::size_t blocks = 0;
    std::size_t rows = 0;
    std::size_t blobs = 0;
};

/// Row storage received in TablePart messages, waiting for the rest of its table.
struct PartialStore {
    bool started = false;          ///< a part has arrived
    std::uint64_t columnCount = 0; ///< cells per row, as the first part said
    std::size_t checkedRows = 0;   ///< rows already checked as their blocks arrived
    std::vector<TableStore::Block> blocks;
    std::vector<std::uint64_t> rowStarts;
    std::vector<std::unique_ptr<TOrbBlobData>> blobs;
};

/// Appends a relationship.
void encodeForeignKey(WireWriter &writer, const TOrbMDBForeignKey &key);
/// Reads a relationship; nullptr when the reader failed.
std::unique_ptr<TOrbMDBForeignKey> decodeForeignKey(WireReader &reader);

/// Appends a load's losses.
void encodeLosses(WireWriter &writer, const std::vector<LossReport> &losses);
/// Reads what encodeLosses wrote; false when anything does not fit (an unknown kind, a count
/// beyond the message).
[[nodiscard]] bool decodeLosses(WireReader &reader, std::vector<LossReport> &losses);

/// Appends the file's linked tables and saved queries.
void encodeCatalogObjects(WireWriter &writer, const TOrbMDBFile &file);

/// Appends what a table still loading has finished beyond `sent`: every block but the last
/// (which may still grow), and the row starts and blobs so far; updates `sent`. Blocks and
/// blob payloads are referenced, the row starts copied: the store may go on growing before the
/// message is sent, but must live until then.
void encodeStorePart(WireWriter &writer, const TableStore &store, StoreParts &sent);
/// Reads a TablePart's storage and appends it; false when it does not continue `parts`.
[[nodiscard]] bool decodeStorePart(WireReader &reader, PartialStore &parts);

/// Appends what the file's header says about its protection (whether a Jet database password
/// is set), the last section of the Catalog message.
void encodeFileProtection(WireWriter &writer, const TOrbMDBFile &file);

/// Appends a whole table: name, columns with every property, indexes in order, the row
/// storage in its raw form beyond what `sent` says went ahead, then the values of its complex
/// columns (text blocks, blob and attachment payloads are referenced, not copied: the table
/// must outlive the writer's `send`).
void encodeTable(WireWriter &writer, const TOrbMDBTable &table, const StoreParts &sent = {});
/// Reads a table, joins its storage to the parts that came ahead and checks it; nullptr when
/// anything does not fit.
std::unique_ptr<TOrbMDBTable> decodeTable(WireReader &reader, PartialStore parts = {});

/// What a complete stream carries: the tables in catalog order and the relationships in the
/// order read.
struct ReceivedModel {
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    std::vector<std::unique_ptr<TOrbMDBForeignKey>> foreignKeys;
    std::vector<std::unique_ptr<TOrbMDBLinkedTable>> linkedTables;
    std::vector<std::unique_ptr<TOrbMDBQuery>> queries;
    std::vector<LossReport> losses;
    bool databasePasswordSet = false;

    /// Hands the relationships, linked tables, queries, losses and then the tables to `file`, in the order
    /// received; this model is left empty.
    void moveInto(TOrbMDBFile &file);
};

/// Reads one whole stream from the header to End, passing the progress messages to the
/// observer (may be null) and asking it after each whether to cancel. False at a cancel or at
/// anything malformed, out of order or missing; the model is then incomplete and must be
/// dropped.
[[nodiscard]] bool readModelStream(ByteSource &source, LoadObserver *observer, ReceivedModel &model);

} // namespace vellum

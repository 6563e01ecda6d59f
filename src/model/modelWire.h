#pragma once

// The loader's pipe format: how vellum-loader sends a loaded model to the process that opens
// the file. A stream is the header (magic and version), then messages (type byte, 64-bit
// length, content): one Catalog, any number of TableStarted and Rows, one Table per kept
// table, and End.

#include "model/WireReader.h"
#include "model/WireWriter.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vellum {

class LoadObserver;
class TOrbMDBForeignKey;
class TOrbMDBTable;

/// The first bytes of every stream.
inline constexpr char kLoaderStreamMagic[8] = {'V', 'L', 'M', 'L', 'O', 'A', 'D', 'R'};
/// Raised whenever the layout of any message changes.
constexpr std::uint32_t kLoaderStreamVersion = 1;

enum class LoaderMessage : std::uint8_t {
    Catalog = 1,      ///< table count, then the relationships in the order read
    TableStarted = 2, ///< ordinal, count, name
    Rows = 3,         ///< rows loaded so far
    Table = 4,        ///< catalog position, then the whole table
    End = 5,          ///< table count again
};

/// Appends a relationship.
void encodeForeignKey(WireWriter &writer, const TOrbMDBForeignKey &key);
/// Reads a relationship; nullptr when the reader failed.
std::unique_ptr<TOrbMDBForeignKey> decodeForeignKey(WireReader &reader);

/// Appends a whole table: name, columns with every property, indexes in order, and the row
/// storage in its raw form (text blocks and blob payloads are referenced, not copied: the
/// table must outlive the writer's `send`).
void encodeTable(WireWriter &writer, const TOrbMDBTable &table);
/// Reads a table and checks its row storage; nullptr when anything does not fit.
std::unique_ptr<TOrbMDBTable> decodeTable(WireReader &reader);

/// What a complete stream carries: the tables in catalog order and the relationships in the
/// order read.
struct ReceivedModel {
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    std::vector<std::unique_ptr<TOrbMDBForeignKey>> foreignKeys;
};

/// Reads one whole stream from the header to End, passing the progress messages to the
/// observer (may be null) and asking it after each whether to cancel. False at a cancel or at
/// anything malformed, out of order or missing; the model is then incomplete and must be
/// dropped.
[[nodiscard]] bool readModelStream(ByteSource &source, LoadObserver *observer, ReceivedModel &model);

} // namespace vellum

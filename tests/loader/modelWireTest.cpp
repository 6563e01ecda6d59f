// The loader's pipe format: a load encoded by ModelStreamWriter and read back by
// readModelStream gives the same model as loading in process, and damaged streams (cut short,
// bytes flipped, messages out of order) are refused or read safely, never trusted.

#include "modelComparison.h"
#include "support/Fixtures.h"
#include "support/complexTables.h"

#include "loader/ModelStreamWriter.h"
#include "loader/modelWire.h"
#include "mdb/MdbLoader.h"
#include "model/TOrbBlobData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string_view>

namespace vellum {
namespace {

class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes) : m_bytes(bytes) {}
    bool read(void *data, std::size_t length) override
    {
        if (length > m_bytes.size() - m_position)
            return false;
        std::memcpy(data, m_bytes.data() + m_position, length);
        m_position += length;
        return true;
    }

private:
    std::string_view m_bytes;
    std::size_t m_position = 0;
};

/// An output that collects the stream in memory.
ByteOutput appendingTo(std::string &bytes)
{
    return [&bytes](const void *data, std::size_t length) {
        bytes.append(static_cast<const char *>(data), length);
        return true;
    };
}

/// The stream vellum-loader would send for a fixture.
std::string encodeFixture(const std::string &path, const LoadOptions &options = {})
{
    std::string bytes;
    TOrbMDBFile relationships;
    ModelStreamWriter writer(appendingTo(bytes), relationships);
    EXPECT_TRUE(writer.begin());
    EXPECT_TRUE(loadDatabase(path, relationships, writer, options));
    EXPECT_TRUE(writer.finish());
    return bytes;
}

/// The stream of a file without tables: what its Catalog message and the file-level messages
/// carry (relationships, linked tables, queries, losses, the password flag).
std::string catalogOnlyStream(const TOrbMDBFile &file)
{
    std::string bytes;
    ModelStreamWriter writer(appendingTo(bytes), file);
    EXPECT_TRUE(writer.begin());
    writer.catalogRead(0, 0);
    EXPECT_TRUE(writer.finish());
    return bytes;
}

/// Reads a stream into a file the way the isolated open does.
bool decodeInto(std::string_view bytes, TOrbMDBFile &file)
{
    MemorySource source(bytes);
    ReceivedModel model;
    if (!readModelStream(source, nullptr, model))
        return false;
    model.moveInto(file);
    file.sortLoadedLists();
    return true;
}

/// Message start offsets of a well-formed stream.
std::vector<std::size_t> messageOffsets(const std::string &bytes)
{
    std::vector<std::size_t> offsets;
    std::size_t position = sizeof kLoaderStreamMagic + sizeof(std::uint32_t);
    while (position + 9 <= bytes.size()) {
        offsets.push_back(position);
        std::uint64_t length = 0;
        std::memcpy(&length, bytes.data() + position + 1, sizeof length);
        position += 9 + length;
    }
    return offsets;
}

/// Reads every cell of every table, so that a sanitizer sees any reference out of bounds.
std::size_t touchEveryCell(const TOrbMDBFile &file)
{
    std::size_t bytes = 0;
    for (const auto &table : file.tables())
        for (std::size_t r = 0; r < table->rowCount(); ++r)
            for (std::size_t c = 0; c < table->columns().size(); ++c) {
                const CellValue cell = table->cell(r, c);
                bytes += cell.isBlob() ? cell.blob->data().size() : cell.text.size();
            }
    return bytes;
}

class ModelWireRoundTrip : public ::testing::TestWithParam<const char *> {};

TEST_P(ModelWireRoundTrip, KeepsEveryTableColumnIndexRowAndRelationship)
{
    const std::string path = test::fixturePath(GetParam());
    auto expected = test::openInProcess(path);
    ASSERT_TRUE(expected);
    for (const LoadOptions &options :
         {LoadOptions{.workers = 1, .parallelFromCells = 0}, LoadOptions{.workers = 2, .parallelFromCells = 0}}) {
        SCOPED_TRACE(options.workers);
        TOrbMDBFile received;
        ASSERT_TRUE(decodeInto(encodeFixture(path, options), received));
        test::expectSameModel(*expected, received);
    }
    if (std::string(GetParam()).rfind("ole.", 0) == 0) {
        // The payloads travel too, not only their places.
        std::size_t blobs = 0;
        for (const auto &table : expected->tables())
            blobs += table->store().blobs().size();
        EXPECT_GT(blobs, 0u);
        // Package labels travel with their blobs.
        TOrbMDBFile received;
        ASSERT_TRUE(decodeInto(encodeFixture(path, LoadOptions{.workers = 2, .parallelFromCells = 0}), received));
        std::size_t labelled = 0;
        for (const auto &table : expected->tables()) {
            const TOrbMDBTable *other = received.tableNamed(table->name());
            ASSERT_TRUE(other);
            ASSERT_EQ(other->store().blobs().size(), table->store().blobs().size());
            for (std::size_t i = 0; i < table->store().blobs().size(); ++i) {
                const TOrbBlobData *sentBlob = table->store().blobs()[i].get();
                const TOrbBlobData *gotBlob = other->store().blobs()[i].get();
                ASSERT_EQ(sentBlob == nullptr, gotBlob == nullptr);
                if (!sentBlob)
                    continue;
                EXPECT_EQ(gotBlob->packageLabel(), sentBlob->packageLabel());
                labelled += sentBlob->packageLabel() == "report.final.pdf";
            }
        }
        EXPECT_GT(labelled, 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Fixtures, ModelWireRoundTrip,
                         ::testing::Values("features.mdb", "features.accdb", "ole.mdb", "ole.accdb", "jet3_size97.mdb",
                                           "newtypes.accdb"));

TEST(ModelWire, CarriesLinkedTablesAndQueries)
{
    TOrbMDBFile sent;
    auto access = std::make_unique<TOrbMDBLinkedTable>();
    access->setName("Remote Orders");
    access->setDatabase("C:\\data\\orders.mdb");
    access->setTargetTable("Orders");
    sent.addLinkedTable(std::move(access));
    auto odbc = std::make_unique<TOrbMDBLinkedTable>();
    odbc->setName("Stock");
    odbc->setKind(TOrbMDBLinkedTable::Kind::Odbc);
    odbc->setTargetTable("dbo.stock");
    odbc->setConnect("ODBC;DSN=warehouse;");
    sent.addLinkedTable(std::move(odbc));
    auto query = std::make_unique<TOrbMDBQuery>();
    query->setName("~sq_cForm1");
    query->setType(TOrbMDBQuery::Type::CrossTab);
    query->setSql("TRANSFORM Sum(x) AS s\r\nSELECT a\r\nFROM t\r\nGROUP BY a\r\nPIVOT b;");
    sent.addQuery(std::move(query));

    const std::string bytes = catalogOnlyStream(sent);
    TOrbMDBFile received;
    ASSERT_TRUE(decodeInto(bytes, received));
    test::expectSameModel(sent, received);
    ASSERT_EQ(received.queries().size(), 1u);
    EXPECT_TRUE(received.queries()[0]->isHidden());
    EXPECT_EQ(received.linkedTables()[1]->file(), &received);
}

TEST(ModelWire, CarriesLossesAndRefusesUnknownOrRepeatedOnes)
{
    TOrbMDBFile sent;
    const std::vector<LossReport> losses = {
        {LossReport::Kind::CatalogPart, "", 47, 50},
        {LossReport::Kind::TableDefinition, "Orders", 0, 0},
        {LossReport::Kind::Rows, "Items", 120, 500},
        {LossReport::Kind::LongValues, "Pictures", 3, 0},
    };
    for (const LossReport &loss : losses)
        sent.addLoss(loss);
    const std::string bytes = catalogOnlyStream(sent);
    TOrbMDBFile received;
    ASSERT_TRUE(decodeInto(bytes, received));
    EXPECT_EQ(received.losses(), losses);

    const std::vector<std::size_t> offsets = messageOffsets(bytes);
    ASSERT_EQ(offsets.size(), 3u); // Catalog, Losses, End
    ASSERT_EQ(static_cast<LoaderMessage>(bytes[offsets[1]]), LoaderMessage::Losses);
    const std::string lossesMessage = bytes.substr(offsets[1], offsets[2] - offsets[1]);
    std::string unknownKind = bytes;
    unknownKind[offsets[1] + 1 + 8 + 8] = 9; // the first loss's kind
    std::string repeated = bytes;
    repeated.insert(offsets[2], lossesMessage);
    std::string missing = bytes;
    missing.erase(offsets[1], lossesMessage.size());
    std::string countTooLarge = bytes;
    countTooLarge[offsets[1] + 1 + 8 + 7] = 1; // the count's top byte
    for (const std::string &bad : {unknownKind, repeated, missing, countTooLarge}) {
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(bad, file));
    }
}

TEST(ModelWire, CarriesTheDatabasePasswordFlag)
{
    for (const bool set : {false, true}) {
        TOrbMDBFile sent;
        sent.setDatabasePasswordSet(set);
        const std::string bytes = catalogOnlyStream(sent);
        TOrbMDBFile received;
        received.setDatabasePasswordSet(!set);
        ASSERT_TRUE(decodeInto(bytes, received));
        EXPECT_EQ(received.databasePasswordSet(), set);
    }
}

TEST(ModelWire, RefusesEveryCutShortStream)
{
    const std::string bytes = encodeFixture(test::fixturePath("ole.mdb"));
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < 64; ++i)
        cuts.push_back(i);
    for (const std::size_t offset : messageOffsets(bytes))
        for (std::size_t delta = 0; delta < 12; ++delta) {
            cuts.push_back(offset + delta);
            if (offset >= delta)
                cuts.push_back(offset - delta);
        }
    for (std::size_t i = 1; i < 400; ++i)
        cuts.push_back(bytes.size() * i / 400);
    for (const std::size_t cut : cuts) {
        if (cut >= bytes.size())
            continue;
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(std::string_view(bytes).substr(0, cut), file)) << "cut at " << cut;
    }
    TOrbMDBFile whole;
    EXPECT_TRUE(decodeInto(bytes, whole));
}

TEST(ModelWire, RefusesBrokenFramingAndOrder)
{
    const std::string bytes = encodeFixture(test::fixturePath("features.mdb"));
    const std::vector<std::size_t> offsets = messageOffsets(bytes);
    ASSERT_GT(offsets.size(), 4u);
    const auto typeAt = [&](std::size_t offset) { return static_cast<LoaderMessage>(bytes[offset]); };
    const auto messageAt = [&](std::size_t index) {
        const std::size_t end = index + 1 < offsets.size() ? offsets[index + 1] : bytes.size();
        return bytes.substr(offsets[index], end - offsets[index]);
    };
    std::size_t firstTable = 0;
    while (firstTable < offsets.size() && typeAt(offsets[firstTable]) != LoaderMessage::Table)
        ++firstTable;
    ASSERT_LT(firstTable, offsets.size());
    ASSERT_EQ(typeAt(offsets[0]), LoaderMessage::Catalog);

    struct Case {
        const char *what;
        std::string stream;
    };
    std::vector<Case> cases;
    const auto edited = [&](const char *what, std::size_t at, char value) {
        std::string copy = bytes;
        copy[at] = value;
        cases.push_back({what, copy});
    };
    edited("magic", 0, 'X');
    edited("version", sizeof kLoaderStreamMagic, static_cast<char>(kLoaderStreamVersion + 1));
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        edited("unknown message type", offsets[i], 0);
        edited("length one more", offsets[i] + 1, static_cast<char>(bytes[offsets[i] + 1] + 1));
        edited("length one less", offsets[i] + 1, static_cast<char>(bytes[offsets[i] + 1] - 1));
        edited("length far too long", offsets[i] + 8, 0x40);
    }
    std::string withoutTable = bytes;
    withoutTable.erase(offsets[firstTable], messageAt(firstTable).size());
    cases.push_back({"a table missing", withoutTable});
    std::string twice = bytes;
    twice.insert(offsets[firstTable], messageAt(firstTable));
    cases.push_back({"a table twice", twice});
    std::string catalogTwice = bytes;
    catalogTwice.insert(offsets[1], messageAt(0));
    cases.push_back({"a second catalog", catalogTwice});
    std::string tableFirst = bytes;
    tableFirst.erase(offsets[firstTable], messageAt(firstTable).size());
    tableFirst.insert(offsets[0], messageAt(firstTable));
    cases.push_back({"a table before the catalog", tableFirst});

    for (const Case &c : cases) {
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(c.stream, file)) << c.what;
    }
}

/// A table of several storage blocks, with text cells, nulls and blobs: always the same.
std::unique_ptr<TOrbMDBTable> largeTable()
{
    auto table = std::make_unique<TOrbMDBTable>();
    table->setName("Large");
    for (const char *name : {"id", "label", "payload"}) {
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(name);
        column->setDataType(std::string(name) == "payload" ? "OLE" : "Text");
        table->addColumn(std::move(column));
    }
    TableStore &store = table->mutableStore();
    for (int row = 0; row < 100000; ++row) {
        store.beginRow();
        const std::string id = std::to_string(row);
        const std::string label = "label of row " + id + std::string(static_cast<std::size_t>(row % 61), '*');
        store.appendText(id.data(), id.size());
        store.appendText(label.data(), row % 7 == 0 ? 0 : label.size());
        if (row % 1000 == 0)
            store.appendBlob(std::make_unique<TOrbBlobData>(
                std::vector<std::uint8_t>(static_cast<std::size_t>(row % 4096), 0xAB), "bin"));
        else
            store.appendNull();
        store.endRow();
    }
    return table;
}

/// The stream of a one-table load in which the table's storage goes ahead in parts.
std::string encodeInParts()
{
    std::string bytes;
    TOrbMDBFile relationships;
    ModelStreamWriter writer(appendingTo(bytes), relationships);
    EXPECT_TRUE(writer.begin());
    writer.catalogRead(1, 100000);
    // The table grows while its finished blocks go out, as during a load.
    auto growing = std::make_unique<TOrbMDBTable>();
    auto complete = largeTable();
    growing->setName(complete->name());
    for (const auto &column : complete->columns()) {
        auto copy = std::make_unique<TOrbMDBColumn>();
        copy->setName(column->name());
        copy->setDataType(column->dataType());
        growing->addColumn(std::move(copy));
    }
    TableStore &store = growing->mutableStore();
    for (std::size_t row = 0; row < complete->rowCount(); ++row) {
        store.beginRow();
        for (std::size_t c = 0; c < complete->columns().size(); ++c) {
            const CellValue cell = complete->cell(row, c);
            if (cell.isBlob())
                store.appendBlob(std::make_unique<TOrbBlobData>(cell.blob->data(), cell.blob->fileExtension().c_str()));
            else
                store.appendText(cell.text.data(), cell.text.size());
        }
        store.endRow();
        if (row % 5000 == 0)
            writer.tableGrowing(0, *growing);
    }
    writer.tableLoaded(0, std::move(growing));
    EXPECT_TRUE(writer.finish());
    return bytes;
}

TEST(ModelWire, SendsTheFinishedBlocksOfALargeTableAhead)
{
    const std::string bytes = encodeInParts();
    const std::vector<std::size_t> offsets = messageOffsets(bytes);
    std::vector<std::size_t> parts;
    for (std::size_t i = 0; i < offsets.size(); ++i)
        if (static_cast<LoaderMessage>(bytes[offsets[i]]) == LoaderMessage::TablePart)
            parts.push_back(i);
    ASSERT_GE(parts.size(), 2u);

    TOrbMDBFile received;
    ASSERT_TRUE(decodeInto(bytes, received));
    ASSERT_EQ(received.tables().size(), 1u);
    test::expectSameTable(*largeTable(), *received.tables()[0]);

    const auto messageAt = [&](std::size_t index) {
        const std::size_t end = index + 1 < offsets.size() ? offsets[index + 1] : bytes.size();
        return bytes.substr(offsets[index], end - offsets[index]);
    };
    std::vector<std::string> broken;
    for (const std::size_t offset : offsets) // every cut at a message boundary
        broken.push_back(bytes.substr(0, offset));
    std::string swapped = bytes; // two parts in the wrong order
    swapped.replace(offsets[parts[0]], messageAt(parts[0]).size() + messageAt(parts[1]).size(),
                    messageAt(parts[1]) + messageAt(parts[0]));
    broken.push_back(swapped);
    std::string repeated = bytes; // a part twice
    repeated.insert(offsets[parts[1]], messageAt(parts[0]));
    broken.push_back(repeated);
    std::string dropped = bytes; // a part missing
    dropped.erase(offsets[parts[0]], messageAt(parts[0]).size());
    broken.push_back(dropped);
    std::string late = bytes; // a part after its table
    late.insert(offsets.back(), messageAt(parts[0]));
    broken.push_back(late);
    std::string narrower = bytes; // a later part with rows of another width
    const std::size_t widthAt = offsets[parts[1]] + 9 + sizeof(std::uint64_t);
    narrower[widthAt] = static_cast<char>(narrower[widthAt] - 1);
    broken.push_back(narrower);
    for (std::size_t i = 0; i < broken.size(); ++i) {
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(broken[i], file)) << "case " << i;
    }

    // A part's rows are checked as it arrives: a bad row header fails that very part.
    std::string part = messageAt(parts[0]);
    const auto decodePart = [](const std::string &message, PartialStore &into) {
        MemorySource source(message);
        WireReader reader(source);
        std::uint8_t type = 0;
        return reader.beginMessage(type) && reader.getU64() == 0 && decodeStorePart(reader, into);
    };
    PartialStore good;
    ASSERT_TRUE(decodePart(part, good));
    EXPECT_GT(good.checkedRows, 0u);
    EXPECT_LE(good.checkedRows, good.rowStarts.size());
    // Frame, position, width, first block, block count and block size come before the bytes.
    const std::size_t firstRowAt = 9 + 5 * sizeof(std::uint64_t);
    part[firstRowAt] = static_cast<char>(0xFF); // the first row's first header byte
    PartialStore bad;
    EXPECT_FALSE(decodePart(part, bad));
}

TEST(ModelWire, ReadsFlippedBytesSafely)
{
    std::string fixture = encodeFixture(test::fixturePath("ole.accdb"));
    std::string inParts = encodeInParts();
    std::mt19937_64 random(20240611);
    int accepted = 0;
    const int rounds = 3000;
    for (int round = 0; round < rounds; ++round) {
        std::string &bytes = round % 20 == 0 ? inParts : fixture;
        // Flip a few bytes in place, read, and flip them back.
        std::vector<std::pair<std::size_t, char>> flips;
        for (int f = 0, n = 1 + static_cast<int>(random() % 4); f < n; ++f)
            flips.emplace_back(random() % bytes.size(), static_cast<char>(1 + random() % 255));
        for (const auto &[at, mask] : flips)
            bytes[at] ^= mask;
        TOrbMDBFile file;
        if (decodeInto(bytes, file)) {
            ++accepted;
            touchEveryCell(file);
        }
        for (auto it = flips.rbegin(); it != flips.rend(); ++it)
            bytes[it->first] ^= it->second;
    }
    // Flips in cell text or blob payloads still give a readable model; the framing catches
    // the rest. Both kinds occur.
    EXPECT_GT(accepted, 0);
    EXPECT_LT(accepted, rounds);
}

/// The stream of a model holding the table of complex columns.
std::string encodeComplexTable()
{
    std::string bytes;
    TOrbMDBFile relationships;
    ModelStreamWriter writer(appendingTo(bytes), relationships);
    EXPECT_TRUE(writer.begin());
    writer.catalogRead(1, 3);
    writer.tableLoaded(0, test::complexItemsTable());
    EXPECT_TRUE(writer.finish());
    return bytes;
}

TEST(ModelWire, CarriesComplexValuesAndRefusesThemDamaged)
{
    const std::string bytes = encodeComplexTable();
    TOrbMDBFile received;
    ASSERT_TRUE(decodeInto(bytes, received));
    ASSERT_EQ(received.tables().size(), 1u);
    const TOrbMDBTable &table = *received.tables()[0];
    test::expectSameTable(*test::complexItemsTable(), table);
    ASSERT_NE(table.complexValues(1), nullptr);
    EXPECT_EQ(table.complexValues(1)->entries().size(), 3u); // ids 1, 3 and the unused 9
    EXPECT_EQ(table.complexValues(1)->valueType(), "Text");
    EXPECT_EQ(table.complexValues(2)->valueType(), "");
    EXPECT_EQ(table.complexValues(0), nullptr);
    EXPECT_EQ(table.complexValues(1)->valueType(), "Text"); // the items' type
    EXPECT_EQ(table.complexValues(2)->valueType(), "");
    EXPECT_EQ(table.cell(1, 2).complex->itemCount(), 0u);
    EXPECT_EQ(table.cell(0, 2).complex->attachments()[1].data->data().size(), 8u);

    // The complex section closes the Table message: every cut inside it is refused …
    const std::vector<std::size_t> offsets = messageOffsets(bytes);
    std::size_t tableAt = 0;
    for (const std::size_t offset : offsets)
        if (static_cast<LoaderMessage>(bytes[offset]) == LoaderMessage::Table)
            tableAt = offset;
    ASSERT_GT(tableAt, 0u);
    const std::size_t tableEnd = *std::upper_bound(offsets.begin(), offsets.end(), tableAt);
    const auto u64 = [](std::uint64_t value) { return std::string(reinterpret_cast<const char *>(&value), 8); };
    // Three columns, the first at position 1, a multi-value column.
    const std::size_t sectionAt = bytes.rfind(u64(3) + u64(1) + u64(1), tableEnd);
    ASSERT_NE(sectionAt, std::string::npos);
    ASSERT_GT(sectionAt, tableAt);
    for (std::size_t cut = sectionAt; cut < tableEnd; ++cut) {
        std::string shortened = bytes;
        shortened.erase(cut, tableEnd - cut);
        const std::uint64_t length = cut - tableAt - 9;
        std::memcpy(shortened.data() + tableAt + 1, &length, sizeof length);
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(shortened, file)) << "cut at " << cut - sectionAt;
    }
    // … and so are a kind, a position and a repeated column that do not fit.
    const auto patched = [&](std::size_t at, std::uint64_t value) {
        std::string copy = bytes;
        std::memcpy(copy.data() + at, &value, sizeof value);
        return copy;
    };
    const std::size_t firstColumn = sectionAt + 8;
    for (const std::string &broken : {patched(firstColumn + 8, 3), // no such kind
                                      patched(firstColumn, 4),     // past the last column
                                      patched(firstColumn, 2),     // the next column's position
                                      patched(sectionAt, 5)}) {    // more columns than sent
        TOrbMDBFile file;
        EXPECT_FALSE(decodeInto(broken, file));
    }
}

} // namespace
} // namespace vellum

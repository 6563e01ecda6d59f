#include "loader/modelWire.h"

#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBTable.h"
#include "util/logging.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>

namespace vellum {

namespace {

constexpr std::uint64_t kMaxColumns = 4096;
constexpr std::uint64_t kMaxTables = 1u << 20;

void encodeStrings(WireWriter &writer, const std::vector<std::string> &strings)
{
    writer.putU64(strings.size());
    for (const auto &text : strings)
        writer.putString(text);
}

std::vector<std::string> decodeStrings(WireReader &reader)
{
    std::vector<std::string> strings;
    const std::uint64_t count = reader.getU64();
    // Each text takes at least its 4-byte length.
    if (count > reader.remaining() / 4) {
        reader.fail();
        return strings;
    }
    for (std::uint64_t i = 0; i < count && reader.ok(); ++i)
        strings.push_back(reader.getString());
    return strings;
}

void encodeColumn(WireWriter &writer, const TOrbMDBColumn &column)
{
    writer.putString(column.name());
    writer.putString(column.dataType());
    writer.putI64(column.fieldSize());
    writer.putI64(column.precision());
    writer.putI64(column.scale());
    writer.putOptionalString(column.allowZeroLength());
    writer.putOptionalString(column.unicodeCompression());
    writer.putOptionalString(column.required());
    writer.putOptionalString(column.defaultValue());
    writer.putOptionalString(column.description());
    writer.putOptionalString(column.resultType());
    writer.putOptionalString(column.expression());
    writer.putOptionalString(column.textFormat());
    writer.putOptionalString(column.textAlign());
    writer.putOptionalString(column.storedDecimalPlaces());
    writer.putBool(column.isPrimaryKey());
    writer.putBool(column.isHyperlink());
    writer.putBool(column.isCalculatedType());
    writer.putI64(column.sortOrder());
}

std::unique_ptr<TOrbMDBColumn> decodeColumn(WireReader &reader)
{
    auto column = std::make_unique<TOrbMDBColumn>();
    column->setName(reader.getString());
    column->setDataType(reader.getString());
    const auto smallInt = [&reader]() {
        const std::int64_t value = reader.getI64();
        if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
            reader.fail();
        return static_cast<int>(value);
    };
    column->setFieldSize(smallInt());
    column->setPrecision(smallInt());
    column->setScale(smallInt());
    column->setAllowZeroLength(reader.getOptionalString());
    column->setUnicodeCompression(reader.getOptionalString());
    column->setRequired(reader.getOptionalString());
    column->setDefaultValue(reader.getOptionalString());
    column->setDescription(reader.getOptionalString());
    column->setResultType(reader.getOptionalString());
    column->setExpression(reader.getOptionalString());
    column->setTextFormat(reader.getOptionalString());
    column->setTextAlignName(reader.getOptionalString());
    column->setDecimalPlaces(reader.getOptionalString());
    column->setIsPrimaryKey(reader.getBool());
    column->setIsHyperlink(reader.getBool());
    column->setIsCalculatedType(reader.getBool());
    column->setSortOrder(reader.getI64());
    return reader.ok() ? std::move(column) : nullptr;
}

void encodeIndex(WireWriter &writer, const TOrbMDBIndex &index)
{
    writer.putString(index.name());
    writer.putBool(index.isAscending());
    writer.putBool(index.isPrimaryKey());
    writer.putBool(index.isUnique());
    writer.putU64(index.keys().size());
    for (const IndexKey &key : index.keys()) {
        writer.putString(key.name);
        writer.putBool(key.ascending);
    }
    writer.putBool(index.isForeignKey());
}

std::unique_ptr<TOrbMDBIndex> decodeIndex(WireReader &reader)
{
    auto index = std::make_unique<TOrbMDBIndex>();
    index->setName(reader.getString());
    index->setIsAscending(reader.getBool());
    index->setIsPrimaryKey(reader.getBool());
    index->setIsUnique(reader.getBool());
    const std::uint64_t count = reader.getU64();
    if (count > reader.remaining() / 5) // a key takes at least a length and a flag
        reader.fail();
    std::vector<IndexKey> keys;
    for (std::uint64_t i = 0; i < count && reader.ok(); ++i) {
        IndexKey key;
        key.name = reader.getString();
        key.ascending = reader.getBool();
        keys.push_back(std::move(key));
    }
    index->setKeys(std::move(keys));
    index->setIsForeignKey(reader.getBool());
    return reader.ok() ? std::move(index) : nullptr;
}

/// Appends blocks [fromBlock, toBlock), the row starts and the blobs from the given counts on.
/// Blocks and blob payloads are referenced (they never move); the row starts are copied when
/// `copyRowStarts` says the store may still grow, since their vector then moves.
void encodeStoreRange(WireWriter &writer, const TableStore &store, const StoreParts &from, std::size_t toBlock,
                      bool copyRowStarts)
{
    writer.putU64(store.columnCount());
    writer.putU64(from.blocks);
    writer.putU64(toBlock - from.blocks);
    for (std::size_t i = from.blocks; i < toBlock; ++i) {
        const TableStore::Block &block = store.blocks()[i];
        writer.putU64(block.size);
        writer.putBorrowed(block.bytes.get(), block.size);
    }
    const auto &rowStarts = store.rowStarts();
    writer.putU64(from.rows);
    writer.putU64(rowStarts.size() - from.rows);
    const std::size_t rowBytes = (rowStarts.size() - from.rows) * sizeof(std::uint64_t);
    if (copyRowStarts)
        writer.putCopied(rowStarts.data() + from.rows, rowBytes);
    else
        writer.putBorrowed(rowStarts.data() + from.rows, rowBytes);
    writer.putU64(from.blobs);
    writer.putU64(store.blobs().size() - from.blobs);
    for (std::size_t i = from.blobs; i < store.blobs().size(); ++i) {
        const TOrbBlobData *blob = store.blobs()[i].get();
        writer.putString(blob ? blob->fileExtension() : std::string());
        writer.putString(blob ? blob->linkPath() : std::string());
        const std::size_t size = blob ? blob->data().size() : 0;
        writer.putU64(size);
        if (size)
            writer.putBorrowed(blob->data().data(), size);
    }
    // Package labels: how many, then each as the blob's place in this part and the label.
    std::vector<std::size_t> labelled;
    for (std::size_t i = from.blobs; i < store.blobs().size(); ++i)
        if (const TOrbBlobData *blob = store.blobs()[i].get(); blob && !blob->packageLabel().empty())
            labelled.push_back(i - from.blobs);
    writer.putU64(labelled.size());
    for (const std::size_t place : labelled) {
        writer.putU64(place);
        writer.putString(store.blobs()[from.blobs + place]->packageLabel());
    }
}

/// Appends the values of a table's complex columns: per column its position, kind and the
/// entries by id, each with its items.
void encodeComplexColumns(WireWriter &writer, const TOrbMDBTable &table)
{
    writer.putU64(table.complexColumns().size());
    for (const auto &[position, values] : table.complexColumns()) {
        writer.putU64(position);
        writer.putU64(static_cast<std::uint64_t>(values->kind()));
        writer.putU64(values->entries().size());
        for (const auto &[id, value] : values->entries()) {
            writer.putI64(id);
            writer.putU64(value.itemCount());
            switch (value.kind()) {
            case ComplexKind::MultiValue:
                for (const std::string &text : value.values())
                    writer.putString(text);
                break;
            case ComplexKind::Attachment:
                for (const auto &attachment : value.attachments()) {
                    writer.putString(attachment.fileName);
                    writer.putString(attachment.fileType);
                    const auto &data = attachment.data->data();
                    writer.putU64(data.size());
                    if (!data.empty())
                        writer.putBorrowed(data.data(), data.size());
                }
                break;
            case ComplexKind::VersionHistory:
                for (const auto &version : value.versions()) {
                    writer.putString(version.value);
                    writer.putString(version.date);
                }
                break;
            }
        }
    }
}

/// Reads what encodeComplexColumns wrote into `table`, whose columns are in place; false when
/// a position, kind or count does not fit, or a position or id comes twice.
bool decodeComplexColumns(WireReader &reader, TOrbMDBTable &table)
{
    const std::uint64_t count = reader.getU64();
    if (!reader.ok() || count > table.columns().size())
        return reader.fail();
    for (std::uint64_t c = 0; c < count; ++c) {
        const std::uint64_t position = reader.getU64();
        const std::uint64_t kind = reader.getU64();
        if (!reader.ok() || position >= table.columns().size() || table.complexValues(position) ||
            kind > static_cast<std::uint64_t>(ComplexKind::VersionHistory))
            return reader.fail();
        auto values = std::make_unique<ComplexColumnValues>(static_cast<ComplexKind>(kind));
        const std::uint64_t entries = reader.getU64();
        if (entries > reader.remaining() / 16) // an id and an item count each
            return reader.fail();
        for (std::uint64_t e = 0; e < entries && reader.ok(); ++e) {
            const std::int64_t id = reader.getI64();
            const std::uint64_t items = reader.getU64();
            if (!reader.ok() || values->entries().count(id) ||
                items > reader.remaining() / 4) // a text takes at least its length
                return reader.fail();
            TOrbComplexValue &value = values->valuesFor(id);
            for (std::uint64_t i = 0; i < items && reader.ok(); ++i) {
                switch (values->kind()) {
                case ComplexKind::MultiValue:
                    value.addValue(reader.getString());
                    break;
                case ComplexKind::Attachment: {
                    std::string name = reader.getString();
                    std::string type = reader.getString();
                    std::vector<std::uint8_t> data;
                    if (!reader.getArray(data, reader.getU64()))
                        return false;
                    value.addAttachment(std::move(name), std::move(type), std::move(data));
                    break;
                }
                case ComplexKind::VersionHistory: {
                    std::string text = reader.getString();
                    value.addVersion(std::move(text), reader.getString());
                    break;
                }
                }
            }
        }
        if (!reader.ok())
            return false;
        table.setComplexValues(static_cast<std::size_t>(position), std::move(values));
    }
    return reader.ok();
}

/// Appends the item types of a table's multi-value columns, a section of its own after the
/// complex values: the count, then per column its position and the type name.
void encodeComplexValueTypes(WireWriter &writer, const TOrbMDBTable &table)
{
    std::uint64_t typed = 0;
    for (const auto &[position, values] : table.complexColumns())
        typed += values->valueType().empty() ? 0 : 1;
    writer.putU64(typed);
    for (const auto &[position, values] : table.complexColumns()) {
        if (values->valueType().empty())
            continue;
        writer.putU64(position);
        writer.putString(values->valueType());
    }
}

/// Reads what encodeComplexValueTypes wrote; false when a position names no complex column of
/// `table` or comes twice.
bool decodeComplexValueTypes(WireReader &reader, TOrbMDBTable &table)
{
    const std::uint64_t count = reader.getU64();
    if (!reader.ok() || count > table.complexColumns().size())
        return reader.fail();
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t position = reader.getU64();
        std::string type = reader.getString();
        if (!reader.ok() || position >= table.columns().size())
            return reader.fail();
        ComplexColumnValues *values = table.mutableComplexValues(static_cast<std::size_t>(position));
        if (!values || !values->valueType().empty() || type.empty())
            return reader.fail();
        values->setValueType(std::move(type));
    }
    return reader.ok();
}

} // namespace

void encodeStorePart(WireWriter &writer, const TableStore &store, StoreParts &sent)
{
    const std::size_t finished = store.blocks().empty() ? 0 : store.blocks().size() - 1;
    const std::size_t toBlock = std::max(finished, sent.blocks);
    encodeStoreRange(writer, store, sent, toBlock, true);
    sent = StoreParts{toBlock, store.rowStarts().size(), store.blobs().size()};
}

bool decodeStorePart(WireReader &reader, PartialStore &parts)
{
    // Each part must continue exactly where the parts before it ended, with rows as wide.
    const std::uint64_t columnCount = reader.getU64();
    if (columnCount > kMaxColumns || (parts.started && columnCount != parts.columnCount))
        return reader.fail();
    parts.started = true;
    parts.columnCount = columnCount;
    if (reader.getU64() != parts.blocks.size())
        return reader.fail();
    const std::uint64_t blockCount = reader.getU64();
    if (blockCount > reader.remaining() / 8)
        return reader.fail();
    for (std::uint64_t i = 0; i < blockCount && reader.ok(); ++i) {
        TableStore::Block block;
        block.size = block.capacity = reader.getU64();
        if (!reader.getBlock(block.bytes, block.size))
            return false;
        parts.blocks.push_back(std::move(block));
    }
    if (reader.getU64() != parts.rowStarts.size())
        return reader.fail();
    std::vector<std::uint64_t> rowStarts;
    if (!reader.getArray(rowStarts, reader.getU64()))
        return false;
    if (parts.rowStarts.empty())
        parts.rowStarts = std::move(rowStarts);
    else
        parts.rowStarts.insert(parts.rowStarts.end(), rowStarts.begin(), rowStarts.end());
    if (reader.getU64() != parts.blobs.size())
        return reader.fail();
    const std::uint64_t blobCount = reader.getU64();
    if (blobCount > reader.remaining() / 16) // an extension, a link and a payload length each
        return reader.fail();
    for (std::uint64_t i = 0; i < blobCount && reader.ok(); ++i) {
        const std::string extension = reader.getString();
        std::string link = reader.getString();
        std::vector<std::uint8_t> data;
        if (!reader.getArray(data, reader.getU64()))
            return false;
        if (!link.empty() && data.empty())
            parts.blobs.push_back(TOrbBlobData::linkTo(std::move(link)));
        else if (link.empty())
            parts.blobs.push_back(std::make_unique<TOrbBlobData>(std::move(data), extension.c_str()));
        else
            return reader.fail(); // a link carries no payload
    }
    if (!reader.ok())
        return false;
    const std::uint64_t labelCount = reader.getU64();
    if (labelCount > blobCount)
        return reader.fail();
    for (std::uint64_t i = 0; i < labelCount && reader.ok(); ++i) {
        const std::uint64_t place = reader.getU64();
        std::string label = reader.getString();
        if (place >= blobCount)
            return reader.fail();
        TOrbBlobData *blob = parts.blobs[parts.blobs.size() - blobCount + place].get();
        if (!blob)
            return reader.fail();
        blob->setPackageLabel(std::move(label));
    }
    if (!reader.ok())
        return false;
    // Check the rows whose blocks are here now, while the loader goes on with the next ones.
    const auto check = TableStore::checkRawRows(static_cast<std::size_t>(parts.columnCount), parts.blocks,
                                                parts.rowStarts, parts.checkedRows, parts.blobs.size());
    if (!check.valid)
        return reader.fail();
    parts.checkedRows = check.checked;
    return true;
}

void encodeForeignKey(WireWriter &writer, const TOrbMDBForeignKey &key)
{
    writer.putString(key.name());
    writer.putString(key.referencingTable());
    encodeStrings(writer, key.referencingColumns());
    writer.putString(key.referencedTable());
    encodeStrings(writer, key.referencedColumns());
    writer.putBool(key.onUpdateCascade());
    writer.putBool(key.onDeleteCascade());
    writer.putBool(key.enforced());
    writer.putBool(key.onDeleteSetNull());
}

std::unique_ptr<TOrbMDBForeignKey> decodeForeignKey(WireReader &reader)
{
    auto key = std::make_unique<TOrbMDBForeignKey>();
    key->setName(reader.getString());
    key->setReferencingTable(reader.getString());
    key->setReferencingColumns(decodeStrings(reader));
    key->setReferencedTable(reader.getString());
    key->setReferencedColumns(decodeStrings(reader));
    key->setOnUpdateCascade(reader.getBool());
    key->setOnDeleteCascade(reader.getBool());
    key->setEnforced(reader.getBool());
    key->setOnDeleteSetNull(reader.getBool());
    return reader.ok() ? std::move(key) : nullptr;
}

void encodeLosses(WireWriter &writer, const std::vector<LossReport> &losses)
{
    writer.putU64(losses.size());
    for (const LossReport &loss : losses) {
        writer.putU64(static_cast<std::uint64_t>(loss.kind));
        writer.putString(loss.table);
        writer.putU64(loss.count);
        writer.putU64(loss.expected);
    }
}

bool decodeLosses(WireReader &reader, std::vector<LossReport> &losses)
{
    const std::uint64_t count = reader.getU64();
    // Each loss takes at least its kind, the name's length and two counts: 28 bytes.
    if (!reader.ok() || count > reader.remaining() / 28)
        return false;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t kind = reader.getU64();
        if (kind > static_cast<std::uint64_t>(LossReport::Kind::LongValues))
            return false;
        LossReport loss;
        loss.kind = static_cast<LossReport::Kind>(kind);
        loss.table = reader.getString();
        loss.count = reader.getU64();
        loss.expected = reader.getU64();
        if (!reader.ok())
            return false;
        losses.push_back(std::move(loss));
    }
    return true;
}

void encodeCatalogObjects(WireWriter &writer, const TOrbMDBFile &file)
{
    writer.putU64(file.linkedTables().size());
    for (const auto &link : file.linkedTables()) {
        writer.putString(link->name());
        writer.putBool(link->kind() == TOrbMDBLinkedTable::Kind::Odbc);
        writer.putString(link->database());
        writer.putString(link->targetTable());
        writer.putString(link->connect());
    }
    writer.putU64(file.queries().size());
    for (const auto &query : file.queries()) {
        writer.putString(query->name());
        writer.putU64(static_cast<std::uint64_t>(query->type()));
        writer.putString(query->sql());
    }
}

void encodeFileProtection(WireWriter &writer, const TOrbMDBFile &file)
{
    writer.putBool(file.databasePasswordSet());
}

namespace {

/// Reads what encodeCatalogObjects wrote; false when it does not fit.
bool decodeCatalogObjects(WireReader &reader, ReceivedModel &model)
{
    const std::uint64_t links = reader.getU64();
    if (!reader.ok() || links > reader.remaining() / 8)
        return false;
    for (std::uint64_t i = 0; i < links; ++i) {
        auto link = std::make_unique<TOrbMDBLinkedTable>();
        link->setName(reader.getString());
        link->setKind(reader.getBool() ? TOrbMDBLinkedTable::Kind::Odbc : TOrbMDBLinkedTable::Kind::Access);
        link->setDatabase(reader.getString());
        link->setTargetTable(reader.getString());
        link->setConnect(reader.getString());
        if (!reader.ok())
            return false;
        model.linkedTables.push_back(std::move(link));
    }
    const std::uint64_t queries = reader.getU64();
    if (!reader.ok() || queries > reader.remaining() / 8)
        return false;
    for (std::uint64_t i = 0; i < queries; ++i) {
        auto query = std::make_unique<TOrbMDBQuery>();
        query->setName(reader.getString());
        const std::uint64_t type = reader.getU64();
        if (type > static_cast<std::uint64_t>(TOrbMDBQuery::Type::Unknown))
            return false;
        query->setType(static_cast<TOrbMDBQuery::Type>(type));
        query->setSql(reader.getString());
        if (!reader.ok())
            return false;
        model.queries.push_back(std::move(query));
    }
    return true;
}

} // namespace

void encodeTable(WireWriter &writer, const TOrbMDBTable &table, const StoreParts &sent)
{
    writer.putString(table.name());
    writer.putU64(table.columns().size());
    for (const auto &column : table.columns())
        encodeColumn(writer, *column);
    writer.putU64(table.indices().size());
    for (const auto &index : table.indices())
        encodeIndex(writer, *index);
    encodeStoreRange(writer, table.store(), sent, std::max(sent.blocks, table.store().blocks().size()), false);
    encodeComplexColumns(writer, table);
    encodeComplexValueTypes(writer, table);
}

std::unique_ptr<TOrbMDBTable> decodeTable(WireReader &reader, PartialStore parts)
{
    auto table = std::make_unique<TOrbMDBTable>();
    table->setName(reader.getString());
    const std::uint64_t columnCount = reader.getU64();
    if (!reader.ok() || columnCount > kMaxColumns)
        return nullptr;
    for (std::uint64_t i = 0; i < columnCount; ++i) {
        auto column = decodeColumn(reader);
        if (!column)
            return nullptr;
        table->addColumn(std::move(column));
    }
    const std::uint64_t indexCount = reader.getU64();
    if (indexCount > reader.remaining() / 8) {
        reader.fail();
        return nullptr;
    }
    for (std::uint64_t i = 0; i < indexCount; ++i) {
        auto index = decodeIndex(reader);
        if (!index)
            return nullptr;
        table->addIndex(std::move(index));
    }
    // The storage repeats the column count: its rows must have exactly that many cells.
    if (!decodeStorePart(reader, parts) || parts.columnCount != columnCount) {
        reader.fail();
        return nullptr;
    }
    if (!table->mutableStore().adopt(table->columns().size(), std::move(parts.blocks), std::move(parts.rowStarts),
                                     std::move(parts.blobs), parts.checkedRows)) {
        reader.fail();
        return nullptr;
    }
    if (!decodeComplexColumns(reader, *table) || !decodeComplexValueTypes(reader, *table))
        return nullptr;
    return table;
}

void ReceivedModel::moveInto(TOrbMDBFile &file)
{
    for (auto &key : foreignKeys)
        file.addForeignKey(std::move(key));
    for (auto &link : linkedTables)
        file.addLinkedTable(std::move(link));
    for (auto &query : queries)
        file.addQuery(std::move(query));
    for (auto &loss : losses)
        file.addLoss(std::move(loss));
    linkedTables.clear();
    queries.clear();
    file.setDatabasePasswordSet(databasePasswordSet);
    losses.clear();
    for (auto &table : tables)
        file.addTable(std::move(table));
    foreignKeys.clear();
    tables.clear();
}

bool readModelStream(ByteSource &source, LoadObserver *observer, ReceivedModel &model)
{
    WireReader reader(source);
    char magic[sizeof kLoaderStreamMagic];
    std::uint32_t version = 0;
    if (!reader.getRaw(magic, sizeof magic) || std::memcmp(magic, kLoaderStreamMagic, sizeof magic) != 0 ||
        !reader.getRaw(&version, sizeof version))
        return false;
    if (version != kLoaderStreamVersion) {
        // A helper from another build: say so, since every file would fail to open.
        C_LogError("vellum-loader sends stream version %u, this program reads version %u: install both from the "
                   "same build",
                   version, kLoaderStreamVersion);
        return false;
    }

    bool haveCatalog = false;
    bool haveLosses = false;
    std::size_t received = 0;
    std::map<std::uint64_t, PartialStore> partial; // tables whose storage has begun to arrive
    for (;;) {
        std::uint8_t type = 0;
        if (!reader.beginMessage(type))
            return false;
        switch (static_cast<LoaderMessage>(type)) {
        case LoaderMessage::Catalog: {
            if (haveCatalog)
                return false;
            haveCatalog = true;
            const std::uint64_t count = reader.getU64();
            if (count > kMaxTables)
                return false;
            model.tables.resize(static_cast<std::size_t>(count));
            const std::uint64_t expectedRows = reader.getU64();
            if (reader.ok() && observer)
                observer->rowsExpected(expectedRows);
            const std::uint64_t keys = reader.getU64();
            if (keys > reader.remaining() / 8)
                return false;
            for (std::uint64_t i = 0; i < keys; ++i) {
                auto key = decodeForeignKey(reader);
                if (!key)
                    return false;
                model.foreignKeys.push_back(std::move(key));
            }
            if (!decodeCatalogObjects(reader, model))
                return false;
            model.databasePasswordSet = reader.getBool();
            if (!reader.ok())
                return false;
            break;
        }
        case LoaderMessage::TableStarted: {
            const std::uint64_t ordinal = reader.getU64();
            const std::uint64_t count = reader.getU64();
            const std::string name = reader.getString();
            if (!haveCatalog || count != model.tables.size() || ordinal >= count)
                return false;
            if (reader.ok() && observer) {
                observer->tableStarted(name, static_cast<std::size_t>(ordinal), static_cast<std::size_t>(count));
                if (observer->shouldCancel())
                    return false;
            }
            break;
        }
        case LoaderMessage::Rows: {
            const std::uint64_t rows = reader.getU64();
            if (reader.ok() && observer) {
                observer->rowsLoaded(rows);
                if (observer->shouldCancel())
                    return false;
            }
            break;
        }
        case LoaderMessage::Table: {
            const std::uint64_t position = reader.getU64();
            if (!haveCatalog || position >= model.tables.size() || model.tables[position])
                return false;
            PartialStore parts;
            if (const auto it = partial.find(position); it != partial.end()) {
                parts = std::move(it->second);
                partial.erase(it);
            }
            auto table = decodeTable(reader, std::move(parts));
            if (!table)
                return false;
            model.tables[position] = std::move(table);
            ++received;
            break;
        }
        case LoaderMessage::TablePart: {
            const std::uint64_t position = reader.getU64();
            if (!haveCatalog || position >= model.tables.size() || model.tables[position] ||
                !decodeStorePart(reader, partial[position]))
                return false;
            break;
        }
        case LoaderMessage::Losses: {
            if (!haveCatalog || haveLosses || !decodeLosses(reader, model.losses))
                return false;
            haveLosses = true;
            break;
        }
        case LoaderMessage::End: {
            const std::uint64_t count = reader.getU64();
            return reader.endMessage() && haveCatalog && haveLosses && count == model.tables.size() &&
                   received == count;
        }
        default:
            return false;
        }
        if (!reader.endMessage())
            return false;
    }
}

} // namespace vellum

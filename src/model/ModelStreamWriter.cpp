#include "model/ModelStreamWriter.h"

#include "model/TOrbMDBTable.h"

namespace vellum {

ModelStreamWriter::ModelStreamWriter(ByteOutput output, const TOrbMDBFile &relationships)
    : m_output(std::move(output)), m_relationships(relationships)
{
}

void ModelStreamWriter::send(LoaderMessage type, const WireWriter &message)
{
    if (m_ok)
        m_ok = message.send(static_cast<std::uint8_t>(type), m_output);
}

bool ModelStreamWriter::begin()
{
    const std::uint32_t version = kLoaderStreamVersion;
    m_ok = m_output(kLoaderStreamMagic, sizeof kLoaderStreamMagic) && m_output(&version, sizeof version);
    return m_ok;
}

void ModelStreamWriter::tableStarted(const std::string &name, std::size_t index, std::size_t count)
{
    WireWriter message;
    message.putU64(index);
    message.putU64(count);
    message.putString(name);
    send(LoaderMessage::TableStarted, message);
}

void ModelStreamWriter::rowsLoaded(std::uint64_t totalRows)
{
    WireWriter message;
    message.putU64(totalRows);
    send(LoaderMessage::Rows, message);
}

void ModelStreamWriter::catalogRead(std::size_t count)
{
    m_count = count;
    WireWriter message;
    message.putU64(count);
    message.putU64(m_relationships.allForeignKeys().size());
    for (const auto &key : m_relationships.allForeignKeys())
        encodeForeignKey(message, *key);
    send(LoaderMessage::Catalog, message);
}

void ModelStreamWriter::tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table)
{
    WireWriter message;
    message.putU64(position);
    const auto sent = m_sent.find(position);
    encodeTable(message, *table, sent != m_sent.end() ? sent->second : StoreParts{});
    send(LoaderMessage::Table, message);
    if (sent != m_sent.end())
        m_sent.erase(sent);
    // Sent tables are freed as the next one arrives, so the helper holds one at most; the last
    // one stays until the writer goes, so that freeing it does not hold up the end of the stream.
    m_lastSent = std::move(table);
}

void ModelStreamWriter::tableGrowing(std::size_t position, const TOrbMDBTable &table)
{
    StoreParts &sent = m_sent[position];
    const std::size_t blocks = table.store().blocks().size();
    if (blocks < sent.blocks + 2)
        return; // no block finished since the last part
    WireWriter message;
    message.putU64(position);
    encodeStorePart(message, table.store(), sent);
    send(LoaderMessage::TablePart, message);
}

bool ModelStreamWriter::finish()
{
    WireWriter message;
    message.putU64(m_count);
    send(LoaderMessage::End, message);
    return m_ok;
}

} // namespace vellum

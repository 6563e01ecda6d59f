#include "loader/ModelStreamWriter.h"

#include "model/TOrbMDBTable.h"

namespace vellum {

ModelStreamWriter::ModelStreamWriter(ByteOutput output, const TOrbMDBFile &relationships)
    : m_output(std::move(output)), m_relationships(relationships)
{
}

ModelStreamWriter::~ModelStreamWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void ModelStreamWriter::send(LoaderMessage type, WireWriter message, std::unique_ptr<TOrbMDBTable> keepAlive)
{
    if (!m_ok.load(std::memory_order_relaxed))
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(Outgoing{type, std::move(message), std::move(keepAlive)});
    }
    m_changed.notify_one();
}

void ModelStreamWriter::sendLoop()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stop || m_closing || !m_queue.empty(); });
        if (m_stop || m_queue.empty())
            return;
        Outgoing next = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        if (m_ok.load(std::memory_order_relaxed) && !next.message.send(static_cast<std::uint8_t>(next.type), m_output))
            m_ok = false;
        // A sent table is freed here, off the loading thread, when the next one has gone out;
        // the last one stays with the writer, so that freeing it never holds up the end.
        if (next.keepAlive)
            m_lastSent = std::move(next.keepAlive);
        lock.lock();
    }
}

bool ModelStreamWriter::begin()
{
    const std::uint32_t version = kLoaderStreamVersion;
    m_ok = m_output(kLoaderStreamMagic, sizeof kLoaderStreamMagic) && m_output(&version, sizeof version);
    if (m_ok)
        m_thread = std::thread([this] { sendLoop(); });
    return m_ok;
}

void ModelStreamWriter::tableStarted(const std::string &name, std::size_t index, std::size_t count)
{
    WireWriter message;
    message.putU64(index);
    message.putU64(count);
    message.putString(name);
    send(LoaderMessage::TableStarted, std::move(message));
}

void ModelStreamWriter::rowsLoaded(std::uint64_t totalRows)
{
    WireWriter message;
    message.putU64(totalRows);
    send(LoaderMessage::Rows, std::move(message));
}

void ModelStreamWriter::catalogRead(std::size_t count, std::uint64_t expectedRows)
{
    m_count = count;
    WireWriter message;
    message.putU64(count);
    message.putU64(expectedRows);
    message.putU64(m_relationships.allForeignKeys().size());
    for (const auto &key : m_relationships.allForeignKeys())
        encodeForeignKey(message, *key);
    encodeCatalogObjects(message, m_relationships);
    encodeFileProtection(message, m_relationships);
    send(LoaderMessage::Catalog, std::move(message));
}

void ModelStreamWriter::tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table)
{
    WireWriter message;
    message.putU64(position);
    const auto sent = m_sent.find(position);
    encodeTable(message, *table, sent != m_sent.end() ? sent->second : StoreParts{});
    if (sent != m_sent.end())
        m_sent.erase(sent);
    send(LoaderMessage::Table, std::move(message), std::move(table));
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
    send(LoaderMessage::TablePart, std::move(message));
}

bool ModelStreamWriter::finish()
{
    WireWriter losses;
    encodeLosses(losses, m_relationships.losses());
    send(LoaderMessage::Losses, std::move(losses));
    WireWriter message;
    message.putU64(m_count);
    send(LoaderMessage::End, std::move(message));
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
    return m_ok;
}

} // namespace vellum

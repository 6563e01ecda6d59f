#pragma once

#include "loader/WireWriter.h"
#include "loader/modelWire.h"
#include "mdb/MdbLoader.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace vellum {

/// The sending end of the loader's pipe format (modelWire.h): a load sink that writes the
/// stream header, a Catalog message with the relationships, progress messages, each table as
/// it completes, and End. Used by vellum-loader.
class ModelStreamWriter : public LoadSink {
public:
    /// `relationships` is the file the load reads its relationships into; it is sent with the
    /// catalog.
    ModelStreamWriter(ByteOutput output, const TOrbMDBFile &relationships);
    /// Stops the sending thread; messages not yet sent are dropped.
    ~ModelStreamWriter() override;
    ModelStreamWriter(const ModelStreamWriter &) = delete;
    ModelStreamWriter &operator=(const ModelStreamWriter &) = delete;

    /// Writes the stream header.
    [[nodiscard]] bool begin();
    /// Writes the losses the load reported into the relationships' file, then End, and waits until everything queued
    /// went out; true when every message did.
    [[nodiscard]] bool finish();

    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override;
    void rowsLoaded(std::uint64_t totalRows) override;
    /// Asks the load to stop once the pipe failed.
    bool shouldCancel() override { return !m_ok.load(std::memory_order_relaxed); }
    void catalogRead(std::size_t count, std::uint64_t expectedRows) override;
    void tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table) override;
    /// Sends the blocks of the table that are finished, once there is a new one.
    void tableGrowing(std::size_t position, const TOrbMDBTable &table) override;

private:
    struct Outgoing {
        LoaderMessage type;
        WireWriter message;
        std::unique_ptr<TOrbMDBTable> keepAlive; ///< what the message references, freed once sent
    };

    void send(LoaderMessage type, WireWriter message, std::unique_ptr<TOrbMDBTable> keepAlive = nullptr);
    void sendLoop();

    ByteOutput m_output;
    const TOrbMDBFile &m_relationships;
    std::size_t m_count = 0;
    std::map<std::size_t, StoreParts> m_sent; ///< storage sent ahead, by table position
    std::atomic<bool> m_ok{true};
    std::unique_ptr<TOrbMDBTable> m_lastSent; ///< touched by the sending thread only

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Outgoing> m_queue;
    bool m_closing = false; ///< no more messages: the thread ends once the queue is empty
    bool m_stop = false;    ///< end at once, dropping what is queued
    std::thread m_thread;
};

} // namespace vellum

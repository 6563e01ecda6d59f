#pragma once

#include "export/xls/LeBytes.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vellum::xls {

/// Writes a compound file (version 3, 512-byte sectors) holding named streams in its root
/// storage: the container of a BIFF8 workbook. Streams of 4096 bytes or more go into big
/// sectors; smaller ones into 64-byte mini sectors inside the root's mini stream. Stream bodies
/// are produced on demand, so a large stream never has to sit in memory.
class CompoundFileWriter {
public:
    /// Writes exactly the announced number of bytes of one stream; false on failure.
    using Producer = std::function<bool(ExportSink &)>;

    /// Adds a stream of the root storage. The name is at most 31 UTF-16 units.
    /// False for a longer or empty name or a duplicate.
    [[nodiscard]] bool addStream(const std::u16string &name, std::uint64_t size, Producer producer);
    /// Adds a stream whose bytes are at hand.
    [[nodiscard]] bool addStream(const std::u16string &name, std::string bytes);

    /// Writes the whole file. False when a producer failed, wrote the wrong number of bytes,
    /// or the sink failed.
    [[nodiscard]] bool write(ExportSink &out) const;

    static constexpr std::uint32_t kSectorSize = 512;
    static constexpr std::uint32_t kMiniSectorSize = 64;
    static constexpr std::uint32_t kMiniStreamCutoff = 4096;

private:
    struct Stream {
        std::u16string name;
        std::uint64_t size;
        Producer producer;
    };
    std::vector<Stream> m_streams;
};

} // namespace vellum::xls

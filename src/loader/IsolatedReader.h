#pragma once

#include "mdb/MdbLoader.h"
#include "model/FileReader.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

namespace vellum {

/// How the isolated load runs its helper.
struct IsolatedLoadOptions {
    /// The helper executable; empty means vellum-loader beside the running executable.
    std::string helperPath;
    /// The helper is killed (and the open fails) when it sends nothing for this long.
    std::chrono::milliseconds stallTimeout{30000};
    /// Passed on to the helper's own load.
    LoadOptions load;
    /// The helper's address-space limit in bytes; 0 lets it derive one from the file's size
    /// and the machine's memory.
    std::uint64_t memoryLimit = 0;
};

/// Reads the file in a vellum-loader helper process and receives the model over a pipe. False
/// (and the file unchanged but for its open failure) when the file fails the check before
/// reading, the helper cannot start, crashes, stalls, runs out of memory, sends anything
/// malformed, ends without a complete model, or the observer cancels; the helper is then
/// killed and reaped.
[[nodiscard]] bool loadFileIsolated(TOrbMDBFile &file, LoadObserver *observer, const IsolatedLoadOptions &options = {});

/// Where the helper is looked for: vellum-loader in the folder of the running executable
/// ("" when that folder cannot be found out).
const std::string &helperPathBesideExecutable();

/// The vellum-loader beside the running executable ("" when there is none).
const std::string &isolatedLoaderPath();

/// True when the vellum-loader helper is found beside the running executable.
bool isolatedLoaderAvailable();

/// Reads a file in a vellum-loader helper process (`loadFileIsolated`), so that a damaged
/// file can neither hang nor crash the process that opens it.
class IsolatedReader : public FileReader {
public:
    /// `options` name the helper, its stall timeout and its load's spread.
    explicit IsolatedReader(IsolatedLoadOptions options = {}) : m_options(std::move(options)) {}

    /// Reads the whole file into `file` through the helper; see `loadFileIsolated`.
    [[nodiscard]] bool read(TOrbMDBFile &file, LoadObserver *observer) override;

private:
    IsolatedLoadOptions m_options;
};

} // namespace vellum

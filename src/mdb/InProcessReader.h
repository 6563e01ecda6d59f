#pragma once

#include "mdb/MdbLoader.h"
#include "model/FileReader.h"

namespace vellum {

/// Reads a file with libmdb in this process (`loadFileInProcess`). A damaged file that makes
/// libmdb hang or crash takes this process with it; the isolated reader avoids that.
class InProcessReader : public FileReader {
public:
    /// `options` spread the load over one or two libmdb handles.
    explicit InProcessReader(const LoadOptions &options = {}) : m_options(options) {}

    /// Reads the whole file into `file` with libmdb; see `loadFileInProcess`.
    [[nodiscard]] bool read(TOrbMDBFile &file, LoadObserver *observer) override;

private:
    LoadOptions m_options;
};

} // namespace vellum

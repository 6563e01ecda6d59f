#pragma once

#include "mdb/MdbLoader.h"
#include "model/FileReader.h"

#include <functional>
#include <memory>
#include <string>

namespace vellum {

/// The line passed on when files are read in process because the helper is missing:
/// "reading in process: vellum-loader not found at <path>".
std::string inProcessNotice(const std::string &helperPath);

/// The reader for the files this process opens: the isolated reader when vellum-loader is
/// found beside the running executable; otherwise the in-process reader, after handing `tell`
/// the line of `inProcessNotice` with the path looked at (standard error for the command
/// line, the log for the window), so that losing the isolation is never silent.
/// `load` is passed on to whichever reader is chosen.
std::unique_ptr<FileReader> chooseFileReader(const std::function<void(const std::string &line)> &tell,
                                             const LoadOptions &load = {});

} // namespace vellum

#pragma once

#include "model/OpenFailure.h"

#include <string>

namespace vellum {

/// Checks a path before any reader opens it: it must name (after symbolic links) an existing
/// regular file that this process may read and whose header carries an Access database's
/// signature. A FIFO or a device is never opened, so the check cannot block. `None` when the
/// file may be read, otherwise why not.
OpenFailure checkDatabaseFile(const std::string &path);

/// True when the first bytes of a file are an Access database's header: Jet 3/4 ("Standard
/// Jet DB") or ACE ("Standard ACE DB") after the page-type bytes.
bool hasAccessSignature(const unsigned char *bytes, std::size_t length);

} // namespace vellum

#pragma once

namespace vellum {

/// Why a file could not be opened (or `None` when it was, or has not been tried). Every reader
/// sets one on the file it fails to read, so that the user is told why in one line.
enum class OpenFailure : unsigned char {
    None,
    NotFound,          ///< no file at the path
    NotReadable,       ///< the file exists but may not be read (permission)
    NotRegularFile,    ///< a directory, FIFO, socket or device
    NotAccessFile,     ///< the header's signature is not an Access database's (an empty file too)
    PasswordNeeded,    ///< an encrypted file and no password was given
    WrongPassword,     ///< an encrypted file and the password given does not decrypt it
    CatalogUnreadable, ///< the catalog (MSysObjects) cannot be read
    NoProgress,        ///< the reader stopped making progress
    OutOfMemory,       ///< the reader ran into its memory limit
    Crashed,           ///< the reader ended abnormally
    Cancelled,         ///< the user stopped the open
    Other,             ///< anything else the reader reported
};

} // namespace vellum

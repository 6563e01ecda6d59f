#pragma once

#include "mdb/OfficePageCipher.h"
#include "model/OpenFailure.h"

#include <memory>
#include <string>

namespace vellum {

/// What libmdb reads for one load: the file on disk, or, for an encrypted Access 2007+ file,
/// the whole file decrypted into memory. The decrypted bytes never reach the disk; every libmdb
/// handle of one load reads the same image.
struct DatabaseImage {
    /// Why the file cannot be read (PasswordNeeded, WrongPassword, Other for an encryption this
    /// reader cannot decrypt or a file that cannot be read); None otherwise.
    OpenFailure failure = OpenFailure::None;
    EncryptionScheme scheme = EncryptionScheme::None;
    /// A Jet 3/4 header that holds a database password.
    bool databasePasswordSet = false;
    /// The decrypted file; null when libmdb reads the file from disk as it is.
    std::shared_ptr<Bytes> bytes;
};

/// Looks at the header of the file at `path` and, when it is Office-encrypted, checks
/// `password` and decrypts every page into memory. A file without Office encryption (or one
/// whose header cannot be read: libmdb then says what it makes of it) gives an image without
/// bytes.
DatabaseImage prepareDatabaseImage(const std::string &path, const std::string &password);

/// Only checks `password` against the file's verifier, without decrypting: None for a file
/// that needs no password or whose password is right, else PasswordNeeded, WrongPassword or
/// Other (an encryption this reader cannot decrypt).
OpenFailure checkDatabasePassword(const std::string &path, const std::string &password);

/// True when the header of the file at `path` says it is Office-encrypted (needs a password).
bool databaseNeedsPassword(const std::string &path);

} // namespace vellum

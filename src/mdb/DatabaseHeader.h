#pragma once

#include "mdb/cryptoFunctions.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vellum {

/// What page 0 of an Access file says about how the file is protected: its format version,
/// the key its pages are encoded with, whether a Jet database password is set, and the Office
/// encryption information of an encrypted Access 2007+ file. Part of the header (bytes 0x18 on)
/// is stored masked with a fixed RC4 key; this class reads it unmasked.
class DatabaseHeader {
public:
    /// Where the page-encoding key lies in page 0 (inside the masked part).
    static constexpr std::size_t kEncodingKeyOffset = 0x3e;
    /// Where an Access 2007+ file keeps the length of its encryption information, which follows.
    static constexpr std::size_t kEncryptionInfoOffset = 0x299;
    /// Bytes of page 0 read: the page of the Access 2000 and later formats.
    static constexpr std::size_t kHeaderBytes = 4096;

    /// Reads the header from the first bytes of a file (at least the 2048 bytes of a Jet 3
    /// page); nullopt when they are not an Access database's.
    static std::optional<DatabaseHeader> parse(const unsigned char *page, std::size_t length);
    /// Reads page 0 of the file at `path`; nullopt when it cannot be read or is not an Access
    /// database's header.
    static std::optional<DatabaseHeader> readFile(const std::string &path);
    /// The fixed mask over bytes 0x18 to 0x97 of every Jet header (the RC4 key stream of
    /// `headerMaskKey`), and that key.
    static std::span<const unsigned char> headerMask();
    static std::span<const unsigned char> headerMaskKey();

    /// The version byte: 0 Jet 3 (Access 97), 1 Jet 4 (Access 2000-2003), 2 and more Access 2007+.
    int jetVersion() const { return m_jetVersion; }
    /// 2048 bytes for Jet 3, 4096 for later formats.
    std::size_t pageSize() const { return m_jetVersion == 0 ? 2048 : 4096; }
    /// The key every page after page 0 is encoded with (0: pages are stored plain).
    std::uint32_t encodingKey() const { return m_encodingKey; }
    /// An Access 2007+ file whose pages are encrypted with a password (Office encryption).
    bool officeEncrypted() const { return m_jetVersion >= 2 && m_encodingKey != 0; }
    /// The encryption information that follows its length at kEncryptionInfoOffset (empty
    /// for files that are not Office-encrypted or store none).
    const Bytes &encryptionInfo() const { return m_encryptionInfo; }
    /// A Jet 3 or Jet 4 file whose header holds a database password (such a file opens and
    /// decodes without it: Access alone asks for it).
    bool hasDatabasePassword() const { return m_hasDatabasePassword; }

    /// Sets the page-encoding key stored in `page` (page 0 of a file image) to 0, keeping the
    /// mask, so that a reader takes the pages after it as plain: used once they are decrypted.
    static void clearEncodingKey(unsigned char *page, std::size_t length);

private:
    int m_jetVersion = 0;
    std::uint32_t m_encodingKey = 0;
    Bytes m_encryptionInfo;
    bool m_hasDatabasePassword = false;
};

} // namespace vellum

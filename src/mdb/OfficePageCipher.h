#pragma once

#include "mdb/DatabaseHeader.h"
#include "mdb/cryptoFunctions.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace vellum {

/// How a database's pages are protected.
enum class EncryptionScheme {
    None,            ///< pages stored plain
    JetPageEncoding, ///< Jet 3/4 RC4 page encoding with a key from the header (needs no password)
    OfficeRc4,       ///< Office binary RC4 with MD5 (encryption information version 1.1)
    Rc4CryptoApi,    ///< RC4 through the CryptoAPI with SHA-1 (version 2/3/4.2)
    EcmaStandard,    ///< ECMA-376 Standard: AES in ECB mode, SHA-1 stretched 50,000 times
    NonStandard,     ///< AES as in ECMA-376 Standard without the stretching, as some Access versions wrote it
    Agile,           ///< ECMA-376 Agile: an XML descriptor, AES in CBC mode (version 4.4)
    Unsupported,     ///< Office encryption in a form this reader cannot decrypt (extensible, certificate only)
};

/// A short English name of the scheme ("RC4 CryptoAPI", "ECMA-376 Agile", …).
const char *encryptionSchemeName(EncryptionScheme scheme);

/// The scheme a header declares, without a password.
EncryptionScheme encryptionSchemeOf(const DatabaseHeader &header);

/// The outcome of checking a password against an encrypted file's verifier.
enum class PasswordCheck { Accepted, Needed, Wrong, Unsupported };

/// Decrypts the pages of an Office-encrypted Access 2007+ file: derives the key from the
/// password as the encryption information prescribes, checks it against the stored verifier,
/// and decrypts a page given its number (each page has a key or IV of its own, derived from the
/// header's encoding key XOR-ed with the page number). Page 0 is never encrypted.
class OfficePageCipher {
public:
    struct Setup {
        PasswordCheck check = PasswordCheck::Unsupported;
        EncryptionScheme scheme = EncryptionScheme::None;
        /// Set only when `check` is Accepted.
        std::unique_ptr<OfficePageCipher> cipher;
    };

    /// Derives the key for `password` (UTF-8; Access uses its first 255 UTF-16 units) and checks
    /// it. An empty password gives Needed; a header that is not Office-encrypted Unsupported.
    static Setup create(const DatabaseHeader &header, const std::string &password);

    /// Decrypts page `pageNumber` (not 0) in place; `length` is a whole page (a multiple of 16).
    /// False when the cipher refuses it. Safe to call from several threads at once.
    [[nodiscard]] bool decryptPage(unsigned char *page, std::size_t length, std::uint32_t pageNumber) const;

    /// The key material is wiped when the cipher goes.
    ~OfficePageCipher();
    OfficePageCipher(const OfficePageCipher &) = delete;
    OfficePageCipher &operator=(const OfficePageCipher &) = delete;

    EncryptionScheme scheme() const { return m_scheme; }

private:
    OfficePageCipher() = default;
    /// The four block bytes of a page: the encoding key XOR the page number, least significant first.
    Bytes blockBytes(std::uint32_t pageNumber) const { return littleEndian32(m_encodingKey ^ pageNumber); }
    /// The ECMA-376 Standard key of a block (SHA-1 of the stretched hash and the block, widened
    /// through the 0x36/0x5C pads).
    Bytes standardKey(const Bytes &block) const;
    /// The RC4 key of a block for the RC4 schemes.
    Bytes rc4Key(const Bytes &block) const;

    EncryptionScheme m_scheme = EncryptionScheme::None;
    std::uint32_t m_encodingKey = 0;
    HashKind m_hash = HashKind::Sha1;
    /// RC4 schemes and Standard: the (stretched) password hash the block keys derive from.
    Bytes m_baseHash;
    /// Key length in bytes (the RC4 key is widened to 16 bytes when it is 40 bits).
    std::size_t m_keyBytes = 16;
    /// Agile: the intermediate key, the key data's salt and block size.
    Bytes m_key;
    Bytes m_salt;
    std::size_t m_blockSize = 16;
};

} // namespace vellum

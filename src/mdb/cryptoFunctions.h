#pragma once

// The hashes and ciphers the decryption of Access files needs, over OpenSSL's libcrypto. Every
// function is safe to call from several threads at once.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vellum {

using Bytes = std::vector<unsigned char>;

/// The hash functions the Office encryption descriptors name.
enum class HashKind { Md5, Sha1, Sha256, Sha384, Sha512 };

/// The hash named in an agile encryption descriptor ("SHA1", "SHA512", …); nullopt for others.
std::optional<HashKind> hashKindNamed(std::string_view name);

/// Size in bytes of a digest of `kind`.
std::size_t hashSize(HashKind kind);

/// The digest of the concatenation of `first` and `second` (either may be empty).
Bytes hashOf(HashKind kind, const Bytes &first, const Bytes &second = {});

/// Office's hash stretching: H(i + h) for i from 0 to `iterations` - 1, i as four bytes
/// least significant first, starting from `base`. One hash context serves every round.
Bytes iteratedHash(HashKind kind, const Bytes &base, std::uint32_t iterations);

/// Overwrites key material with zeros in a way the compiler does not drop, then empties it.
void wipe(Bytes &bytes);

/// `bytes` cut or extended to `length`, extended with `pad` bytes.
Bytes resized(Bytes bytes, std::size_t length, unsigned char pad = 0);

/// The four bytes of `value`, least significant first (how Office numbers hash rounds and blocks).
Bytes littleEndian32(std::uint32_t value);

/// Decrypts `data` in place with AES in ECB mode (no padding); the key is 16, 24 or 32 bytes and
/// the length of `data` a multiple of 16. False when OpenSSL refuses the key or the length.
[[nodiscard]] bool aesEcbDecrypt(const Bytes &key, unsigned char *data, std::size_t length);

/// Decrypts `data` in place with AES in CBC mode (no padding) from the 16-byte `iv`. False when
/// OpenSSL refuses the key, the IV or the length.
[[nodiscard]] bool aesCbcDecrypt(const Bytes &key, const Bytes &iv, unsigned char *data, std::size_t length);

/// An RC4 key stream applied to buffers one after the other (RC4 decrypts as it encrypts). RC4
/// lives in OpenSSL's legacy provider, which is loaded into a library context of our own.
class Rc4Stream {
public:
    /// A stream keyed with `key` (1 to 256 bytes); `valid()` says whether OpenSSL accepted it.
    explicit Rc4Stream(const Bytes &key);
    ~Rc4Stream();
    Rc4Stream(const Rc4Stream &) = delete;
    Rc4Stream &operator=(const Rc4Stream &) = delete;

    bool valid() const { return m_context != nullptr; }
    /// Applies the next `length` bytes of the key stream to `data`; false when the stream is invalid.
    [[nodiscard]] bool apply(unsigned char *data, std::size_t length);

private:
    void *m_context = nullptr;
};

/// The bytes of standard base64 text (whitespace ignored); nullopt when it is not base64.
std::optional<Bytes> base64Decode(std::string_view text);

} // namespace vellum

#include "mdb/cryptoFunctions.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <string>

namespace vellum {
namespace {

const EVP_MD *digestOf(HashKind kind)
{
    switch (kind) {
    case HashKind::Md5:
        return EVP_md5();
    case HashKind::Sha1:
        return EVP_sha1();
    case HashKind::Sha256:
        return EVP_sha256();
    case HashKind::Sha384:
        return EVP_sha384();
    case HashKind::Sha512:
        return EVP_sha512();
    }
    return EVP_sha1();
}

struct CipherContextFree {
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, CipherContextFree>;

/// Decrypts in place without padding; the cipher's block size divides `length`.
bool decryptInPlace(const EVP_CIPHER *cipher, const Bytes &key, const unsigned char *iv, unsigned char *data,
                    std::size_t length)
{
    if (!cipher || key.size() != static_cast<std::size_t>(EVP_CIPHER_get_key_length(cipher)) || length > INT_MAX ||
        length % 16 != 0)
        return false;
    CipherContext context(EVP_CIPHER_CTX_new());
    if (!context || EVP_DecryptInit_ex2(context.get(), cipher, key.data(), iv, nullptr) != 1)
        return false;
    EVP_CIPHER_CTX_set_padding(context.get(), 0);
    int written = 0;
    if (length > 0 && EVP_DecryptUpdate(context.get(), data, &written, data, static_cast<int>(length)) != 1)
        return false;
    int last = 0;
    return EVP_DecryptFinal_ex(context.get(), data + written, &last) == 1 &&
           static_cast<std::size_t>(written + last) == length;
}

const EVP_CIPHER *aesCipher(std::size_t keyLength, bool cbc)
{
    switch (keyLength) {
    case 16:
        return cbc ? EVP_aes_128_cbc() : EVP_aes_128_ecb();
    case 24:
        return cbc ? EVP_aes_192_cbc() : EVP_aes_192_ecb();
    case 32:
        return cbc ? EVP_aes_256_cbc() : EVP_aes_256_ecb();
    default:
        return nullptr;
    }
}

/// RC4 from the legacy provider, loaded once into a library context of our own so that the
/// providers of the rest of the process stay as they are. Null when the provider is missing.
const EVP_CIPHER *rc4Cipher()
{
    static const EVP_CIPHER *cipher = [] {
        OSSL_LIB_CTX *library = OSSL_LIB_CTX_new();
        if (!library)
            return static_cast<EVP_CIPHER *>(nullptr);
        if (!OSSL_PROVIDER_load(library, "legacy"))
            return static_cast<EVP_CIPHER *>(nullptr);
        return EVP_CIPHER_fetch(library, "RC4", nullptr);
    }();
    return cipher;
}

} // namespace

std::optional<HashKind> hashKindNamed(std::string_view name)
{
    if (name == "MD5")
        return HashKind::Md5;
    if (name == "SHA1" || name == "SHA-1")
        return HashKind::Sha1;
    if (name == "SHA256")
        return HashKind::Sha256;
    if (name == "SHA384")
        return HashKind::Sha384;
    if (name == "SHA512")
        return HashKind::Sha512;
    return std::nullopt;
}

std::size_t hashSize(HashKind kind)
{
    return static_cast<std::size_t>(EVP_MD_get_size(digestOf(kind)));
}

Bytes hashOf(HashKind kind, const Bytes &first, const Bytes &second)
{
    Bytes digest(EVP_MAX_MD_SIZE);
    unsigned int length = 0;
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!context || EVP_DigestInit_ex2(context.get(), digestOf(kind), nullptr) != 1 ||
        EVP_DigestUpdate(context.get(), first.data(), first.size()) != 1 ||
        EVP_DigestUpdate(context.get(), second.data(), second.size()) != 1 ||
        EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1)
        return {};
    digest.resize(length);
    return digest;
}

Bytes iteratedHash(HashKind kind, const Bytes &base, std::uint32_t iterations)
{
    Bytes current = base;
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!context)
        return {};
    const EVP_MD *digest = digestOf(kind);
    Bytes next(EVP_MAX_MD_SIZE);
    for (std::uint32_t i = 0; i < iterations; ++i) {
        const Bytes round = littleEndian32(i);
        unsigned int length = 0;
        if (EVP_DigestInit_ex2(context.get(), digest, nullptr) != 1 ||
            EVP_DigestUpdate(context.get(), round.data(), round.size()) != 1 ||
            EVP_DigestUpdate(context.get(), current.data(), current.size()) != 1 ||
            EVP_DigestFinal_ex(context.get(), next.data(), &length) != 1)
            return {};
        current.assign(next.begin(), next.begin() + length);
    }
    return current;
}

void wipe(Bytes &bytes)
{
    if (!bytes.empty())
        OPENSSL_cleanse(bytes.data(), bytes.size());
    bytes.clear();
}

Bytes resized(Bytes bytes, std::size_t length, unsigned char pad)
{
    bytes.resize(length, pad);
    return bytes;
}

Bytes littleEndian32(std::uint32_t value)
{
    return {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8),
            static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 24)};
}

bool aesEcbDecrypt(const Bytes &key, unsigned char *data, std::size_t length)
{
    return decryptInPlace(aesCipher(key.size(), false), key, nullptr, data, length);
}

bool aesCbcDecrypt(const Bytes &key, const Bytes &iv, unsigned char *data, std::size_t length)
{
    if (iv.size() != 16)
        return false;
    return decryptInPlace(aesCipher(key.size(), true), key, iv.data(), data, length);
}

Rc4Stream::Rc4Stream(const Bytes &key)
{
    const EVP_CIPHER *cipher = rc4Cipher();
    if (!cipher || key.empty() || key.size() > 256)
        return;
    CipherContext context(EVP_CIPHER_CTX_new());
    if (!context || EVP_DecryptInit_ex2(context.get(), cipher, nullptr, nullptr, nullptr) != 1 ||
        EVP_CIPHER_CTX_set_key_length(context.get(), static_cast<int>(key.size())) != 1 ||
        EVP_DecryptInit_ex2(context.get(), nullptr, key.data(), nullptr, nullptr) != 1)
        return;
    m_context = context.release();
}

Rc4Stream::~Rc4Stream()
{
    EVP_CIPHER_CTX_free(static_cast<EVP_CIPHER_CTX *>(m_context));
}

bool Rc4Stream::apply(unsigned char *data, std::size_t length)
{
    if (!m_context)
        return false;
    auto *context = static_cast<EVP_CIPHER_CTX *>(m_context);
    while (length > 0) {
        const int chunk = static_cast<int>(std::min<std::size_t>(length, 1 << 20));
        int written = 0;
        if (EVP_DecryptUpdate(context, data, &written, data, chunk) != 1 || written != chunk)
            return false;
        data += chunk;
        length -= static_cast<std::size_t>(chunk);
    }
    return true;
}

std::optional<Bytes> base64Decode(std::string_view text)
{
    std::string compact;
    for (const char c : text)
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t')
            compact.push_back(c);
    if (compact.size() % 4 != 0 || compact.size() > INT_MAX)
        return std::nullopt;
    Bytes out(compact.size() / 4 * 3);
    const int n = EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char *>(compact.data()),
                                  static_cast<int>(compact.size()));
    if (n < 0)
        return std::nullopt;
    std::size_t padding = 0;
    for (auto it = compact.rbegin(); it != compact.rend() && *it == '=' && padding < 2; ++it)
        ++padding;
    out.resize(static_cast<std::size_t>(n) - padding);
    return out;
}

} // namespace vellum

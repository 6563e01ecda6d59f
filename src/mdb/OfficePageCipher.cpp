#include "mdb/OfficePageCipher.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string_view>

namespace vellum {
namespace {

constexpr std::size_t kMaxPasswordUnits = 255;
constexpr std::uint32_t kFlagCryptoApi = 0x04;
constexpr std::uint32_t kFlagExternal = 0x10;
constexpr std::uint32_t kFlagAes = 0x20;
constexpr std::uint32_t kAlgorithmRc4 = 0x6801;
constexpr std::uint32_t kAlgorithmAes128 = 0x660E;
constexpr std::uint32_t kAlgorithmAes192 = 0x660F;
constexpr std::uint32_t kAlgorithmAes256 = 0x6610;
constexpr std::uint32_t kHashSha1 = 0x8004;
constexpr std::uint32_t kStandardSpinCount = 50000;
/// The most hash rounds an agile descriptor may ask for.
constexpr std::uint32_t kMaxSpinCount = 10'000'000;
constexpr std::size_t kSaltSize = 16;
constexpr std::size_t kVerifierSize = 16;
constexpr std::uint32_t kAgileReserved = 0x40;
const Bytes kVerifierInputBlock = {0xfe, 0xa7, 0xd2, 0x76, 0x3b, 0x4b, 0x9e, 0x79};
const Bytes kVerifierValueBlock = {0xd7, 0xaa, 0x0f, 0x6d, 0x30, 0x61, 0x34, 0x4e};
const Bytes kKeyValueBlock = {0x14, 0x6e, 0x0b, 0xe7, 0xab, 0xac, 0xd0, 0xd6};

/// Reads little-endian numbers from the encryption information, failing past its end.
class InfoReader {
public:
    explicit InfoReader(const Bytes &bytes, std::size_t position = 0) : m_bytes(bytes), m_position(position) {}
    std::optional<std::uint32_t> u16()
    {
        if (m_position + 2 > m_bytes.size())
            return std::nullopt;
        const std::uint32_t value = m_bytes[m_position] | static_cast<std::uint32_t>(m_bytes[m_position + 1]) << 8;
        m_position += 2;
        return value;
    }
    std::optional<std::uint32_t> u32()
    {
        const auto low = u16();
        const auto high = low ? u16() : std::nullopt;
        if (!high)
            return std::nullopt;
        return *low | *high << 16;
    }
    std::optional<Bytes> bytes(std::size_t count)
    {
        if (count > m_bytes.size() - std::min(m_position, m_bytes.size()))
            return std::nullopt;
        Bytes out(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position),
                  m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position + count));
        m_position += count;
        return out;
    }
    std::size_t position() const { return m_position; }

private:
    const Bytes &m_bytes;
    std::size_t m_position;
};

/// The password as Access hashes it: UTF-16LE, at most 255 units. Bytes that are not UTF-8 are
/// taken as Latin-1 characters.
Bytes passwordBytes(const std::string &password)
{
    std::vector<char16_t> units;
    for (std::size_t i = 0; i < password.size();) {
        const auto byte = static_cast<unsigned char>(password[i]);
        std::size_t length = byte < 0x80 ? 1 : (byte >> 5) == 6 ? 2 : (byte >> 4) == 14 ? 3 : (byte >> 3) == 30 ? 4 : 0;
        char32_t code = 0;
        bool valid = length > 0 && i + length <= password.size();
        if (valid) {
            code = length == 1 ? byte : byte & (0x7f >> length);
            for (std::size_t k = 1; k < length; ++k) {
                const auto next = static_cast<unsigned char>(password[i + k]);
                valid = valid && (next & 0xc0) == 0x80;
                code = code << 6 | (next & 0x3f);
            }
        }
        if (!valid) {
            code = byte;
            length = 1;
        }
        if (code >= 0x10000) {
            code -= 0x10000;
            units.push_back(static_cast<char16_t>(0xd800 + (code >> 10)));
            units.push_back(static_cast<char16_t>(0xdc00 + (code & 0x3ff)));
        } else {
            units.push_back(static_cast<char16_t>(code));
        }
        i += length;
    }
    units.resize(std::min(units.size(), kMaxPasswordUnits));
    Bytes out;
    for (const char16_t unit : units) {
        out.push_back(static_cast<unsigned char>(unit & 0xff));
        out.push_back(static_cast<unsigned char>(unit >> 8));
    }
    return out;
}

/// The EncryptionHeader and EncryptionVerifier of the CryptoAPI schemes.
struct CryptoApiInfo {
    std::uint32_t flags = 0;
    std::uint32_t algorithm = 0;
    std::size_t keyBits = 0;
    Bytes salt;
    Bytes encryptedVerifier;
    std::size_t verifierHashSize = 0;
    Bytes encryptedVerifierHash;
};

/// Reads the header and verifier that follow the version and the copy of the flags; nullopt
/// when they are truncated or name an algorithm, hash or key size this reader does not know.
std::optional<CryptoApiInfo> readCryptoApiInfo(const Bytes &info)
{
    InfoReader reader(info, 8);
    const auto headerLength = reader.u32();
    if (!headerLength || *headerLength < 32)
        return std::nullopt;
    const std::size_t headerStart = reader.position();
    CryptoApiInfo out;
    const auto flags = reader.u32();
    const auto sizeExtra = reader.u32();
    const auto algorithm = reader.u32();
    const auto hash = reader.u32();
    const auto keySize = reader.u32();
    if (!flags || !sizeExtra || !algorithm || !hash || !keySize)
        return std::nullopt;
    out.flags = *flags;
    if (out.flags & kFlagExternal)
        return std::nullopt;
    out.algorithm = *algorithm;
    if (out.algorithm == 0)
        out.algorithm = (out.flags & kFlagAes) ? kAlgorithmAes128 : kAlgorithmRc4;
    if (*hash != 0 && *hash != kHashSha1)
        return std::nullopt;
    // The provider name (UTF-16, after two reserved fields) decides the default RC4 key size.
    std::u16string provider;
    InfoReader nameReader(info, headerStart + 32);
    while (nameReader.position() + 2 <= headerStart + *headerLength) {
        const auto unit = nameReader.u16();
        if (!unit || *unit == 0)
            break;
        provider.push_back(static_cast<char16_t>(*unit));
    }
    out.keyBits = *keySize;
    if (out.keyBits == 0) {
        if (out.algorithm == kAlgorithmRc4) {
            std::string lower;
            for (const char16_t c : provider)
                lower.push_back(c < 0x80 ? static_cast<char>(std::tolower(static_cast<int>(c))) : '?');
            const bool base =
                lower.find_first_not_of(' ') == std::string::npos || lower.find(" base ") != std::string::npos;
            out.keyBits = base ? 40 : 128;
        } else {
            out.keyBits = out.algorithm == kAlgorithmAes256 ? 256 : out.algorithm == kAlgorithmAes192 ? 192 : 128;
        }
    }
    if (out.keyBits % 8 != 0)
        return std::nullopt;
    const bool rc4 = out.algorithm == kAlgorithmRc4;
    if (rc4 ? (out.keyBits < 40 || out.keyBits > 512)
            : !((out.algorithm == kAlgorithmAes128 && out.keyBits == 128) ||
                (out.algorithm == kAlgorithmAes192 && out.keyBits == 192) ||
                (out.algorithm == kAlgorithmAes256 && out.keyBits == 256)))
        return std::nullopt;
    InfoReader verifier(info, headerStart + *headerLength);
    const auto saltSize = verifier.u32();
    if (!saltSize || *saltSize != kSaltSize)
        return std::nullopt;
    auto salt = verifier.bytes(kSaltSize);
    auto encryptedVerifier = verifier.bytes(kVerifierSize);
    const auto verifierHashSize = verifier.u32();
    auto encryptedVerifierHash = verifierHashSize ? verifier.bytes(rc4 ? 20 : 32) : std::nullopt;
    if (!salt || !encryptedVerifier || !encryptedVerifierHash || *verifierHashSize == 0 || *verifierHashSize > 32)
        return std::nullopt;
    out.salt = std::move(*salt);
    out.encryptedVerifier = std::move(*encryptedVerifier);
    out.verifierHashSize = *verifierHashSize;
    out.encryptedVerifierHash = std::move(*encryptedVerifierHash);
    return out;
}

/// The value of attribute `name` in the first start tag named `element` of the XML text;
/// nullopt when there is no such tag or attribute. The descriptor Access writes is flat: every
/// value this reader needs is an attribute.
std::optional<std::string> xmlAttribute(std::string_view xml, std::string_view element, std::string_view name)
{
    const std::string open = "<" + std::string(element);
    std::size_t start = 0;
    for (;;) {
        start = xml.find(open, start);
        if (start == std::string_view::npos)
            return std::nullopt;
        const char after = start + open.size() < xml.size() ? xml[start + open.size()] : '\0';
        if (after == ' ' || after == '\t' || after == '\r' || after == '\n' || after == '/' || after == '>')
            break;
        start += open.size();
    }
    const std::size_t end = xml.find('>', start);
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view tag = xml.substr(start, end - start);
    for (std::size_t at = tag.find(name); at != std::string_view::npos; at = tag.find(name, at + 1)) {
        const char before = at > 0 ? tag[at - 1] : '\0';
        std::size_t eq = at + name.size();
        if (!(before == ' ' || before == '\t' || before == '\r' || before == '\n') || eq >= tag.size() ||
            tag[eq] != '=')
            continue;
        const std::size_t quote = eq + 1;
        if (quote >= tag.size() || (tag[quote] != '"' && tag[quote] != '\''))
            return std::nullopt;
        const std::size_t close = tag.find(tag[quote], quote + 1);
        if (close == std::string_view::npos)
            return std::nullopt;
        return std::string(tag.substr(quote + 1, close - quote - 1));
    }
    return std::nullopt;
}

std::optional<std::uint32_t> xmlNumber(std::string_view xml, std::string_view element, std::string_view name)
{
    const auto text = xmlAttribute(xml, element, name);
    if (!text || text->empty() || text->size() > 9 || text->find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    return static_cast<std::uint32_t>(std::stoul(*text));
}

std::optional<Bytes> xmlBase64(std::string_view xml, std::string_view element, std::string_view name)
{
    const auto text = xmlAttribute(xml, element, name);
    return text ? base64Decode(*text) : std::nullopt;
}

/// The cipher settings of one agile element, accepted only for AES in CBC mode with a known hash.
struct AgileParameters {
    HashKind hash = HashKind::Sha1;
    std::size_t keyBytes = 0;
    std::size_t blockSize = 0;
    Bytes salt;
};

std::optional<AgileParameters> readAgileParameters(std::string_view xml, std::string_view element)
{
    const auto cipher = xmlAttribute(xml, element, "cipherAlgorithm");
    const auto chaining = xmlAttribute(xml, element, "cipherChaining");
    const auto hashName = xmlAttribute(xml, element, "hashAlgorithm");
    const auto keyBits = xmlNumber(xml, element, "keyBits");
    const auto blockSize = xmlNumber(xml, element, "blockSize");
    auto salt = xmlBase64(xml, element, "saltValue");
    if (!cipher || *cipher != "AES" || !chaining || *chaining != "ChainingModeCBC" || !hashName || !keyBits ||
        !blockSize || *blockSize != 16 || !salt || salt->empty())
        return std::nullopt;
    const auto hash = hashKindNamed(*hashName);
    if (!hash || (*keyBits != 128 && *keyBits != 192 && *keyBits != 256))
        return std::nullopt;
    return AgileParameters{*hash, *keyBits / 8, *blockSize, std::move(*salt)};
}

/// Decrypts an agile key blob with AES-CBC under `key` from the salt as IV.
std::optional<Bytes> decryptBlob(const Bytes &key, const AgileParameters &parameters, Bytes blob)
{
    if (blob.empty() || blob.size() % 16 != 0)
        return std::nullopt;
    if (!aesCbcDecrypt(key, resized(parameters.salt, parameters.blockSize, 0x36), blob.data(), blob.size()))
        return std::nullopt;
    return blob;
}

} // namespace

const char *encryptionSchemeName(EncryptionScheme scheme)
{
    switch (scheme) {
    case EncryptionScheme::None:
        return "none";
    case EncryptionScheme::JetPageEncoding:
        return "Jet RC4 page encoding";
    case EncryptionScheme::OfficeRc4:
        return "Office RC4";
    case EncryptionScheme::Rc4CryptoApi:
        return "RC4 CryptoAPI";
    case EncryptionScheme::EcmaStandard:
        return "ECMA-376 Standard";
    case EncryptionScheme::NonStandard:
        return "AES without key stretching";
    case EncryptionScheme::Agile:
        return "ECMA-376 Agile";
    case EncryptionScheme::Unsupported:
        return "unsupported";
    }
    return "unsupported";
}

EncryptionScheme encryptionSchemeOf(const DatabaseHeader &header)
{
    if (header.encodingKey() == 0)
        return EncryptionScheme::None;
    if (!header.officeEncrypted())
        return EncryptionScheme::JetPageEncoding;
    const Bytes &info = header.encryptionInfo();
    InfoReader reader(info);
    const auto major = reader.u16();
    const auto minor = reader.u16();
    if (!major || !minor)
        return EncryptionScheme::Unsupported;
    if (*major == 4 && *minor == 4)
        return EncryptionScheme::Agile;
    if (*major == 1 && *minor == 1)
        return EncryptionScheme::OfficeRc4;
    if ((*major == 2 || *major == 3 || *major == 4) && *minor == 2) {
        const auto api = readCryptoApiInfo(info);
        if (!api || !(api->flags & kFlagCryptoApi))
            return EncryptionScheme::Unsupported;
        const bool rc4 = api->algorithm == kAlgorithmRc4;
        if (api->flags & kFlagAes)
            return rc4 ? EncryptionScheme::Unsupported : EncryptionScheme::EcmaStandard;
        return rc4 ? EncryptionScheme::Rc4CryptoApi : EncryptionScheme::NonStandard;
    }
    return EncryptionScheme::Unsupported;
}

OfficePageCipher::Setup OfficePageCipher::create(const DatabaseHeader &header, const std::string &password)
{
    Setup setup;
    setup.scheme = encryptionSchemeOf(header);
    if (setup.scheme == EncryptionScheme::None || setup.scheme == EncryptionScheme::JetPageEncoding ||
        setup.scheme == EncryptionScheme::Unsupported)
        return setup;
    if (password.empty()) {
        setup.check = PasswordCheck::Needed;
        return setup;
    }
    const Bytes secret = passwordBytes(password);
    const Bytes &info = header.encryptionInfo();
    std::unique_ptr<OfficePageCipher> cipher(new OfficePageCipher);
    cipher->m_scheme = setup.scheme;
    cipher->m_encodingKey = header.encodingKey();
    bool verified = false;

    switch (setup.scheme) {
    case EncryptionScheme::OfficeRc4: {
        InfoReader reader(info, 4);
        const auto salt = reader.bytes(kSaltSize);
        auto encryptedVerifier = reader.bytes(kVerifierSize);
        auto encryptedHash = reader.bytes(16);
        if (!salt || !encryptedVerifier || !encryptedHash)
            return setup; // Unsupported: truncated
        cipher->m_hash = HashKind::Md5;
        // The truncated password hash and the salt, repeated 16 times, hashed and truncated again.
        Bytes fill = resized(hashOf(HashKind::Md5, secret), 5);
        fill.insert(fill.end(), salt->begin(), salt->end());
        Bytes repeated;
        for (int i = 0; i < 16; ++i)
            repeated.insert(repeated.end(), fill.begin(), fill.end());
        cipher->m_baseHash = resized(hashOf(HashKind::Md5, repeated), 5);
        cipher->m_keyBytes = 16;
        Rc4Stream stream(cipher->rc4Key(littleEndian32(0)));
        Bytes verifier = *encryptedVerifier;
        Bytes hash = *encryptedHash;
        if (!stream.apply(verifier.data(), verifier.size()) || !stream.apply(hash.data(), hash.size()))
            return setup;
        verified = hashOf(HashKind::Md5, verifier) == hash;
        break;
    }
    case EncryptionScheme::Rc4CryptoApi:
    case EncryptionScheme::EcmaStandard:
    case EncryptionScheme::NonStandard: {
        const auto api = readCryptoApiInfo(info);
        if (!api)
            return setup;
        cipher->m_hash = HashKind::Sha1;
        cipher->m_keyBytes = api->keyBits / 8;
        Bytes verifier = api->encryptedVerifier;
        Bytes hash = api->encryptedVerifierHash;
        if (setup.scheme == EncryptionScheme::Rc4CryptoApi) {
            cipher->m_baseHash = hashOf(HashKind::Sha1, api->salt, secret);
            Rc4Stream stream(cipher->rc4Key(littleEndian32(0)));
            if (!stream.apply(verifier.data(), verifier.size()) || !stream.apply(hash.data(), hash.size()))
                return setup;
        } else {
            const std::uint32_t rounds = setup.scheme == EncryptionScheme::EcmaStandard ? kStandardSpinCount : 0;
            cipher->m_baseHash = iteratedHash(HashKind::Sha1, hashOf(HashKind::Sha1, api->salt, secret), rounds);
            const Bytes key = cipher->standardKey(littleEndian32(0));
            if (!aesEcbDecrypt(key, verifier.data(), verifier.size()) || !aesEcbDecrypt(key, hash.data(), hash.size()))
                return setup;
        }
        const std::size_t compared = std::min(api->verifierHashSize, hashSize(HashKind::Sha1));
        verified = resized(hashOf(HashKind::Sha1, verifier), compared) == resized(hash, compared);
        break;
    }
    case EncryptionScheme::Agile: {
        InfoReader reader(info, 4);
        const auto reserved = reader.u32();
        if (!reserved || *reserved != kAgileReserved)
            return setup;
        const std::string_view xml(reinterpret_cast<const char *>(info.data()) + 8, info.size() - 8);
        const auto keyData = readAgileParameters(xml, "keyData");
        const auto encryptor = readAgileParameters(xml, "p:encryptedKey");
        const auto spinCount = xmlNumber(xml, "p:encryptedKey", "spinCount");
        auto verifierInput = xmlBase64(xml, "p:encryptedKey", "encryptedVerifierHashInput");
        auto verifierValue = xmlBase64(xml, "p:encryptedKey", "encryptedVerifierHashValue");
        auto keyValue = xmlBase64(xml, "p:encryptedKey", "encryptedKeyValue");
        if (!keyData || !encryptor || !spinCount || *spinCount > kMaxSpinCount || !verifierInput || !verifierValue ||
            !keyValue)
            return setup;
        // The stretched hash is the same for the three keys; only the final block differs.
        const Bytes stretched =
            iteratedHash(encryptor->hash, hashOf(encryptor->hash, encryptor->salt, secret), *spinCount);
        const auto keyFor = [&](const Bytes &block) {
            return resized(hashOf(encryptor->hash, stretched, block), encryptor->keyBytes, 0x36);
        };
        const auto input = decryptBlob(keyFor(kVerifierInputBlock), *encryptor, std::move(*verifierInput));
        const auto value = decryptBlob(keyFor(kVerifierValueBlock), *encryptor, std::move(*verifierValue));
        const auto key = decryptBlob(keyFor(kKeyValueBlock), *encryptor, std::move(*keyValue));
        if (!input || !value || !key || key->size() < keyData->keyBytes)
            return setup;
        const std::size_t size = hashSize(encryptor->hash);
        const Bytes expected = hashOf(encryptor->hash, resized(*input, kSaltSize));
        verified = value->size() >= size && std::equal(expected.begin(), expected.end(), value->begin());
        cipher->m_hash = keyData->hash;
        cipher->m_key = resized(*key, keyData->keyBytes);
        cipher->m_salt = keyData->salt;
        cipher->m_blockSize = keyData->blockSize;
        break;
    }
    default:
        return setup;
    }
    if (!verified) {
        setup.check = PasswordCheck::Wrong;
        return setup;
    }
    setup.check = PasswordCheck::Accepted;
    setup.cipher = std::move(cipher);
    return setup;
}

OfficePageCipher::~OfficePageCipher()
{
    wipe(m_baseHash);
    wipe(m_key);
}

Bytes OfficePageCipher::standardKey(const Bytes &block) const
{
    const Bytes final = hashOf(HashKind::Sha1, m_baseHash, block);
    Bytes inner(64, 0x36), outer(64, 0x5c);
    for (std::size_t i = 0; i < final.size(); ++i) {
        inner[i] ^= final[i];
        outer[i] ^= final[i];
    }
    Bytes key = hashOf(HashKind::Sha1, inner);
    const Bytes second = hashOf(HashKind::Sha1, outer);
    key.insert(key.end(), second.begin(), second.end());
    return resized(std::move(key), m_keyBytes);
}

Bytes OfficePageCipher::rc4Key(const Bytes &block) const
{
    Bytes key = resized(hashOf(m_hash, m_baseHash, block), m_keyBytes);
    // A 40-bit CryptoAPI key is used as 128 bits with zeros after it.
    if (m_keyBytes == 5 && m_scheme == EncryptionScheme::Rc4CryptoApi)
        key.resize(16, 0);
    return key;
}

bool OfficePageCipher::decryptPage(unsigned char *page, std::size_t length, std::uint32_t pageNumber) const
{
    if (pageNumber == 0)
        return true;
    const Bytes block = blockBytes(pageNumber);
    switch (m_scheme) {
    case EncryptionScheme::OfficeRc4:
    case EncryptionScheme::Rc4CryptoApi: {
        Rc4Stream stream(rc4Key(block));
        return stream.apply(page, length);
    }
    case EncryptionScheme::EcmaStandard:
    case EncryptionScheme::NonStandard:
        return aesEcbDecrypt(standardKey(block), page, length);
    case EncryptionScheme::Agile:
        return aesCbcDecrypt(m_key, resized(hashOf(m_hash, m_salt, block), m_blockSize, 0x36), page, length);
    default:
        return false;
    }
}

} // namespace vellum

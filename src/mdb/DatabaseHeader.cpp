#include "mdb/DatabaseHeader.h"
#include "util/littleEndian.h"

#include <cmath>
#include <cstring>
#include <fstream>

namespace vellum {
namespace {

constexpr std::size_t kMaskedOffset = 0x18;
constexpr std::size_t kMaskedLength = 128;
constexpr std::size_t kJet3PageSize = 2048;
constexpr std::size_t kPasswordOffset = 0x42;
constexpr std::size_t kJet3PasswordLength = 20;
constexpr std::size_t kJet4PasswordLength = 40;
/// Jet 4 masks its password a second time with the creation date stored here.
constexpr std::size_t kCreationDateOffset = 0x72;
const unsigned char kHeaderMaskKey[] = {0xC7, 0xDA, 0x39, 0x6B};

/// The RC4 key stream of kHeaderMaskKey over the masked part of every Jet header: the same
/// bytes for every file, so they are kept here instead of running RC4 for each file (which
/// would load OpenSSL's legacy provider, about 3 MiB, for every database opened). A test checks
/// them against OpenSSL's RC4.
constexpr unsigned char kHeaderMask[kMaskedLength] = {
    0xb5, 0x6f, 0x03, 0x62, 0x61, 0x08, 0xc2, 0x55, 0xeb, 0xa9, 0x67, 0x72, 0x43, 0x3f, 0x00, 0x9c, 0x7a, 0x9f, 0x90,
    0xff, 0x80, 0x9a, 0x31, 0xc5, 0x79, 0xba, 0xed, 0x30, 0xbc, 0xdf, 0xcc, 0x9d, 0x63, 0xd9, 0xe4, 0xc3, 0x7b, 0x42,
    0xfb, 0x8a, 0xbc, 0x4e, 0x86, 0xfb, 0xec, 0x37, 0x5d, 0x44, 0x9c, 0xfa, 0xc6, 0x5e, 0x28, 0xe6, 0x13, 0xb6, 0x8a,
    0x60, 0x54, 0x94, 0x7b, 0x36, 0xf5, 0x72, 0xdf, 0xb1, 0x77, 0xf4, 0x13, 0x43, 0xcf, 0xaf, 0xb1, 0x33, 0x34, 0x61,
    0x79, 0x5b, 0x92, 0xb5, 0x7c, 0x2a, 0x05, 0xf1, 0x7c, 0x99, 0x01, 0x1b, 0x98, 0xfd, 0x12, 0x4f, 0x4a, 0x94, 0x6c,
    0x3e, 0x60, 0x26, 0x5f, 0x95, 0xf8, 0xd0, 0x89, 0x24, 0x85, 0x67, 0xc6, 0x1f, 0x27, 0x44, 0xd2, 0xee, 0xcf, 0x65,
    0xed, 0xff, 0x07, 0xc7, 0x46, 0xa1, 0x78, 0x16, 0x0c, 0xed, 0xe9, 0x2d, 0x62, 0xd4,
};

/// The masked part of the header, unmasked.
Bytes unmaskedHeader(const unsigned char *page)
{
    Bytes header(page + kMaskedOffset, page + kMaskedOffset + kMaskedLength);
    for (std::size_t i = 0; i < kMaskedLength; ++i)
        header[i] ^= kHeaderMask[i];
    return header;
}

/// The creation date's whole days as Access derives the Jet 4 password mask from it: the
/// double truncated toward zero and held to the 32-bit range.
std::uint32_t dateMask(const unsigned char *bytes)
{
    double date = 0;
    std::memcpy(&date, bytes, sizeof date);
    if (std::isnan(date))
        return 0;
    if (date >= 2147483647.0)
        return 0x7fffffffu;
    if (date <= -2147483648.0)
        return 0x80000000u;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(date));
}

} // namespace

std::span<const unsigned char> DatabaseHeader::headerMask()
{
    return {kHeaderMask, kMaskedLength};
}

std::span<const unsigned char> DatabaseHeader::headerMaskKey()
{
    return {kHeaderMaskKey, sizeof kHeaderMaskKey};
}

std::optional<DatabaseHeader> DatabaseHeader::parse(const unsigned char *page, std::size_t length)
{
    static const char kJet[] = "Standard Jet DB";
    static const char kAce[] = "Standard ACE DB";
    if (!page || length < kJet3PageSize || page[0] != 0 || page[1] != 1)
        return std::nullopt;
    if (std::memcmp(page + 4, kJet, sizeof kJet) != 0 && std::memcmp(page + 4, kAce, sizeof kAce) != 0)
        return std::nullopt;
    DatabaseHeader header;
    header.m_jetVersion = page[0x14];
    const Bytes masked = unmaskedHeader(page);
    if (masked.empty())
        return std::nullopt;
    const auto at = [&](std::size_t offset) { return masked.data() + (offset - kMaskedOffset); };
    header.m_encodingKey = readLe32(at(kEncodingKeyOffset));
    if (header.m_jetVersion == 0 || header.m_jetVersion == 1) {
        const std::size_t passwordLength = header.m_jetVersion == 0 ? kJet3PasswordLength : kJet4PasswordLength;
        const Bytes mask = header.m_jetVersion == 0 ? Bytes(4, 0) : littleEndian32(dateMask(at(kCreationDateOffset)));
        for (std::size_t i = 0; i < passwordLength; ++i)
            if ((at(kPasswordOffset)[i] ^ mask[i % 4]) != 0)
                header.m_hasDatabasePassword = true;
    }
    if (header.officeEncrypted() && length >= kEncryptionInfoOffset + 2) {
        const std::size_t infoLength = static_cast<std::size_t>(page[kEncryptionInfoOffset]) |
                                       static_cast<std::size_t>(page[kEncryptionInfoOffset + 1]) << 8;
        const std::size_t begin = kEncryptionInfoOffset + 2;
        if (begin + infoLength <= length)
            header.m_encryptionInfo.assign(page + begin, page + begin + infoLength);
    }
    return header;
}

std::optional<DatabaseHeader> DatabaseHeader::readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    Bytes page(kHeaderBytes);
    in.read(reinterpret_cast<char *>(page.data()), static_cast<std::streamsize>(page.size()));
    return parse(page.data(), static_cast<std::size_t>(in.gcount()));
}

void DatabaseHeader::clearEncodingKey(unsigned char *page, std::size_t length)
{
    if (!page || length < kMaskedOffset + kMaskedLength)
        return;
    const Bytes masked = unmaskedHeader(page);
    if (masked.empty())
        return;
    // Stored = plain ^ mask, so XOR-ing the plain value out of the stored bytes leaves mask ^ 0.
    for (std::size_t i = 0; i < 4; ++i)
        page[kEncodingKeyOffset + i] ^= masked[kEncodingKeyOffset - kMaskedOffset + i];
}

} // namespace vellum

#include "mdb/DatabaseHeader.h"

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

/// The masked part of the header, unmasked; empty when RC4 is not available.
Bytes unmaskedHeader(const unsigned char *page)
{
    Bytes header(page + kMaskedOffset, page + kMaskedOffset + kMaskedLength);
    Rc4Stream mask(Bytes(std::begin(kHeaderMaskKey), std::end(kHeaderMaskKey)));
    if (!mask.apply(header.data(), header.size()))
        return {};
    return header;
}

std::uint32_t readUint32(const unsigned char *bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
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
    header.m_encodingKey = readUint32(at(kEncodingKeyOffset));
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

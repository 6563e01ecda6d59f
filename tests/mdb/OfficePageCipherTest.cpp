// Key derivation, password check and page decryption of every Office scheme, on page images
// encrypted by an independent implementation (tests/scripts/make_encrypted_pages.py: Python's
// hashlib, a Python RC4 and the cryptography package's AES).

#include "mdb/OfficePageCipher.h"
#include "mdb/DatabaseHeader.h"
#include "mdb/DatabaseImage.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>

using namespace vellum;

namespace {

constexpr std::size_t kPage = 4096;

Bytes fixtureBytes(const std::string &name)
{
    const std::string text = test::fileContents(test::fixturePath("encrypted-pages/" + name));
    return Bytes(text.begin(), text.end());
}

/// The plain bytes the fixture generator encrypted into page `number`.
Bytes plainPage(std::uint32_t number)
{
    Bytes page(kPage);
    for (std::size_t i = 0; i < kPage; ++i)
        page[i] = static_cast<unsigned char>((i * 7 + number * 13) & 0xff);
    return page;
}

struct SchemeCase {
    const char *file;
    const char *password;
    EncryptionScheme scheme;
};

const SchemeCase kSchemes[] = {
    {"rc4-cryptoapi-40.bin", "Test123", EncryptionScheme::Rc4CryptoApi},
    {"rc4-cryptoapi-128.bin", "p\xc3\xa4ssw\xc3\xb6rd", EncryptionScheme::Rc4CryptoApi}, // UTF-8 "pässwörd"
    {"ecma-standard.bin", "secret", EncryptionScheme::EcmaStandard},
    {"non-standard.bin", "password", EncryptionScheme::NonStandard},
    {"agile.bin", "1234", EncryptionScheme::Agile},
    {"office-rc4.bin", "tika", EncryptionScheme::OfficeRc4},
};

} // namespace

TEST(DatabaseHeader, TheKeptHeaderMaskIsOpenSslsRc4KeyStreamOfTheMaskKey)
{
    const auto key = DatabaseHeader::headerMaskKey();
    Rc4Stream stream(Bytes(key.begin(), key.end()));
    Bytes stream128(DatabaseHeader::headerMask().size(), 0);
    ASSERT_TRUE(stream.apply(stream128.data(), stream128.size()));
    const auto kept = DatabaseHeader::headerMask();
    EXPECT_TRUE(std::equal(stream128.begin(), stream128.end(), kept.begin(), kept.end()));
}

TEST(OfficePageCipher, EverySchemeChecksThePasswordAndDecryptsEachPageWithItsOwnKey)
{
    for (const SchemeCase &c : kSchemes) {
        SCOPED_TRACE(c.file);
        const Bytes image = fixtureBytes(c.file);
        ASSERT_EQ(image.size(), 3 * kPage);
        const auto header = DatabaseHeader::parse(image.data(), image.size());
        ASSERT_TRUE(header);
        EXPECT_TRUE(header->officeEncrypted());
        EXPECT_EQ(header->encodingKey(), 0xA1B2C3D4u);
        EXPECT_EQ(encryptionSchemeOf(*header), c.scheme);

        EXPECT_EQ(OfficePageCipher::create(*header, "").check, PasswordCheck::Needed);
        EXPECT_EQ(OfficePageCipher::create(*header, std::string(c.password) + "x").check, PasswordCheck::Wrong);
        const auto setup = OfficePageCipher::create(*header, c.password);
        ASSERT_EQ(setup.check, PasswordCheck::Accepted);
        ASSERT_TRUE(setup.cipher);
        for (std::uint32_t number : {1u, 2u}) {
            Bytes page(image.begin() + number * kPage, image.begin() + (number + 1) * kPage);
            ASSERT_TRUE(setup.cipher->decryptPage(page.data(), page.size(), number));
            EXPECT_EQ(page, plainPage(number)) << "page " << number;
        }
        // A page decrypted under another page's number is not the plain page.
        Bytes swapped(image.begin() + kPage, image.begin() + 2 * kPage);
        ASSERT_TRUE(setup.cipher->decryptPage(swapped.data(), swapped.size(), 2));
        EXPECT_NE(swapped, plainPage(1));
    }
}

TEST(OfficePageCipher, ImageIsDecryptedInMemoryAndItsHeaderNoLongerAsksForPageDecoding)
{
    for (const SchemeCase &c : kSchemes) {
        SCOPED_TRACE(c.file);
        const std::string path = test::fixturePath(std::string("encrypted-pages/") + c.file);
        EXPECT_EQ(checkDatabasePassword(path, c.password), OpenFailure::None);
        EXPECT_EQ(checkDatabasePassword(path, ""), OpenFailure::PasswordNeeded);
        EXPECT_EQ(checkDatabasePassword(path, "not it"), OpenFailure::WrongPassword);
        EXPECT_TRUE(databaseNeedsPassword(path));
        EXPECT_EQ(prepareDatabaseImage(path, "not it").failure, OpenFailure::WrongPassword);

        const DatabaseImage image = prepareDatabaseImage(path, c.password);
        ASSERT_EQ(image.failure, OpenFailure::None);
        EXPECT_EQ(image.scheme, c.scheme);
        ASSERT_TRUE(image.bytes);
        ASSERT_EQ(image.bytes->size(), 3 * kPage);
        EXPECT_EQ(Bytes(image.bytes->begin() + kPage, image.bytes->begin() + 2 * kPage), plainPage(1));
        EXPECT_EQ(Bytes(image.bytes->begin() + 2 * kPage, image.bytes->end()), plainPage(2));
        // Page 0 keeps everything but the encoding key, which now reads 0 through the mask.
        const auto header = DatabaseHeader::parse(image.bytes->data(), image.bytes->size());
        ASSERT_TRUE(header);
        EXPECT_EQ(header->encodingKey(), 0u);
        EXPECT_FALSE(header->officeEncrypted());
    }
}

TEST(OfficePageCipher, LargeImageIsDecryptedInChunksAsPageByPage)
{
    // 3,000 pages (enough for the decryption to be split across threads) and a torn tail: every
    // page must come out as its own number's key makes it, the torn tail as stored.
    const Bytes source = fixtureBytes("agile.bin");
    Bytes image(source.begin(), source.begin() + kPage);
    for (std::size_t page = 1; page < 3000; ++page)
        image.insert(image.end(), source.begin() + (1 + page % 2) * kPage, source.begin() + (2 + page % 2) * kPage);
    image.insert(image.end(), source.begin() + kPage, source.begin() + kPage + 100);
    test::TempDir temp;
    const std::string path = temp.path() + "/large.accdb";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char *>(image.data()), static_cast<std::streamsize>(image.size()));
    const DatabaseImage decrypted = prepareDatabaseImage(path, "1234");
    ASSERT_EQ(decrypted.failure, OpenFailure::None);
    ASSERT_TRUE(decrypted.bytes);
    ASSERT_EQ(decrypted.bytes->size(), image.size());
    const auto header = DatabaseHeader::parse(image.data(), image.size());
    ASSERT_TRUE(header);
    const auto setup = OfficePageCipher::create(*header, "1234");
    ASSERT_TRUE(setup.cipher);
    for (std::uint32_t page = 1; page < 3000; ++page) {
        Bytes expected(image.begin() + page * kPage, image.begin() + (page + 1) * kPage);
        ASSERT_TRUE(setup.cipher->decryptPage(expected.data(), expected.size(), page));
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), decrypted.bytes->begin() + page * kPage))
            << "page " << page;
    }
    EXPECT_TRUE(std::equal(image.end() - 100, image.end(), decrypted.bytes->end() - 100));
}

TEST(OfficePageCipher, DamagedEncryptionInformationIsRefusedWithoutCrashing)
{
    const Bytes image = fixtureBytes("agile.bin");
    const Bytes standard = fixtureBytes("ecma-standard.bin");
    struct Damage {
        const char *what;
        const Bytes *source;
        std::size_t offset; // in page 0
        std::vector<unsigned char> bytes;
        PasswordCheck expected;
    };
    const std::size_t info = DatabaseHeader::kEncryptionInfoOffset;
    const Damage damages[] = {
        {"information cut to 3 bytes", &image, info, {3, 0}, PasswordCheck::Unsupported},
        {"unknown version 9.9", &image, info + 2, {9, 0, 9, 0}, PasswordCheck::Unsupported},
        {"agile reserved value", &image, info + 6, {0x41}, PasswordCheck::Unsupported},
        {"agile spin count over the limit", &image, 0, {}, PasswordCheck::Unsupported},
        {"standard header length beyond the page",
         &standard,
         info + 10,
         {0xff, 0xff, 0, 0},
         PasswordCheck::Unsupported},
        {"standard salt size 15", &standard, 0, {}, PasswordCheck::Unsupported},
    };
    for (const Damage &d : damages) {
        SCOPED_TRACE(d.what);
        Bytes page(d.source->begin(), d.source->begin() + kPage);
        std::copy(d.bytes.begin(), d.bytes.end(), page.begin() + static_cast<std::ptrdiff_t>(d.offset));
        if (std::string(d.what) == "agile spin count over the limit") {
            const std::string text(page.begin(), page.end());
            const std::size_t at = text.find("spinCount=\"1000\"");
            ASSERT_NE(at, std::string::npos);
            const char replacement[] = "spinCount=\"99999999\"";
            // Same length: drop the quote pair's surplus into the following space.
            Bytes patched(page.begin(), page.begin() + static_cast<std::ptrdiff_t>(at));
            patched.insert(patched.end(), replacement, replacement + std::strlen(replacement));
            patched.insert(patched.end(), page.begin() + static_cast<std::ptrdiff_t>(at + 16), page.end());
            patched.resize(kPage);
            page = patched;
        }
        if (std::string(d.what) == "standard salt size 15") {
            // The verifier follows the header: find the salt size (16) right after the provider name.
            const std::size_t headerLength = page[info + 10] | page[info + 11] << 8;
            page[info + 14 + headerLength] = 15;
        }
        const auto header = DatabaseHeader::parse(page.data(), page.size());
        ASSERT_TRUE(header);
        EXPECT_EQ(OfficePageCipher::create(*header, "1234").check, d.expected);
    }
}

TEST(DatabaseHeader, RecognisesAccessHeadersOnly)
{
    Bytes page = fixtureBytes("agile.bin");
    page.resize(kPage);
    EXPECT_TRUE(DatabaseHeader::parse(page.data(), page.size()));
    EXPECT_FALSE(DatabaseHeader::parse(page.data(), 2047)) << "shorter than any page";
    Bytes other = page;
    other[4] = 'X';
    EXPECT_FALSE(DatabaseHeader::parse(other.data(), other.size())) << "no signature";
    other = page;
    other[0] = 1;
    EXPECT_FALSE(DatabaseHeader::parse(other.data(), other.size())) << "not a header page";
    // Encryption information that runs past the page is not taken.
    other = page;
    other[DatabaseHeader::kEncryptionInfoOffset] = 0xff;
    other[DatabaseHeader::kEncryptionInfoOffset + 1] = 0xff;
    const auto cut = DatabaseHeader::parse(other.data(), other.size());
    ASSERT_TRUE(cut);
    EXPECT_TRUE(cut->encryptionInfo().empty());
    EXPECT_EQ(encryptionSchemeOf(*cut), EncryptionScheme::Unsupported);
}

TEST(CryptoFunctions, Base64DecodesPaddingAndRefusesOtherText)
{
    const struct {
        const char *text;
        std::optional<Bytes> bytes;
    } cases[] = {
        {"", Bytes{}},
        {"QQ==", Bytes{'A'}},
        {"QUI=", Bytes{'A', 'B'}},
        {"QUJD", Bytes{'A', 'B', 'C'}},
        {"QUJD\r\nRA==", Bytes{'A', 'B', 'C', 'D'}},
        {"QUJ", std::nullopt},
        {"QU*D", std::nullopt},
    };
    for (const auto &c : cases)
        EXPECT_EQ(base64Decode(c.text), c.bytes) << c.text;
}

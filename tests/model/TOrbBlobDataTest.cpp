#include "model/TOrbBlobData.h"
#include "model/fileExtensions.h"
#include "model/hex.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

namespace vellum {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

TEST(TOrbBlobData, CellDescriptionShowsExtensionAndSize)
{
    struct Case {
        std::size_t size;
        const char *extension;
        const char *expected;
    };
    for (const Case &c : {Case{0, nullptr, "[0 KB]"}, Case{0, "", "[0 KB]"}, Case{2345, "bmp", ".bmp [3 KB]"},
                          Case{1, "pdf", ".pdf [1 KB]"}, Case{3 * 1024 * 1024, nullptr, "[3.0 MB]"}}) {
        EXPECT_EQ(TOrbBlobData(Bytes(c.size, 'x'), c.extension).cellDescription(), c.expected);
    }
}

TEST(TOrbBlobData, DescriptionReadsTextByMarksAndBytes)
{
    const std::string nonText = "[NON-TEXTUAL DATA]";
    std::string longAscii(2000, 'a');
    longAscii += "\xC3\xA9"; // past the sample: valid UTF-8
    std::string longBroken(2000, 'a');
    longBroken += "\xE9"; // past the sample, not UTF-8: the whole payload fails
    struct Case {
        const char *label;
        std::string payload;
        std::string expected;
    };
    const Case cases[] = {
        {"empty", "", ""},
        {"plain ASCII with white space", "line 1\tcol\r\nline 2\n\f\v", "line 1\tcol\r\nline 2\n\f\v"},
        {"control byte", std::string("AB\x01", 3), nonText},
        {"NUL byte", std::string("AB\0CD", 5), nonText},
        {"high byte", "caf\xC3\xA9", nonText},
        {"only the first byte is unusual",
         std::string("\x01"
                     "AB",
                     3),
         std::string("\x01"
                     "AB",
                     3)},
        {"first byte Latin-1", "\xE9t\xE9", nonText},
        {"first byte Latin-1, rest ASCII", "\xE9tude", "\xC3\xA9tude"},
        {"single byte", "\x05", "\x05"},
        {"UTF-16 LE with control bytes", std::string("\xFF\xFEh\0i\0\x01\0", 8), std::string("hi\x01", 3)},
        {"UTF-16 BE", std::string("\xFE\xFF\0h\0\xE9", 6), "h\xC3\xA9"},
        {"UTF-16 LE, odd length", std::string("\xFF\xFEh\0i", 5), nonText},
        {"UTF-32 LE", std::string("\xFF\xFE\0\0h\0\0\0", 8), "h"},
        {"UTF-32 BE", std::string("\0\0\xFE\xFF\0\0\0h", 8), "h"},
        {"sample ASCII, UTF-8 later", longAscii, longAscii},
        {"sample ASCII, broken UTF-8 later", longBroken, nonText},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(TOrbBlobData(bytesOf(c.payload), "txt").description(), c.expected);
    }
}

TEST(TOrbBlobData, CreateTempFileWritesOnceWithTheExtension)
{
    const Bytes payload = bytesOf("%PDF-1.4 content");
    struct Case {
        std::string extension;
        std::string suffix;
    };
    for (const Case &c : {Case{"pdf", ".pdf"}, Case{"", ""}, Case{"a/b", ""}, Case{std::string(300, 'e'), ""}}) {
        SCOPED_TRACE(c.extension);
        TOrbBlobData blob(payload, c.extension.c_str());
        EXPECT_EQ(blob.tmpPath(), "");
        const std::string path = blob.createTempFile();
        ASSERT_FALSE(path.empty());
        EXPECT_EQ(blob.tmpPath(), path);
        const std::string name = path.substr(path.rfind('/') + 1);
        EXPECT_EQ(name.rfind("Vellum-", 0), 0u) << name;
        EXPECT_EQ(name.size(), 16 + c.suffix.size()) << name;
        EXPECT_EQ(name.substr(16), c.suffix);
        std::ifstream in(path, std::ios::binary);
        EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(in), {}), payload);
        // The second call answers the same file without writing it again.
        ASSERT_EQ(::truncate(path.c_str(), 0), 0);
        EXPECT_EQ(blob.createTempFile(), path);
        struct stat info {};
        ASSERT_EQ(::stat(path.c_str(), &info), 0);
        EXPECT_EQ(info.st_size, 0);
        ::unlink(path.c_str());
    }
}

TEST(TOrbBlobData, ImageProbeIsInstallableAndAskedOnce)
{
    const Bytes png = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0, 0, 0, 0x0D};
    struct Case {
        const char *label;
        Bytes data;
        bool image;
    };
    const Case cases[] = {
        {"PNG", png, true},
        {"JPEG", {0xFF, 0xD8, 0xFF, 0xE0}, true},
        {"GIF", bytesOf("GIF89a...."), true},
        {"TIFF little-endian", {'I', 'I', 0x2A, 0}, true},
        {"TIFF big-endian", {'M', 'M', 0, 0x2A}, true},
        {"BMP", {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 40, 0, 0, 0}, true},
        {"text starting with BM", bytesOf("BMW owners' club newsletter"), false},
        {"ICO", {0, 0, 1, 0, 1, 0}, true},
        {"ICO without images", {0, 0, 1, 0, 0, 0}, false},
        {"PDF", bytesOf("%PDF-1.4"), false},
        {"empty", {}, false},
    };
    for (const Case &c : cases)
        EXPECT_EQ(TOrbBlobData(c.data, nullptr).isImage(), c.image) << c.label;

    static int calls = 0;
    TOrbBlobData::setImageProbe([](const std::uint8_t *, std::size_t length) {
        ++calls;
        return length == 3;
    });
    TOrbBlobData three(Bytes{1, 2, 3}, nullptr);
    TOrbBlobData pngBlob(png, "png");
    EXPECT_TRUE(three.isImage());
    EXPECT_TRUE(three.isImage());
    EXPECT_FALSE(pngBlob.isImage());
    EXPECT_EQ(calls, 2);
    TOrbBlobData::setImageProbe(nullptr);
    EXPECT_TRUE(TOrbBlobData(png, "png").isImage());
}

TEST(BlobHelpers, ToHexAndSafeExtensions)
{
    const std::uint8_t bytes[] = {0x00, 0x0F, 0xA5, 0xFF};
    char out[9] = "########";
    EXPECT_EQ(toHex(nullptr, 0, bytes, 4), 8u);
    EXPECT_EQ(toHex(out, 7, bytes, 4), 0u);
    EXPECT_STREQ(out, "########");
    EXPECT_EQ(toHex(out, 8, bytes, 4), 8u);
    EXPECT_STREQ(out, "000fa5ff");
    EXPECT_EQ(toHex(out, 8, bytes, 0), 0u);

    for (const char *safe : {"PDF", "pdf", "docx", "Jpg", "264", "raw", "mkv", "accdb"})
        EXPECT_TRUE(isSafeFileExtension(safe)) << safe;
    for (const char *unsafe : {"", "exe", "sh", "pd", "pdfx", "docm", ".pdf"})
        EXPECT_FALSE(isSafeFileExtension(unsafe)) << unsafe;

    EXPECT_TRUE(isUsableFileExtension("tar.gz"));
    EXPECT_TRUE(isUsableFileExtension(std::string(kMaxFileExtensionLength, 'e')));
    EXPECT_FALSE(isUsableFileExtension(std::string(kMaxFileExtensionLength + 1, 'e')));
    EXPECT_FALSE(isUsableFileExtension(""));
    EXPECT_FALSE(isUsableFileExtension("../x"));
    EXPECT_FALSE(isUsableFileExtension(std::string("p\0f", 3)));
}

} // namespace
} // namespace vellum

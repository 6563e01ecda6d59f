#include "model/attachmentData.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <string>

namespace vellum {
namespace {

std::vector<std::uint8_t> bytesOf(const std::string &text)
{
    return std::vector<std::uint8_t>(text.begin(), text.end());
}

void appendU32(std::vector<std::uint8_t> &out, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

/// The content Access stores for a file: header length, a flag, the extension in UTF-16 with
/// its terminator, then the file.
std::vector<std::uint8_t> contentFor(const std::string &extension, const std::string &file)
{
    std::vector<std::uint8_t> header;
    appendU32(header, 1);
    appendU32(header, static_cast<std::uint32_t>(extension.size() + 1));
    for (const char c : extension + '\0') {
        header.push_back(static_cast<std::uint8_t>(c));
        header.push_back(0);
    }
    std::vector<std::uint8_t> content;
    appendU32(content, static_cast<std::uint32_t>(header.size() + 4));
    content.insert(content.end(), header.begin(), header.end());
    content.insert(content.end(), file.begin(), file.end());
    return content;
}

/// The stored form: kind, content length, then the content as it is or zlib-compressed.
std::vector<std::uint8_t> wrap(const std::vector<std::uint8_t> &content, bool compressed)
{
    std::vector<std::uint8_t> stored;
    appendU32(stored, compressed ? 1 : 0);
    appendU32(stored, static_cast<std::uint32_t>(content.size()));
    if (!compressed) {
        stored.insert(stored.end(), content.begin(), content.end());
        return stored;
    }
    uLongf size = compressBound(static_cast<uLong>(content.size()));
    std::vector<std::uint8_t> deflated(size);
    EXPECT_EQ(compress2(deflated.data(), &size, content.data(), static_cast<uLong>(content.size()), 9), Z_OK);
    stored.insert(stored.end(), deflated.begin(), deflated.begin() + static_cast<std::ptrdiff_t>(size));
    return stored;
}

TEST(AttachmentData, DecodesPlainAndDeflatedFilesAndRefusesDamagedOnes)
{
    std::string large;
    for (int i = 0; i < 20000; ++i)
        large += "line " + std::to_string(i) + "\n";
    const std::string file = "Attachment data for the test.\r\n";
    const auto plain = wrap(contentFor("txt", file), false);
    const auto deflated = wrap(contentFor("txt", file), true);
    const auto bigDeflated = wrap(contentFor("log", large), true);
    const auto emptyFile = wrap(contentFor("", ""), true);

    struct Case {
        const char *name;
        std::vector<std::uint8_t> stored;
        std::optional<std::string> expected;
    };
    std::vector<Case> cases = {
        {"plain", plain, file},
        {"deflated", deflated, file},
        {"deflated, larger than one buffer", bigDeflated, large},
        {"an empty file", emptyFile, ""},
        {"empty", {}, std::nullopt},
        {"wrapper only", std::vector<std::uint8_t>(plain.begin(), plain.begin() + 8), std::nullopt},
        {"plain, cut short", std::vector<std::uint8_t>(plain.begin(), plain.end() - 1), std::nullopt},
        {"deflated, cut short", std::vector<std::uint8_t>(deflated.begin(), deflated.end() - 6), std::nullopt},
        {"deflated, cut in half",
         std::vector<std::uint8_t>(bigDeflated.begin(), bigDeflated.begin() + bigDeflated.size() / 2), std::nullopt},
    };
    auto unknownKind = plain;
    unknownKind[0] = 2;
    cases.push_back({"unknown kind", unknownKind, std::nullopt});
    auto longerThanSent = deflated;
    longerThanSent[4] = static_cast<std::uint8_t>(longerThanSent[4] + 1); // one byte more than inflates
    cases.push_back({"declared longer than its data", longerThanSent, std::nullopt});
    auto absurdLength = deflated;
    absurdLength[7] = 0x7F; // two gigabytes from a few dozen bytes
    cases.push_back({"declared beyond any deflate ratio", absurdLength, std::nullopt});
    auto headerTooLong = plain;
    headerTooLong[8] = 0xFF; // the content header claims more than the content
    cases.push_back({"header past the content", headerTooLong, std::nullopt});
    auto garbage = deflated;
    for (std::size_t i = 10; i < garbage.size(); ++i)
        garbage[i] ^= 0x5A;
    cases.push_back({"deflate data damaged", garbage, std::nullopt});

    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const auto decoded = decodeAttachmentData(c.stored);
        ASSERT_EQ(decoded.has_value(), c.expected.has_value());
        if (decoded) {
            EXPECT_EQ(*decoded, bytesOf(*c.expected));
        }
    }
}

} // namespace
} // namespace vellum

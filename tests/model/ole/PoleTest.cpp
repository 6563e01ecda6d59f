#include "model/ole/oleField.h"
#include "model/ole/poleIO.h"

#include "CompoundDocumentBuilder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vellum {
namespace {

using test::CompoundDocumentBuilder;

std::vector<std::uint8_t> pattern(std::size_t size, unsigned seed)
{
    std::vector<std::uint8_t> data(size);
    for (std::size_t i = 0; i < size; ++i)
        data[i] = static_cast<std::uint8_t>((i * 31 + seed) ^ (i >> 8));
    return data;
}

std::uint32_t u32At(const std::vector<std::uint8_t> &bytes, std::size_t at)
{
    return bytes[at] | (bytes[at + 1] << 8) | (bytes[at + 2] << 16) | (static_cast<std::uint32_t>(bytes[at + 3]) << 24);
}

/// File offset of directory record `index` in a document of the builder (one directory chain
/// of consecutive blocks).
std::size_t recordOffset(const std::vector<std::uint8_t> &bytes, std::size_t index)
{
    return (u32At(bytes, 48) + 1) * 512 + index * 128;
}

class PoleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/vellum-pole-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string write(const std::string &name, const std::vector<std::uint8_t> &bytes)
    {
        return test::writeTempBytes(m_folder, name, bytes);
    }

    static CompoundDocumentBuilder sampleDocument()
    {
        CompoundDocumentBuilder builder;
        builder.addStream(u"\x01"
                          u"CompObj",
                          pattern(76, 1));
        builder.addStream(u"Package", pattern(972, 2));
        builder.addStream(u"Small", pattern(4095, 3));
        builder.addStream(u"Big", pattern(4096, 4));
        builder.addStream(u"Contents", pattern(9000, 5));
        return builder;
    }

    std::string m_folder;
};

TEST_F(PoleTest, ReadsSmallAndBigStreamsAcrossTheThreshold)
{
    const std::string path = write("doc.cfb", sampleDocument().bytes());
    POLE::Storage storage(path);
    ASSERT_TRUE(storage.open());

    struct Case {
        const char *name;
        std::size_t size;
        unsigned seed;
        std::size_t blocks; // 64-byte small blocks under the threshold, else 512-byte big blocks
    };
    for (const Case &c : {Case{"Package", 972, 2, 16}, Case{"Small", 4095, 3, 64}, Case{"Big", 4096, 4, 8},
                          Case{"Contents", 9000, 5, 18}}) {
        SCOPED_TRACE(c.name);
        auto io = storage.io()->streamIO(c.name);
        ASSERT_TRUE(io);
        EXPECT_EQ(io->blocks.size(), c.blocks);
        EXPECT_EQ(io->fullName, c.name);

        POLE::Stream stream(&storage, c.name);
        ASSERT_TRUE(stream.exists());
        EXPECT_FALSE(stream.fail());
        ASSERT_EQ(stream.size(), c.size);
        // Odd-sized reads cross block boundaries; the last one stops at the stream's end.
        std::vector<std::uint8_t> content;
        unsigned char chunk[333];
        std::size_t got;
        while ((got = stream.read(chunk, sizeof chunk)) > 0)
            content.insert(content.end(), chunk, chunk + got);
        EXPECT_EQ(content, pattern(c.size, c.seed));
        EXPECT_TRUE(stream.eof());

        stream.seek(c.size - 2);
        EXPECT_EQ(stream.getch(), content[c.size - 2]);
        EXPECT_EQ(stream.getch(), content[c.size - 1]);
        EXPECT_EQ(stream.getch(), -1);
        stream.seek(0);
        EXPECT_EQ(stream.getch(), content[0]);
    }
}

TEST_F(PoleTest, ResolvesPathsBelowTheRoot)
{
    const std::string path = write("doc.cfb", sampleDocument().bytes());
    POLE::Storage storage(path);
    ASSERT_TRUE(storage.open());
    struct Case {
        const char *name;
        bool found;
    };
    for (const Case &c :
         {Case{"Package", true}, Case{"/Package", true}, Case{"Contents", true}, Case{"/Contents", true},
          Case{"package", false}, Case{"CONTENTS", false}, Case{"CompObj", true},
          Case{"\x01"
               "CompObj",
               false},
          Case{"Missing", false}, Case{"", false}, Case{"Package/Inner", false}, Case{"/", false}}) {
        SCOPED_TRACE(c.name);
        POLE::Stream stream(&storage, c.name);
        EXPECT_EQ(stream.exists(), c.found);
        if (!c.found) {
            EXPECT_EQ(stream.size(), 0u);
            EXPECT_TRUE(stream.fail());
        }
    }
    EXPECT_TRUE(storage.isDirectory("/"));
    EXPECT_FALSE(storage.isDirectory("Package"));
    auto names = storage.entries("/");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"Big", "CompObj", "Contents", "Package", "Small"}));
}

TEST_F(PoleTest, RejectsForeignFilesAndBrokenHeaders)
{
    const auto good = sampleDocument().bytes();
    struct Case {
        const char *label;
        std::size_t at;
        std::uint32_t value;
        int width;
        int expected;
    };
    const Case cases[] = {
        {"valid", 0, 0, 0, POLE::Storage::Ok},
        {"signature", 0, 0x12345678, 4, POLE::Storage::NotOLE},
        {"threshold 512", 56, 512, 4, POLE::Storage::BadOLE},
        {"big shift 6", 30, 6, 2, POLE::Storage::BadOLE},
        {"big shift 31", 30, 31, 2, POLE::Storage::BadOLE},
        {"small shift above big", 32, 10, 2, POLE::Storage::BadOLE},
        {"no table blocks", 44, 0, 4, POLE::Storage::BadOLE},
        {"meta table under 109 table blocks", 72, 1, 4, POLE::Storage::BadOLE},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        auto bytes = good;
        for (int i = 0; i < c.width; ++i)
            bytes[c.at + i] = static_cast<std::uint8_t>(c.value >> (8 * i));
        POLE::Storage storage(write("doc.cfb", bytes));
        EXPECT_EQ(storage.open(), c.expected == POLE::Storage::Ok);
        EXPECT_EQ(storage.result(), c.expected);
        POLE::Stream stream(&storage, "Package");
        EXPECT_EQ(stream.exists(), c.expected == POLE::Storage::Ok);
    }
    POLE::Storage missing(m_folder + "/none.cfb");
    EXPECT_FALSE(missing.open());
    EXPECT_EQ(missing.result(), POLE::Storage::OpenFailed);
    // Cut inside the header: the fields past the end read as zero.
    POLE::Storage cut(write("cut.cfb", std::vector<std::uint8_t>(good.begin(), good.begin() + 40)));
    EXPECT_FALSE(cut.open());
    EXPECT_EQ(cut.result(), POLE::Storage::BadOLE);
    // The header alone: a valid document without blocks, so without streams.
    POLE::Storage headerOnly(write("header.cfb", std::vector<std::uint8_t>(good.begin(), good.begin() + 512)));
    EXPECT_TRUE(headerOnly.open());
    EXPECT_FALSE(POLE::Stream(&headerOnly, "Package").exists());
    EXPECT_TRUE(headerOnly.entries("/").empty());
}

TEST_F(PoleTest, DamagedChainsAndTreesEnd)
{
    const auto good = sampleDocument().bytes();
    const std::size_t batOffset = (u32At(good, 76) + 1) * 512;
    const std::size_t bigRecord = recordOffset(good, CompoundDocumentBuilder::recordOf(3));
    const std::uint32_t bigStart = u32At(good, bigRecord + 116);

    // The big stream's last block points back to its first: the chain ends at the repeat.
    auto cyclic = good;
    CompoundDocumentBuilder::setU32(cyclic, batOffset + 4 * (bigStart + 7), bigStart);
    {
        POLE::Storage storage(write("cyclic.cfb", cyclic));
        ASSERT_TRUE(storage.open());
        POLE::Stream stream(&storage, "Big");
        ASSERT_TRUE(stream.exists());
        EXPECT_FALSE(stream.fail());
        unsigned char buffer[8192];
        EXPECT_EQ(stream.read(buffer, sizeof buffer), 4096u);
    }
    // A chain shorter than the claimed size makes the stream fail.
    auto truncated = good;
    CompoundDocumentBuilder::setU32(truncated, batOffset + 4 * (bigStart + 3), bigStart);
    {
        POLE::Storage storage(write("truncated.cfb", truncated));
        ASSERT_TRUE(storage.open());
        POLE::Stream stream(&storage, "Big");
        EXPECT_TRUE(stream.fail());
        unsigned char buffer[8192];
        EXPECT_EQ(stream.read(buffer, sizeof buffer), 4u * 512);
        EXPECT_EQ(extractOleStream((m_folder + "/truncated.cfb").c_str(), "Big", (m_folder + "/out").c_str()), 2);
    }
    // Sibling links that point back up the tree still end the search.
    auto loop = good;
    for (std::size_t record = 1; record <= 5; ++record) {
        CompoundDocumentBuilder::setU32(loop, recordOffset(loop, record) + 68, static_cast<std::uint32_t>(record));
        CompoundDocumentBuilder::setU32(loop, recordOffset(loop, record) + 72, 3);
    }
    {
        POLE::Storage storage(write("loop.cfb", loop));
        ASSERT_TRUE(storage.open());
        EXPECT_FALSE(POLE::Stream(&storage, "Missing").exists());
    }
    // A meta allocation table whose block names itself as the next one.
    auto meta = good;
    CompoundDocumentBuilder::setU32(meta, 44, 5000);
    CompoundDocumentBuilder::setU32(meta, 68, 0);
    CompoundDocumentBuilder::setU32(meta, 72, 0xFFFFFFF0);
    CompoundDocumentBuilder::setU32(meta, 512 + 508, 0);
    meta.resize(meta.size() + 150 * 512, 0); // more blocks than the header lists
    {
        POLE::Storage storage(write("meta.cfb", meta));
        ASSERT_TRUE(storage.open());
        POLE::Stream stream(&storage, "Package");
        unsigned char buffer[1024];
        EXPECT_LE(stream.read(buffer, sizeof buffer), 972u);
    }
    // A stream whose size runs past the file.
    auto huge = good;
    CompoundDocumentBuilder::setU32(huge, bigRecord + 120, 0x7FFFFFFF);
    {
        POLE::Storage storage(write("huge.cfb", huge));
        ASSERT_TRUE(storage.open());
        POLE::Stream stream(&storage, "Big");
        EXPECT_TRUE(stream.fail());
    }
}

TEST_F(PoleTest, ExtractOleStreamCopiesOneStream)
{
    const std::string document = write("doc.cfb", sampleDocument().bytes());
    const std::string output = m_folder + "/out.bin";
    struct Case {
        std::string document;
        const char *stream;
        std::string output;
        int expected;
        std::size_t size;
        unsigned seed;
    };
    const Case cases[] = {
        {document, "Package", output, 0, 972, 2},
        {document, "Contents", output, 0, 9000, 5},
        {document, "/Small", output, 0, 4095, 3},
        {document, "Missing", output, 2, 0, 0},
        {m_folder + "/none.cfb", "Package", output, 1, 0, 0},
        {document, "Package", m_folder + "/no/such/folder/out.bin", 3, 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.stream);
        std::filesystem::remove(output);
        EXPECT_EQ(extractOleStream(c.document.c_str(), c.stream, c.output.c_str()), c.expected);
        if (c.expected == 0) {
            std::ifstream in(output, std::ios::binary);
            const std::vector<std::uint8_t> content((std::istreambuf_iterator<char>(in)), {});
            EXPECT_EQ(content, pattern(c.size, c.seed));
        }
    }
}

TEST(PoleDirTree, NamesDropALeadingControlCharacter)
{
    std::vector<std::uint8_t> buffer(3 * 128, 0);
    const auto setName = [&](std::size_t record, const std::u16string &name, std::uint8_t type) {
        for (std::size_t i = 0; i < name.size(); ++i)
            CompoundDocumentBuilder::setU16(buffer, record * 128 + 2 * i, name[i]);
        CompoundDocumentBuilder::setU16(buffer, record * 128 + 64, static_cast<std::uint16_t>(2 * name.size() + 2));
        buffer[record * 128 + 66] = type;
    };
    setName(0, u"Root Entry", 5);
    setName(1, u"\x05SummaryInformation", 2);
    setName(2, u"", 0);
    POLE::DirTree tree;
    EXPECT_EQ(tree.entryCount(), 1u);
    EXPECT_EQ(tree.entry(std::size_t{0})->name, "Root Entry");
    tree.load(buffer.data(), buffer.size());
    ASSERT_EQ(tree.entryCount(), 3u);
    EXPECT_EQ(tree.entry(1)->name, "SummaryInformation");
    EXPECT_FALSE(tree.entry(1)->dir);
    EXPECT_TRUE(tree.entry(1)->valid);
    EXPECT_FALSE(tree.entry(2)->valid); // kept so that indexes match the file
}

} // namespace
} // namespace vellum

#include "export/ExportSink.h"
#include "export/xls/BiffStream.h"
#include "export/xls/CompoundFileWriter.h"
#include "export/xls/LeBytes.h"
#include "export/xls/sheetNames.h"
#include "export/xls/utf16.h"
#include "export/xls/workbook.h"
#include "support/TempDir.h"
#include "support/WorkbookReader.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace vellum::xls {
namespace {

// ---- reading records back ----

struct Record {
    std::uint16_t type;
    std::size_t offset; ///< stream position of the record's header
    std::string payload;
};

std::vector<Record> parseRecords(const std::string &stream)
{
    std::vector<Record> records;
    std::size_t at = 0;
    while (at + 4 <= stream.size()) {
        auto type = static_cast<std::uint16_t>(static_cast<unsigned char>(stream[at]) |
                                               static_cast<unsigned char>(stream[at + 1]) << 8);
        auto length = static_cast<std::size_t>(static_cast<unsigned char>(stream[at + 2]) |
                                               static_cast<unsigned char>(stream[at + 3]) << 8);
        if (type == 0 && length == 0)
            break; // padding after the last EOF
        records.push_back({type, at, stream.substr(at + 4, length)});
        at += 4 + length;
    }
    return records;
}

std::uint32_t u16At(const std::string &s, std::size_t at)
{
    return static_cast<unsigned char>(s[at]) | static_cast<unsigned char>(s[at + 1]) << 8;
}
std::uint32_t u32At(const std::string &s, std::size_t at)
{
    return u16At(s, at) | u16At(s, at + 2) << 16;
}

std::string bytes(std::initializer_list<int> values)
{
    std::string out;
    for (int v : values)
        out += static_cast<char>(v);
    return out;
}

/// The Workbook stream of a finished workbook, as records.
std::vector<Record> streamRecords(workbook &book, std::string *streamOut = nullptr)
{
    StringSink sink;
    EXPECT_TRUE(book.DumpStream(sink)) << book.lastError();
    if (streamOut)
        *streamOut = sink.data();
    return parseRecords(sink.data());
}

/// The records of one substream: from the BOF at `offset` to its EOF.
std::vector<Record> substreamAt(const std::vector<Record> &records, std::size_t offset)
{
    std::vector<Record> out;
    bool inside = false;
    for (const Record &r : records) {
        inside = inside || r.offset == offset;
        if (!inside)
            continue;
        out.push_back(r);
        if (r.type == biff::kEof)
            break;
    }
    return out;
}

std::vector<Record> ofType(const std::vector<Record> &records, std::uint16_t type)
{
    std::vector<Record> out;
    for (const Record &r : records)
        if (r.type == type)
            out.push_back(r);
    return out;
}

/// The first sheet's substream, found through its BOUNDSHEET record.
std::vector<Record> firstSheet(const std::vector<Record> &records)
{
    const auto bound = ofType(records, biff::kBoundSheet);
    if (bound.empty())
        return {};
    return substreamAt(records, u32At(bound[0].payload, 0));
}

/// SST and CONTINUE payloads joined, without the CONTINUE records' own flag bytes removed.
std::vector<std::string> sstParts(const std::vector<Record> &records)
{
    std::vector<std::string> parts;
    bool in = false;
    for (const Record &r : records) {
        if (r.type == biff::kSst)
            in = true;
        else if (r.type != biff::kContinue)
            in = false;
        if (in)
            parts.push_back(r.payload);
    }
    return parts;
}

// ---- the BIFF8 records ----

TEST(XlsWorkbook, WritesOneLabelOneNumberAndOneBlank)
{
    workbook book;
    worksheet *sheet = book.sheet(u"S");
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->label(0, 0, u"A"));
    EXPECT_TRUE(sheet->number(1, 2, 3.5));
    EXPECT_TRUE(sheet->blank(2, 1));
    const auto records = streamRecords(book);

    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.front().type, biff::kBof);
    EXPECT_EQ(records.front().payload.substr(0, 4), bytes({0x00, 0x06, 0x05, 0x00})); // BIFF8, globals
    const auto codepage = ofType(records, biff::kCodepage);
    ASSERT_EQ(codepage.size(), 1u);
    EXPECT_EQ(codepage[0].payload, bytes({0xB0, 0x04})); // 1200: UTF-16
    EXPECT_EQ(ofType(records, biff::kXf).size(), 16u);

    const auto sst = ofType(records, biff::kSst);
    ASSERT_EQ(sst.size(), 1u);
    EXPECT_EQ(sst[0].payload, bytes({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 'A'}));

    const auto sheetRecords = firstSheet(records);
    ASSERT_FALSE(sheetRecords.empty());
    EXPECT_EQ(sheetRecords.front().payload.substr(0, 4), bytes({0x00, 0x06, 0x10, 0x00})); // worksheet BOF
    const auto dims = ofType(sheetRecords, biff::kDimensions);
    ASSERT_EQ(dims.size(), 1u);
    EXPECT_EQ(dims[0].payload, bytes({0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 3, 0, 0, 0}));

    std::vector<Record> cells;
    for (const Record &r : sheetRecords)
        if (r.type == biff::kLabelSst || r.type == biff::kNumber || r.type == biff::kBlank)
            cells.push_back(r);
    ASSERT_EQ(cells.size(), 3u);
    EXPECT_EQ(cells[0].type, biff::kLabelSst);
    EXPECT_EQ(cells[0].payload, bytes({0, 0, 0, 0, 15, 0, 0, 0, 0, 0}));
    EXPECT_EQ(cells[1].type, biff::kNumber);
    EXPECT_EQ(cells[1].payload, bytes({1, 0, 2, 0, 15, 0, 0, 0, 0, 0, 0, 0, 0x0C, 0x40})); // 3.5
    EXPECT_EQ(cells[2].type, biff::kBlank);
    EXPECT_EQ(cells[2].payload, bytes({2, 0, 1, 0, 15, 0}));
    EXPECT_EQ(sheetRecords.back().type, biff::kEof);
}

TEST(XlsWorkbook, NumberFormatsAndBooleanCells)
{
    workbook book;
    worksheet *sheet = book.sheet(u"S");
    ASSERT_NE(sheet, nullptr);
    const std::uint16_t date = book.numberFormat(u"yyyy-mm-dd");
    const std::uint16_t amount = book.numberFormat(u"0.00\u20AC"); // a code beyond Latin-1
    EXPECT_EQ(date, 16);
    EXPECT_EQ(amount, 17);
    EXPECT_EQ(book.numberFormat(u"yyyy-mm-dd"), date); // asked again: the same format
    EXPECT_TRUE(sheet->number(0, 0, 1.0, date));
    EXPECT_TRUE(sheet->boolean(0, 1, true));
    EXPECT_TRUE(sheet->boolean(1, 0, false));
    const auto records = streamRecords(book);

    // FORMAT records numbered from 164, narrow or UTF-16 as the code needs, before the XFs.
    const auto formats = ofType(records, biff::kFormat);
    ASSERT_EQ(formats.size(), 2u);
    EXPECT_EQ(formats[0].payload, bytes({164, 0, 10, 0, 0, 'y', 'y', 'y', 'y', '-', 'm', 'm', '-', 'd', 'd'}));
    EXPECT_EQ(formats[1].payload, bytes({165, 0, 5, 0, 1, '0', 0, '.', 0, '0', 0, '0', 0, 0xAC, 0x20}));
    const auto xfs = ofType(records, biff::kXf);
    ASSERT_EQ(xfs.size(), 18u);
    EXPECT_LT(formats[1].offset, xfs[0].offset);
    EXPECT_EQ(u16At(xfs[16].payload, 2), 164u); // the cell XF of the first format uses it
    EXPECT_EQ(u16At(xfs[17].payload, 2), 165u);
    EXPECT_EQ(static_cast<unsigned char>(xfs[16].payload[9]), 0x04); // and says it sets a number format

    std::vector<Record> cells;
    for (const Record &r : firstSheet(records))
        if (r.type == biff::kNumber || r.type == biff::kBoolErr)
            cells.push_back(r);
    ASSERT_EQ(cells.size(), 3u);
    EXPECT_EQ(cells[0].payload, bytes({0, 0, 0, 0, 16, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F})); // 1.0 with XF 16
    EXPECT_EQ(cells[1].type, biff::kBoolErr);
    EXPECT_EQ(cells[1].payload, bytes({0, 0, 1, 0, 15, 0, 1, 0}));
    EXPECT_EQ(cells[2].payload, bytes({1, 0, 0, 0, 15, 0, 0, 0}));

    // A workbook that asks for no format has none: the default records only.
    workbook plain;
    ASSERT_NE(plain.sheet(u"S"), nullptr);
    const auto plainRecords = streamRecords(plain);
    EXPECT_TRUE(ofType(plainRecords, biff::kFormat).empty());
    EXPECT_EQ(ofType(plainRecords, biff::kXf).size(), 16u);
}

TEST(XlsWorkbook, KeepsEachTextOnceInItsNarrowestForm)
{
    struct Case {
        std::u16string text;
        std::string entry; // count, flags, characters
    };
    const Case cases[] = {
        {u"A", bytes({1, 0, 0, 'A'})},
        {u"\u00e9t\u00e9", bytes({3, 0, 0, 0xE9, 't', 0xE9})},       // Latin-1: one byte a character
        {u"\u65e5\u672c", bytes({2, 0, 1, 0xE5, 0x65, 0x2C, 0x67})}, // two bytes a unit
        {u"\U0001F600", bytes({2, 0, 1, 0x3D, 0xD8, 0x00, 0xDE})},   // a surrogate pair
    };
    for (const Case &c : cases) {
        workbook book;
        worksheet *sheet = book.sheet(u"S");
        ASSERT_NE(sheet, nullptr);
        EXPECT_TRUE(sheet->label(0, 0, c.text));
        EXPECT_TRUE(sheet->label(1, 0, c.text)); // the same text again: one entry, two uses
        const auto sst = ofType(streamRecords(book), biff::kSst);
        ASSERT_EQ(sst.size(), 1u);
        EXPECT_EQ(sst[0].payload, bytes({2, 0, 0, 0, 1, 0, 0, 0}) + c.entry) << utf16ToUtf8(c.text);
    }
}

TEST(XlsWorkbook, SharedStringTableGoesOnInContinueRecords)
{
    struct Case {
        const char *what;
        std::vector<std::u16string> texts;
        std::vector<std::size_t> recordSizes; // SST, then each CONTINUE
        std::vector<int> continueFirstByte;   // -1: a text header starts the record
    };
    const std::u16string narrow3000(3000, u'a');
    const std::u16string wide2000(2000, u'\u0100');
    const std::u16string narrow8211(8211, u'b');
    const Case cases[] = {
        // 8 + 3003 + 3004 + 3 = 6018: 2206 of the third text's 3001 characters fit, 795 go on.
        {"narrow text split", {narrow3000, narrow3000 + u"x", narrow3000 + u"y"}, {8224, 1 + 795}, {0}},
        // 8 + 4003 + 4005 + 3 = 8019: 102 two-byte units fit (one byte stays free), 1899 go on.
        {"wide text split", {wide2000, wide2000 + u"x", wide2000 + u"y"}, {8223, 1 + 1899 * 2}, {1}},
        // 8 + 8214 = 8222: the next header and its first character do not fit, it moves whole.
        {"header moves whole", {narrow8211, u"next"}, {8222, 7}, {-1}},
    };
    for (const Case &c : cases) {
        workbook book;
        worksheet *sheet = book.sheet(u"S");
        ASSERT_NE(sheet, nullptr);
        for (std::size_t i = 0; i < c.texts.size(); ++i)
            EXPECT_TRUE(sheet->label(static_cast<std::uint32_t>(i), 0, c.texts[i]));
        std::string stream;
        const auto records = streamRecords(book, &stream);
        const auto parts = sstParts(records);
        ASSERT_EQ(parts.size(), c.recordSizes.size()) << c.what;
        for (std::size_t i = 0; i < parts.size(); ++i)
            EXPECT_EQ(parts[i].size(), c.recordSizes[i]) << c.what << " record " << i;
        for (std::size_t i = 0; i < c.continueFirstByte.size(); ++i) {
            if (c.continueFirstByte[i] >= 0)
                EXPECT_EQ(static_cast<unsigned char>(parts[i + 1][0]), c.continueFirstByte[i]) << c.what;
            else
                EXPECT_EQ(u16At(parts[i + 1], 0), c.texts.back().size()) << c.what;
        }

        // EXTSST's first bucket points at the first text's header.
        const auto ext = ofType(records, biff::kExtSst);
        ASSERT_EQ(ext.size(), 1u);
        EXPECT_EQ(u16At(ext[0].payload, 0), 8u);
        const std::size_t firstText = u32At(ext[0].payload, 2);
        EXPECT_EQ(u16At(stream, firstText), c.texts[0].size()) << c.what;
        EXPECT_EQ(u16At(ext[0].payload, 6), 4u + 8u);
    }
}

TEST(XlsWorkbook, ExtSstPointsAtTheFirstTextOfEveryBucket)
{
    // 40,000 texts: more than the 128 buckets of 8 and more than the marks kept at first.
    workbook book;
    worksheet *sheet = book.sheet(u"S");
    ASSERT_NE(sheet, nullptr);
    std::vector<std::u16string> texts;
    for (std::uint32_t i = 0; i < 40000; ++i) {
        const std::string text = "text " + std::to_string(i) + std::string(i % 50, '.');
        texts.emplace_back(text.begin(), text.end());
        ASSERT_TRUE(sheet->label(i, i % 7, texts.back()));
    }
    std::string stream;
    const auto records = streamRecords(book, &stream);
    const auto sst = ofType(records, biff::kSst);
    ASSERT_EQ(sst.size(), 1u);
    EXPECT_EQ(u32At(sst[0].payload, 0), 40000u);
    EXPECT_EQ(u32At(sst[0].payload, 4), 40000u);
    const auto ext = ofType(records, biff::kExtSst);
    ASSERT_EQ(ext.size(), 1u);
    const std::uint32_t perBucket = u16At(ext[0].payload, 0);
    const std::size_t buckets = (ext[0].payload.size() - 2) / 8;
    EXPECT_LE(buckets, 128u);
    EXPECT_EQ(buckets, (40000 + perBucket - 1) / perBucket);
    for (std::size_t b = 0; b < buckets; ++b) {
        const std::size_t at = u32At(ext[0].payload, 2 + 8 * b);
        const std::u16string &text = texts[b * perBucket];
        ASSERT_EQ(u16At(stream, at), text.size()) << "bucket " << b;
        EXPECT_EQ(stream[at + 2], 0);
        const std::size_t inRecord = u16At(ext[0].payload, 2 + 8 * b + 4);
        const std::size_t recordStart = at - inRecord;
        const std::size_t recordEnd = recordStart + 4 + u16At(stream, recordStart + 2);
        const std::size_t shown = std::min(text.size(), recordEnd - at - 3);
        EXPECT_EQ(stream.substr(at + 3, shown), std::string(text.begin(), text.begin() + shown)) << "bucket " << b;
    }
}

TEST(XlsWorkbook, IndexDbCellAndBoundSheetPointAtTheirRecords)
{
    workbook book;
    worksheet *first = book.sheet(u"First");
    ASSERT_NE(first, nullptr);
    for (std::uint32_t row = 0; row < 40; ++row) { // two row blocks
        EXPECT_TRUE(first->number(row, 0, row));
        if (row % 3 == 0) {
            EXPECT_TRUE(first->label(row, 5, u"x"));
        }
    }
    worksheet *second = book.sheet(u"Second"); // closes the first one into temporary storage
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(first->isClosed());
    EXPECT_TRUE(second->blank(7, 7));
    std::string stream;
    const auto records = streamRecords(book, &stream);
    auto recordAt = [&](std::size_t offset) -> const Record * {
        for (const Record &r : records)
            if (r.offset == offset)
                return &r;
        return nullptr;
    };

    const auto bound = ofType(records, biff::kBoundSheet);
    ASSERT_EQ(bound.size(), 2u);
    const std::vector<std::size_t> expectedBlocks = {2, 1};
    for (std::size_t s = 0; s < bound.size(); ++s) {
        const Record *bof = recordAt(u32At(bound[s].payload, 0));
        ASSERT_NE(bof, nullptr);
        EXPECT_EQ(bof->type, biff::kBof);
        EXPECT_EQ(u16At(bof->payload, 2), biff::kWorksheetSubstream);

        const auto sheet = substreamAt(records, bof->offset);
        const auto index = ofType(sheet, biff::kIndex);
        ASSERT_EQ(index.size(), 1u);
        const std::string &ip = index[0].payload;
        ASSERT_EQ((ip.size() - 16) / 4, expectedBlocks[s]);
        const Record *defColWidth = recordAt(u32At(ip, 12));
        ASSERT_NE(defColWidth, nullptr);
        EXPECT_EQ(defColWidth->type, biff::kDefColWidth);
        for (std::size_t b = 0; b < expectedBlocks[s]; ++b) {
            const Record *dbcell = recordAt(u32At(ip, 16 + 4 * b));
            ASSERT_NE(dbcell, nullptr);
            ASSERT_EQ(dbcell->type, biff::kDbCell);
            const Record *firstRow = recordAt(dbcell->offset - u32At(dbcell->payload, 0));
            ASSERT_NE(firstRow, nullptr);
            ASSERT_EQ(firstRow->type, biff::kRow);
            // Each offset leads to the first cell of the next row of the block.
            std::size_t cell = firstRow->offset + 20;
            for (std::size_t k = 0; k * 2 + 4 < dbcell->payload.size(); ++k) {
                cell += u16At(dbcell->payload, 4 + 2 * k);
                const Record *cellRecord = recordAt(cell);
                ASSERT_NE(cellRecord, nullptr);
                const Record *rowRecord = recordAt(firstRow->offset + 20 * k);
                ASSERT_NE(rowRecord, nullptr);
                EXPECT_EQ(rowRecord->type, biff::kRow);
                EXPECT_EQ(u16At(cellRecord->payload, 0), u16At(rowRecord->payload, 0));
                EXPECT_EQ(u16At(cellRecord->payload, 2), u16At(rowRecord->payload, 2)); // first column
            }
        }
    }
}

TEST(XlsWorkbook, RefusesCellsOutsideTheSheetOrAlreadyWrittenOut)
{
    workbook book;
    worksheet *sheet = book.sheet(u"S");
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->label(0, 0, std::u16string(32767, u'x')));
    EXPECT_FALSE(sheet->label(0, 1, std::u16string(32768, u'x')));
    EXPECT_TRUE(sheet->number(31, 1, 1)); // rows 0-31 are one block
    EXPECT_TRUE(sheet->number(1, 1, 1));
    EXPECT_TRUE(sheet->number(40, 0, 1)); // the next block: rows 0-31 are written out
    EXPECT_FALSE(sheet->number(31, 2, 1));
    EXPECT_FALSE(sheet->label(2, 2, u"late"));
    EXPECT_EQ(sheet->cellCount(), 1u);
    EXPECT_TRUE(sheet->number(65535, 255, 1));
    EXPECT_FALSE(sheet->number(65536, 0, 1));
    EXPECT_FALSE(sheet->blank(65535, 256));
    ASSERT_NE(book.sheet(u"T"), nullptr); // finishes S
    EXPECT_FALSE(sheet->number(65535, 0, 1));
    EXPECT_EQ(book.GetSheet(0), sheet);
    EXPECT_EQ(book.GetSheet(2), nullptr);
    StringSink saved;
    ASSERT_TRUE(book.Dump(saved)) << book.lastError();
    EXPECT_EQ(book.sheet(u"After"), nullptr);

    workbook empty;
    StringSink sink;
    EXPECT_FALSE(empty.Dump(sink));
    EXPECT_EQ(empty.lastError(), "The workbook has no sheet.");
}

TEST(XlsWorkbook, KeepsTheLastValueOfACellWrittenTwice)
{
    workbook book;
    worksheet *sheet = book.sheet(u"S");
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->number(3, 1, 1));
    EXPECT_TRUE(sheet->label(0, 0, u"first"));
    EXPECT_TRUE(sheet->label(3, 1, u"last")); // replaces the number
    EXPECT_TRUE(sheet->blank(0, 2));
    const auto records = streamRecords(book);
    std::vector<std::pair<std::uint16_t, std::uint32_t>> cells; // type, row << 8 | col
    for (const Record &r : firstSheet(records))
        if (r.type == biff::kLabelSst || r.type == biff::kNumber || r.type == biff::kBlank)
            cells.emplace_back(r.type, u16At(r.payload, 0) << 8 | u16At(r.payload, 2));
    const std::vector<std::pair<std::uint16_t, std::uint32_t>> expected = {
        {biff::kLabelSst, 0x000}, {biff::kBlank, 0x002}, {biff::kLabelSst, 0x301}};
    EXPECT_EQ(cells, expected);
    const auto sst = ofType(records, biff::kSst);
    ASSERT_EQ(sst.size(), 1u);
    EXPECT_EQ(u32At(sst[0].payload, 0), 2u); // two cells refer to texts
}

TEST(XlsSheetNames, FollowExcelRules)
{
    struct Case {
        std::u16string proposed;
        std::u16string expected;
    };
    const Case cases[] = {
        {u"Orders", u"Orders"},
        {u"a]b", u"a_b"},
        {u"x:y\\z/w?v*u[t", u"x_y_z_w_v_u_t"},
        {u"'quoted'", u"_quoted_"},
        {u"It's", u"It's"},
        {u"abcdefghijklmnopqrstuvwxyz0123456789", u"abcdefghijklmnopqrstuvwxyz01234"},
        {u"abcdefghijklmnopqrstuvwxyz0123456789(12)", u"abcdefghijklmnopqrstuvwxyz0(12)"},
        {std::u16string(30, u'a') + u"\U0001F600", std::u16string(30, u'a')}, // no half pair
        {u"\u00dcn\u00efcode \u8868", u"\u00dcn\u00efcode \u8868"},
        {u"", u""},
    };
    for (const Case &c : cases)
        EXPECT_EQ(utf16ToUtf8(excelSheetName(c.proposed)), utf16ToUtf8(c.expected)) << utf16ToUtf8(c.proposed);

    workbook book;
    ASSERT_NE(book.sheet(u"a]b"), nullptr);
    EXPECT_EQ(book.sheet(u"A[B"), nullptr);
    EXPECT_EQ(book.lastError(), "The workbook has a sheet named \"A_B\" already.");
    EXPECT_EQ(book.sheet(u""), nullptr);
    EXPECT_NE(book.sheet(u"a]b(2)"), nullptr);
    EXPECT_EQ(book.sheetCount(), 2u);
}

TEST(Utf16, ConvertsUtf8ToUtf16AndBack)
{
    struct Case {
        std::string utf8;
        std::optional<std::u16string> utf16;
        std::size_t units;
    };
    const Case cases[] = {
        {"", std::nullopt, 0},
        {"plain", u"plain", 5},
        {"\xc3\xa9t\xc3\xa9", u"\u00e9t\u00e9", 3},
        {"\xe6\x97\xa5\xe6\x9c\xac", u"\u65e5\u672c", 2},
        {"\xf0\x9f\x98\x80!", u"\U0001F600!", 3},
        {"bad \xc3\x28", std::nullopt, 6},
        {"cut \xe6\x97", std::nullopt, 5},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(UTF8ToUTF16Converter(c.utf8.data(), c.utf8.size()), c.utf16) << c.utf8;
        std::u16string reused = u"stale";
        EXPECT_EQ(utf8ToUtf16(c.utf8, reused), c.utf16.has_value()) << c.utf8;
        EXPECT_EQ(reused, c.utf16.value_or(u"")) << c.utf8;
        EXPECT_EQ(utf16Length(c.utf8), c.units) << c.utf8;
        if (c.utf16) {
            EXPECT_EQ(utf16ToUtf8(*c.utf16), c.utf8);
        }
    }
    EXPECT_EQ(UTF8ToUTF16Converter(nullptr, 3), std::nullopt);
    EXPECT_EQ(utf16ToUtf8(u"a\xD800z"), "a\xef\xbf\xbdz"); // unpaired surrogate
}

// ---- read back by an independent reader ----

TEST(XlsWorkbook, IndependentReaderSeesSheetsAndCells)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    test::TempDir dir;
    const std::string path = dir.file("book.xls");
    const std::u16string longText = std::u16string(32766, u'z') + u"\u00e9";
    {
        workbook book;
        worksheet *a = book.sheet(u"\u00dcn\u00efcode \u8868");
        ASSERT_NE(a, nullptr);
        a->label(0, 0, u"Name");
        a->label(0, 1, u"Value");
        a->label(1, 0, u"emoji \U0001F600");
        a->number(1, 1, -12.25);
        a->blank(2, 1);
        a->label(3, 0, longText);
        a->number(3, 255, 1e300);
        ASSERT_NE(book.sheet(u"Empty"), nullptr);
        worksheet *many = book.sheet(u"Many");
        ASSERT_NE(many, nullptr);
        for (std::uint32_t row = 0; row < 65536; row += 7)
            many->label(row, row % 256, u"r" + std::u16string(1, static_cast<char16_t>(u'a' + row % 26)));
        ASSERT_TRUE(book.Dump(path)) << book.lastError();
    }
    const test::ReadWorkbook read = test::readWorkbook(path);
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_TRUE(read.warnings.empty()) << read.warnings.front();
    ASSERT_EQ(read.sheets.size(), 3u);
    const test::ReadSheet &a = read.sheets[0];
    EXPECT_EQ(a.name, "\xc3\x9cn\xc3\xaf"
                      "code \xe8\xa1\xa8");
    ASSERT_NE(a.at(1, 0), nullptr);
    EXPECT_EQ(a.at(1, 0)->value, "emoji \xf0\x9f\x98\x80");
    ASSERT_NE(a.at(1, 1), nullptr);
    EXPECT_EQ(a.at(1, 1)->type, "number");
    EXPECT_EQ(a.at(1, 1)->value, -12.25);
    ASSERT_NE(a.at(2, 1), nullptr);
    EXPECT_EQ(a.at(2, 1)->type, "blank");
    ASSERT_NE(a.at(3, 0), nullptr);
    EXPECT_EQ(a.at(3, 0)->value, utf16ToUtf8(longText));
    ASSERT_NE(a.at(3, 255), nullptr);
    EXPECT_EQ(a.at(3, 255)->value, 1e300);
    EXPECT_EQ(a.cells.size(), 7u);
    EXPECT_EQ(read.sheets[1].name, "Empty");
    EXPECT_TRUE(read.sheets[1].cells.empty());
    const test::ReadSheet &many = read.sheets[2];
    EXPECT_EQ(many.cells.size(), 65536u / 7 + 1);
    ASSERT_NE(many.at(65534, 65534 % 256), nullptr);
    EXPECT_EQ(many.at(65534, 65534 % 256)->value, "r" + std::string(1, static_cast<char>('a' + 65534 % 26)));
}

TEST(CompoundFileWriter, IndependentReaderSeesEveryStream)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    // Small streams go to the mini stream, the others to big sectors; 8 MB needs more FAT
    // sectors than the header lists (DIFAT sectors).
    const std::vector<std::size_t> sizes = {1, 63, 64, 65, 4095, 4096, 4097, 100000, 8u << 20};
    std::mt19937 random(7);
    CompoundFileWriter file;
    std::vector<std::string> contents;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        std::string data(sizes[i], '\0');
        for (char &c : data)
            c = static_cast<char>(random());
        contents.push_back(data);
        const std::string name = "Stream" + std::to_string(i);
        ASSERT_TRUE(file.addStream(std::u16string(name.begin(), name.end()), data));
    }
    EXPECT_FALSE(file.addStream(u"STREAM0", std::string("duplicate")));
    EXPECT_FALSE(file.addStream(std::u16string(32, u'n'), std::string("too long a name")));

    test::TempDir dir;
    const std::string path = dir.file("streams.cfb");
    vellum::FileSink sink;
    ASSERT_TRUE(sink.open(path));
    ASSERT_TRUE(file.write(sink));
    ASSERT_TRUE(sink.close());
    const test::ReadWorkbook read = test::readCompoundStreams(path);
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_TRUE(read.warnings.empty()) << read.warnings.front();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const std::string name = "Stream" + std::to_string(i);
        ASSERT_TRUE(read.streams.contains(name)) << name;
        EXPECT_EQ(read.streams[name]["size"], sizes[i]) << name;
        EXPECT_EQ(read.streams[name]["sha256"], sha256Hex(contents[i].data(), contents[i].size())) << name;
    }

    // A producer that writes fewer bytes than announced fails the file.
    CompoundFileWriter wrong;
    ASSERT_TRUE(wrong.addStream(u"Short", 5000, [](ExportSink &out) { return out.write(std::string(10, 'x')); }));
    StringSink memory;
    EXPECT_FALSE(wrong.write(memory));
}

} // namespace
} // namespace vellum::xls

#include "model/ole/oleField.h"
#include "model/ole/cStrings.h"
#include "model/ole/decodeOleCell.h"
#include "model/ole/inflateRaw.h"

#include "CompoundDocumentBuilder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace vellum {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put16(Bytes &out, std::uint16_t v)
{
    out.push_back(static_cast<std::uint8_t>(v));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
}

void put32(Bytes &out, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

void putString(Bytes &out, const std::string &text, bool terminated = true)
{
    out.insert(out.end(), text.begin(), text.end());
    if (terminated)
        out.push_back(0);
}

Bytes bytesOf(const std::string &text)
{
    return Bytes(text.begin(), text.end());
}

/// An OLE object header followed by an OLE 1 record of the type name around native data.
Bytes oleObject(const std::string &typeName, const Bytes &native)
{
    const std::string objectName = "Object", className = "Class";
    Bytes out;
    put16(out, 0x1C15);
    put16(out, static_cast<std::uint16_t>(20 + objectName.size() + 1 + className.size() + 1));
    put32(out, 2);
    put16(out, static_cast<std::uint16_t>(objectName.size() + 1));
    put16(out, static_cast<std::uint16_t>(className.size() + 1));
    put16(out, 20);
    put16(out, static_cast<std::uint16_t>(20 + objectName.size() + 1));
    put32(out, 0xFFFFFFFF);
    putString(out, objectName);
    putString(out, className);
    put32(out, 0x0501);
    put32(out, 2);
    put32(out, static_cast<std::uint32_t>(typeName.size() + 1));
    putString(out, typeName);
    put32(out, 0); // topic
    put32(out, 0); // item
    put32(out, static_cast<std::uint32_t>(native.size()));
    out.insert(out.end(), native.begin(), native.end());
    out.insert(out.end(), {0x01, 0x05, 0, 0, 0, 0, 0, 0}); // presentation record
    return out;
}

/// The native data of a "Package": label, source path, two values, temporary path, payload.
Bytes package(const std::string &label, const Bytes &payload)
{
    Bytes out;
    put16(out, 2);
    putString(out, label);
    putString(out, "C:\\Users\\test\\" + label);
    put32(out, 0x00030000);
    put32(out, static_cast<std::uint32_t>(label.size() + 20));
    putString(out, "C:\\Temp\\" + label);
    put32(out, static_cast<std::uint32_t>(payload.size()));
    out.insert(out.end(), payload.begin(), payload.end());
    return out;
}

Bytes utf16Extension(const std::string &extension)
{
    Bytes out;
    for (const char c : extension)
        put16(out, static_cast<std::uint8_t>(c));
    put16(out, 0);
    return out;
}

/// Attachment-style data, kind 0 (stored).
Bytes storedAttachment(const std::string &extension, const Bytes &payload)
{
    Bytes out;
    put32(out, 0);
    put32(out, 0);
    put32(out, 0);
    put32(out, 0);
    put32(out, static_cast<std::uint32_t>(extension.size() + 1));
    const Bytes units = utf16Extension(extension);
    out.insert(out.end(), units.begin(), units.end());
    out.insert(out.end(), payload.begin(), payload.end());
    return out;
}

/// The inflated block of a kind 1 attachment.
Bytes attachmentBlock(std::uint32_t count, const std::string &extension, const Bytes &payload)
{
    Bytes block;
    put32(block, 0);
    put32(block, 0);
    put32(block, count);
    const Bytes units = utf16Extension(extension);
    block.insert(block.end(), units.begin(), units.end());
    block.insert(block.end(), payload.begin(), payload.end());
    return block;
}

/// Attachment-style data, kind 1: the claimed size and a zlib stream of the block.
Bytes compressedAttachment(const Bytes &block, std::int64_t claimed = -1)
{
    uLongf length = compressBound(block.size());
    Bytes compressed(length);
    compress2(compressed.data(), &length, block.data(), block.size(), 9);
    compressed.resize(length);
    Bytes out;
    put32(out, 1);
    put32(out, static_cast<std::uint32_t>(claimed < 0 ? block.size() : claimed));
    out.insert(out.end(), compressed.begin(), compressed.end());
    return out;
}

struct Result {
    int status = -1;
    Bytes payload;
    std::string extension;
    bool hasExtension = false;
};

Result decode(const Bytes &field)
{
    void *payload = nullptr;
    char *extension = nullptr;
    std::size_t size = field.size();
    Result result;
    result.status = mdb_read_ole_field(field.data(), &payload, &size, &extension);
    if (result.status == 0) {
        const auto *p = static_cast<const std::uint8_t *>(payload);
        result.payload.assign(p, p + size);
    } else {
        // Failure allocates nothing for the caller.
        EXPECT_EQ(payload, nullptr);
        EXPECT_EQ(extension, nullptr);
    }
    if (extension) {
        result.hasExtension = true;
        result.extension = extension;
    }
    std::free(payload);
    std::free(extension);
    return result;
}

Bytes compoundDocument(bool withPackage, const Bytes &content)
{
    test::CompoundDocumentBuilder builder;
    builder.addStream(u"\x01"
                      u"CompObj",
                      bytesOf("compobj"));
    if (withPackage)
        builder.addStream(u"Package", content);
    else
        builder.addStream(u"Contents", content);
    return builder.bytes();
}

TEST(MdbReadOleField, DecodesEachKindOfWrapping)
{
    const Bytes bitmap = bytesOf("BM bitmap bits");
    const Bytes pdf = bytesOf("%PDF-1.4 tiny document");
    const Bytes docx = bytesOf("PK\x03\x04 docx zip content");
    const Bytes cfbWithPackage = compoundDocument(true, docx);
    const Bytes cfbWithoutPackage = compoundDocument(false, docx);
    const Bytes photo = bytesOf("\xFF\xD8\xFF\xE0 jpeg");
    const Bytes text(600, 'x');

    Bytes behindHeader; // an unknown attachment kind behind a non-zero header length
    put16(behindHeader, 0x0007);
    put16(behindHeader, 20);
    put32(behindHeader, 0);
    put16(behindHeader, 1);
    put16(behindHeader, 1);
    put16(behindHeader, 4);
    put16(behindHeader, 5);
    put32(behindHeader, 0);
    put32(behindHeader, 9);
    putString(behindHeader, "raw tail", false);

    struct Case {
        const char *label;
        Bytes field;
        Bytes payload;
        const char *extension; // nullptr: none
    };
    const Case cases[] = {
        {"Paintbrush", oleObject("PBrush", bitmap), bitmap, "bmp"},
        {"Word 97", oleObject("Word.Document.8", pdf), pdf, "doc"},
        {"package with dotted label", oleObject("Package", package("report.final.pdf", pdf)), pdf, "pdf"},
        {"package without dot", oleObject("Package", package("README", pdf)), pdf, nullptr},
        {"package label ending in a dot", oleObject("Package", package("notes.", pdf)), pdf, nullptr},
        {"package extension with slash", oleObject("Package", package("a.b/c", pdf)), pdf, nullptr},
        {"package extension too long", oleObject("Package", package("x." + std::string(300, 'e'), pdf)), pdf, nullptr},
        {"empty package payload", oleObject("Package", package("empty.txt", {})), {}, "txt"},
        {"Word 2007 with Package stream", oleObject("Word.Document.12", cfbWithPackage), docx, "docx"},
        {"Word 2007 without Package stream", oleObject("Word.Document.12", cfbWithoutPackage), cfbWithoutPackage,
         "docx"},
        {"Word 2007 not a compound document", oleObject("Word.Document.12", docx), docx, "docx"},
        {"WordPad with Contents stream", oleObject("WordPad.Document.1", cfbWithoutPackage), docx, "rtf"},
        {"unknown class", oleObject("Equation.3", cfbWithPackage), cfbWithPackage, nullptr},
        {"class names compare exactly", oleObject("pbrush", bitmap), bitmap, nullptr},
        {"stored attachment", storedAttachment("jpg", photo), photo, "jpg"},
        {"stored attachment, no extension", storedAttachment("", photo), photo, nullptr},
        {"compressed attachment", compressedAttachment(attachmentBlock(4, "txt", text)), text, "txt"},
        {"other kind, whole field", bytesOf(std::string("\x07\0\0\0rest", 8)),
         bytesOf(std::string("\x07\0\0\0rest", 8)), nullptr},
        {"other kind behind a header", behindHeader, bytesOf(std::string("\x09\0\0\0raw tail", 12)), nullptr},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        const Result result = decode(c.field);
        ASSERT_EQ(result.status, 0);
        EXPECT_EQ(result.payload, c.payload);
        EXPECT_EQ(result.hasExtension, c.extension != nullptr);
        if (c.extension) {
            EXPECT_EQ(result.extension, c.extension);
        }
    }
}

TEST(MdbReadOleField, MalformedFieldsFail)
{
    const Bytes pdf = bytesOf("%PDF-1.4");
    const auto patched = [](Bytes field, std::size_t at, std::initializer_list<std::uint8_t> bytes) {
        std::copy(bytes.begin(), bytes.end(), field.begin() + static_cast<std::ptrdiff_t>(at));
        return field;
    };
    const auto truncated = [](Bytes field, std::size_t length) {
        field.resize(length);
        return field;
    };
    const Bytes bitmapObject = oleObject("PBrush", pdf);
    // Offsets inside oleObject(): header 20 + "Object\0" + "Class\0" = 33, then the record.
    const std::size_t record = 33;
    const std::size_t nativeSizeAt = record + 12 + 7 + 8;
    const Bytes packageObject = oleObject("Package", package("a.pdf", pdf));
    const std::size_t labelAt = record + 12 + 8 + 8 + 4 + 2;
    const Bytes shortPackage = oleObject("Package", Bytes(16, 0)); // ends in 8 presentation bytes
    Bytes packageNoTerminators = packageObject;
    std::fill(packageNoTerminators.begin() + static_cast<std::ptrdiff_t>(labelAt), packageNoTerminators.end(), 'z');

    const Bytes stored = storedAttachment("jpg", pdf);
    const Bytes block = attachmentBlock(4, "txt", pdf);
    Bytes notDeflate = {1, 0, 0, 0, 50, 0, 0, 0, 0x78, 0xDA, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    const Bytes compressed = compressedAttachment(block);

    struct Case {
        const char *label;
        Bytes field;
    };
    const Case cases[] = {
        {"empty", {}},
        {"three bytes", {0x15, 0x1C, 0x00}},
        {"header length beyond the field", patched(bitmapObject, 2, {0xFF, 0x7F})},
        {"negative header length", patched(bitmapObject, 2, {0x00, 0x80})},
        {"OLE header shorter than 20 bytes", truncated(bitmapObject, 19)},
        {"object name over 255", patched(bitmapObject, 8, {0x00, 0x01})},
        {"class name past the end", patched(bitmapObject, 14, {0xF0, 0x7F})},
        {"object name not terminated", patched(bitmapObject, 26, {'x'})},
        {"class name not terminated", patched(bitmapObject, 32, {'x'})},
        {"record shorter than 12 bytes", truncated(bitmapObject, record + 11)},
        {"type name length over 255", patched(bitmapObject, record + 8, {0x00, 0x01, 0, 0})},
        {"type name past the end", truncated(bitmapObject, record + 15)},
        {"type name not terminated", patched(bitmapObject, record + 18, {'x'})},
        {"native size past the end", patched(bitmapObject, nativeSizeAt, {0xFF, 0x00, 0, 0})},
        {"negative native size", patched(bitmapObject, nativeSizeAt, {0xFF, 0xFF, 0xFF, 0xFF})},
        {"native data beyond the field", truncated(bitmapObject, nativeSizeAt + 2)},
        {"package shorter than 17 bytes", truncated(shortPackage, shortPackage.size() - 8)},
        {"package strings not terminated", packageNoTerminators},
        {"package payload past the field", patched(packageObject, labelAt + 6 + 20 + 8 + 14, {0xFF, 0xFF, 0, 0})},
        {"package payload size negative", patched(packageObject, labelAt + 6 + 20 + 8 + 14, {0xFF, 0xFF, 0xFF, 0xFF})},
        {"attachment shorter than 5 bytes", {0, 0, 0, 0}},
        {"stored attachment shorter than 20 bytes", truncated(stored, 19)},
        {"stored extension past the end", patched(stored, 16, {0xFF, 0, 0, 0})},
        {"stored extension count negative", patched(stored, 16, {0xFF, 0xFF, 0xFF, 0xFF})},
        {"compressed attachment shorter than 11 bytes", truncated(compressed, 10)},
        {"uncompressed size below 12", patched(compressed, 4, {11, 0, 0, 0})},
        {"uncompressed size negative", patched(compressed, 4, {0xFF, 0xFF, 0xFF, 0xFF})},
        {"data that does not inflate", notDeflate},
        {"truncated deflate data", truncated(compressed, compressed.size() - 6)},
        {"uncompressed size too small", patched(compressed, 4, {20, 0, 0, 0})},
        {"count larger than the inflated block", compressedAttachment(attachmentBlock(40, "txt", {}))},
        {"inflated block shorter than 12 bytes", compressedAttachment(Bytes{1, 2, 3, 4, 5}, 100)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(decode(c.field).status, 1);
    }
}

TEST(MdbReadOleField, DecodeOleCellWrapsThePayload)
{
    const Bytes bitmap = bytesOf("BM bitmap");
    const Bytes field = oleObject("PBrush", bitmap);
    auto blob = decodeOleCell(field.data(), field.size());
    ASSERT_TRUE(blob);
    EXPECT_EQ(blob->data(), bitmap);
    EXPECT_EQ(blob->fileExtension(), "bmp");
    EXPECT_EQ(decodeOleCell(field.data(), 3), nullptr);
    EXPECT_EQ(decodeOleCell(nullptr, 10), nullptr);
    EXPECT_TRUE(isOleStream(compoundDocument(true, bitmap).data(), 8));
    EXPECT_FALSE(isOleStream(compoundDocument(true, bitmap).data(), 7));
    EXPECT_FALSE(isOleStream(bitmap.data(), bitmap.size()));
}

TEST(MdbReadOleField, PackagesKeepTheirLabel)
{
    const Bytes pdf = bytesOf("%PDF-1.4 tiny document");
    const Bytes bitmap = bytesOf("BM bitmap");
    const Bytes photo = bytesOf("\xFF\xD8\xFF\xE0 jpeg");
    struct Case {
        const char *name;
        Bytes field;
        std::string label; // of the decoded cell and of oleFieldPackageLabel
    };
    const Case cases[] = {
        {"dotted label", oleObject("Package", package("report.final.pdf", pdf)), "report.final.pdf"},
        {"label without a dot", oleObject("Package", package("README", pdf)), "README"},
        {"empty payload", oleObject("Package", package("empty.txt", {})), "empty.txt"},
        {"another class", oleObject("PBrush", bitmap), ""},
        {"an attachment", storedAttachment("jpg", photo), ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(oleFieldPackageLabel(c.field.data(), c.field.size()), c.label);
        auto blob = decodeOleCell(c.field.data(), c.field.size());
        ASSERT_TRUE(blob);
        EXPECT_EQ(blob->packageLabel(), c.label);
    }
    // A field cut inside the label has none.
    const Bytes whole = oleObject("Package", package("report.final.pdf", pdf));
    EXPECT_EQ(oleFieldPackageLabel(whole.data(), 40), "");
    EXPECT_EQ(oleFieldPackageLabel(nullptr, 10), "");
}

TEST(InflateRaw, ReportsZlibResults)
{
    const std::string text(1000, 'a');
    // Raw deflate: a zlib stream without its two-byte header and four-byte check value.
    uLongf length = compressBound(text.size());
    Bytes zlibStream(length);
    compress2(zlibStream.data(), &length, reinterpret_cast<const Bytef *>(text.data()), text.size(), 9);
    const Bytes raw(zlibStream.begin() + 2, zlibStream.begin() + static_cast<std::ptrdiff_t>(length) - 4);

    struct Case {
        const char *label;
        Bytes source;
        std::size_t room;
        int expected;
        std::size_t produced;
    };
    const Case cases[] = {
        {"whole stream", raw, 2000, Z_OK, 1000},
        {"exact room", raw, 1000, Z_OK, 1000},
        {"room too small", raw, 999, Z_BUF_ERROR, 999},
        {"truncated input", Bytes(raw.begin(), raw.end() - 3), 2000, Z_DATA_ERROR, 2000},
        {"not deflate", Bytes{0xFF, 0xFF, 0xFF}, 100, Z_DATA_ERROR, 100},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        Bytes dest(c.room);
        std::size_t produced = c.room;
        EXPECT_EQ(inflateRaw(dest.data(), &produced, c.source.data(), c.source.size()), c.expected);
        EXPECT_EQ(produced, c.produced);
        if (c.expected == Z_OK) {
            EXPECT_EQ(std::string(dest.begin(), dest.begin() + static_cast<std::ptrdiff_t>(produced)), text);
        }
    }
    std::size_t tooLarge = std::size_t{1} << 33;
    EXPECT_EQ(inflateRaw(nullptr, &tooLarge, raw.data(), raw.size()), Z_BUF_ERROR);
}

TEST(CStrings, ConvertWithTerminatorAndFallback)
{
    const std::string text = "é€x";
    std::size_t length = 0;
    const auto utf16 = cStringFromString(&text, "UTF-16LE", &length);
    ASSERT_TRUE(utf16);
    EXPECT_EQ(length, 6u);
    EXPECT_EQ(*utf16, std::string("\xE9\0\xAC\x20x\0\0\0", 8));
    const auto latin1 = cStringFromString(&text, "ISO-8859-1", &length);
    ASSERT_TRUE(latin1);
    EXPECT_EQ(length, 3u); // the euro sign has no Latin-1 form
    EXPECT_EQ(*latin1, std::string("\xE9?x\0\0", 5));
    EXPECT_FALSE(cStringFromString(nullptr, "UTF-8"));
    EXPECT_FALSE(cStringFromString(&text, "no-such-encoding"));

    EXPECT_EQ(stringFromCString("caf\xC3\xA9", 5, "UTF-8"), "café");
    EXPECT_EQ(stringFromCString("caf\xE9", 4, "UTF-8"), "café"); // read as Latin-1
    EXPECT_EQ(stringFromCString("\xE9\0", 2, "UTF-16LE"), "é");
    EXPECT_EQ(stringFromCString(nullptr, 4, "UTF-8"), "");
}

} // namespace
} // namespace vellum

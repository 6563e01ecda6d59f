#include "model/ole/oleField.h"

#include "model/fileExtensions.h"
#include "model/ole/inflateRaw.h"
#include "model/ole/pole.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

namespace {

constexpr int kOleSignature = 0x1C15;
/// Deflate cannot expand a byte to more than 1032 bytes: the room given to inflation is no
/// larger than what the compressed bytes can produce, whatever size the field claims.
constexpr std::uint64_t kMaxDeflateRatio = 1032;

struct OleClass {
    const char *typeName;
    const char *extension;
    const char *stream; ///< the compound document stream holding the file, or nullptr
};

constexpr OleClass kClasses[] = {
    {"PBrush", "bmp", nullptr},
    {"Word.Document.8", "doc", nullptr},
    {"Excel.Sheet.8", "xls", nullptr},
    {"Excel.Chart.8", "xls", nullptr},
    {"PowerPoint.Show.8", "ppt", nullptr},
    {"WordPad.Document.1", "rtf", "Contents"},
    {"Word.Document.12", "docx", "Package"},
    {"Excel.Sheet.12", "xlsx", "Package"},
    {"PowerPoint.Show.12", "pptx", "Package"},
    {"Word.DocumentMacroEnabled.12", "docm", "Package"},
    {"Excel.SheetMacroEnabled.12", "xlsm", "Package"},
    {"PowerPoint.ShowMacroEnabled.12", "pptm", "Package"},
    {"Word.OpenDocumentText.12", "odt", "EmbeddedOdf"},
    {"Excel.OpenDocumentSpreadsheet.12", "ods", "EmbeddedOdf"},
    {"PowerPoint.OpenDocumentPresentation.12", "odp", "EmbeddedOdf"},
};

/// Little-endian signed integers of the field.
int int16At(const unsigned char *field, std::size_t offset)
{
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(field[offset] | field[offset + 1] << 8));
}

std::int64_t int32At(const unsigned char *field, std::size_t offset)
{
    const std::uint32_t value =
        static_cast<std::uint32_t>(field[offset]) | static_cast<std::uint32_t>(field[offset + 1]) << 8 |
        static_cast<std::uint32_t>(field[offset + 2]) << 16 | static_cast<std::uint32_t>(field[offset + 3]) << 24;
    return static_cast<std::int32_t>(value);
}

/// Position of the zero byte ending a string that starts at `from`, or nullopt before `end`.
std::optional<std::size_t> terminator(const unsigned char *field, std::size_t from, std::size_t end)
{
    if (from >= end)
        return std::nullopt;
    const void *zero = std::memchr(field + from, 0, end - from);
    if (!zero)
        return std::nullopt;
    return static_cast<std::size_t>(static_cast<const unsigned char *>(zero) - field);
}

/// An extension stored as `count` UTF-16 units including the terminator: the low byte of each
/// unit, the last unit taken as the terminator.
std::string extensionFromUtf16(const unsigned char *units, std::int64_t count)
{
    std::string extension;
    for (std::int64_t i = 0; i + 1 < count; ++i) {
        const char c = static_cast<char>(units[2 * i]);
        if (c == '\0')
            break;
        extension += c;
    }
    return extension;
}

/// The content of one stream of a compound document held in memory, read in place: no
/// temporary file is involved, so the result never depends on the temporary folder.
std::optional<std::vector<unsigned char>> compoundStream(const unsigned char *document, std::size_t length,
                                                         const char *streamName)
{
    POLE::Storage storage(document, length);
    if (!storage.open())
        return std::nullopt;
    POLE::Stream stream(&storage, streamName);
    if (!stream.exists() || stream.fail())
        return std::nullopt;
    if (stream.size() > length) // a stream lies inside its document
        return std::nullopt;
    std::vector<unsigned char> content(static_cast<std::size_t>(stream.size()));
    const std::size_t got = stream.read(content.data(), content.size());
    if (got != stream.size())
        return std::nullopt;
    return content;
}

/// What the layers yield: a part of the field, or bytes of its own (inflated or extracted).
struct Decoded {
    const unsigned char *data = nullptr;
    std::size_t size = 0;
    std::string extension;
    std::string linkPath;   ///< a Package that holds only a link: the path it names
    std::string label;      ///< a Package's label
    bool labelOnly = false; ///< only a Package's label is wanted: other kinds stop early
    std::vector<unsigned char> owned;

    void own(std::vector<unsigned char> bytes, std::size_t from)
    {
        owned = std::move(bytes);
        data = owned.data() + from;
        size = owned.size() - from;
    }
};

/// The OLE 1 object record starting at `record`.
bool decodeOle1(const unsigned char *field, std::size_t length, std::size_t record, Decoded &out)
{
    const std::size_t r = length - record;
    if (r < 12)
        return false;
    const std::int64_t typeLength = int32At(field, record + 8);
    if (typeLength <= 0 || typeLength > 255 || 12 + typeLength > static_cast<std::int64_t>(r))
        return false;
    const std::size_t typeStart = record + 12;
    if (field[typeStart + typeLength - 1] != 0)
        return false;
    const std::string typeName(reinterpret_cast<const char *>(field + typeStart));
    if (out.labelOnly && typeName != "Package")
        return false;

    // Topic and item name lengths (8 bytes, taken as empty), then the native data's size.
    const std::size_t nativeStart = typeStart + static_cast<std::size_t>(typeLength) + 12;
    if (nativeStart > length)
        return false;
    const std::int64_t nativeSize = int32At(field, nativeStart - 4);
    if (nativeSize < 0 || nativeSize > static_cast<std::int64_t>(length - nativeStart))
        return false;

    if (typeName == "Package") {
        // Label, source path, two 32-bit values, temporary path, payload size, payload; every
        // part bounded by the field's end.
        if (length - nativeStart < 17)
            return false;
        const std::size_t labelStart = nativeStart + 2;
        const auto labelEnd = terminator(field, labelStart, length);
        if (!labelEnd)
            return false;
        const auto sourceEnd = terminator(field, *labelEnd + 1, length);
        // A linked file (type 0x10000) has no payload: two bytes, then the path it links to.
        constexpr std::int64_t kLinkedFile = 0x10000;
        if (sourceEnd && length - *sourceEnd >= 8 && int32At(field, *sourceEnd + 1) == kLinkedFile) {
            if (const auto linkEnd = terminator(field, *sourceEnd + 7, length))
                out.linkPath.assign(reinterpret_cast<const char *>(field + *sourceEnd + 7), *linkEnd - *sourceEnd - 7);
            return false;
        }
        if (!sourceEnd || length - *sourceEnd < 9)
            return false;
        const auto tempEnd = terminator(field, *sourceEnd + 9, length);
        if (!tempEnd || length - *tempEnd < 5)
            return false;
        const std::int64_t payloadSize = int32At(field, *tempEnd + 1);
        const std::size_t payloadStart = *tempEnd + 5;
        if (payloadSize < 0 || payloadSize > static_cast<std::int64_t>(length - payloadStart))
            return false;
        const std::string_view label(reinterpret_cast<const char *>(field + labelStart), *labelEnd - labelStart);
        out.label.assign(label);
        const std::size_t dot = label.rfind('.');
        if (dot != std::string_view::npos)
            out.extension = label.substr(dot + 1);
        out.data = field + payloadStart;
        out.size = static_cast<std::size_t>(payloadSize);
        return true;
    }

    out.data = field + nativeStart;
    out.size = static_cast<std::size_t>(nativeSize);
    for (const OleClass &oleClass : kClasses) {
        if (typeName != oleClass.typeName)
            continue;
        out.extension = oleClass.extension;
        if (oleClass.stream && isOleStream(out.data, out.size)) {
            // A failed extraction leaves the native data as the payload.
            if (auto content = compoundStream(out.data, out.size, oleClass.stream))
                out.own(*std::move(content), 0);
        }
        break;
    }
    return true;
}

/// Attachment-style data starting at `record`: kind 0 stored, kind 1 deflated, others as is.
bool decodeAttachment(const unsigned char *field, std::size_t length, std::size_t record, Decoded &out)
{
    const std::size_t r = length - record;
    if (r < 5)
        return false;
    const std::int64_t kind = int32At(field, record);
    if (kind == 0) {
        if (r < 20)
            return false;
        const std::int64_t count = int32At(field, record + 16);
        if (count < 0 || 20 + 2 * count > static_cast<std::int64_t>(r))
            return false;
        out.extension = extensionFromUtf16(field + record + 20, count);
        const std::size_t payloadStart = record + 20 + 2 * static_cast<std::size_t>(count);
        out.data = field + payloadStart;
        out.size = length - payloadStart;
        return true;
    }
    if (kind == 1) {
        if (r < 11)
            return false;
        const std::int64_t claimed = int32At(field, record + 4);
        if (claimed < 12)
            return false;
        // A zlib header of two bytes precedes the raw deflate data.
        const std::size_t compressed = r - 10;
        const std::uint64_t room =
            std::min<std::uint64_t>(static_cast<std::uint64_t>(claimed), compressed * kMaxDeflateRatio + 1024);
        std::vector<unsigned char> inflated(static_cast<std::size_t>(room));
        std::size_t produced = inflated.size();
        if (inflateRaw(inflated.data(), &produced, field + record + 10, compressed) != Z_OK)
            return false;
        if (produced < 12)
            return false;
        const std::int64_t count = int32At(inflated.data(), 8);
        if (count < 0 || 12 + 2 * count > static_cast<std::int64_t>(produced))
            return false;
        out.extension = extensionFromUtf16(inflated.data() + 12, count);
        inflated.resize(produced);
        out.own(std::move(inflated), 12 + 2 * static_cast<std::size_t>(count));
        return true;
    }
    out.data = field + record;
    out.size = r;
    return true;
}

} // namespace

bool isOleStream(const void *bytes, std::size_t length)
{
    static constexpr unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    return bytes && length >= 8 && std::memcmp(bytes, kSignature, 8) == 0;
}

int extractOleStream(const char *documentPath, const char *streamName, const char *outputPath)
{
    POLE::Storage storage(documentPath);
    if (!storage.open())
        return 1;
    POLE::Stream stream(&storage, streamName);
    if (!stream.exists() || stream.fail())
        return 2;
    std::FILE *out = std::fopen(outputPath, "wb");
    if (!out)
        return 3;
    unsigned char chunk[512];
    std::uint64_t copied = 0;
    bool written = true;
    while (copied < stream.size()) {
        const std::size_t got = stream.read(chunk, sizeof chunk);
        if (got > 0 && std::fwrite(chunk, 1, got, out) != got)
            written = false;
        copied += got;
        if (got < sizeof chunk || !written)
            break;
    }
    if (std::fclose(out) != 0 || !written)
        return 3;
    return 0;
}

namespace {

/// Walks an OLE Object field's header and record into `out`; false when it does not decode.
bool decodeField(const unsigned char *field, std::size_t length, Decoded &out)
{

    if (length < 4)
        return false;
    const int signature = int16At(field, 0);
    const int headerLength = int16At(field, 2);
    if (headerLength > 0 && static_cast<std::size_t>(headerLength) > length)
        return false;

    std::size_t record = 0;
    if (signature == kOleSignature || headerLength != 0) {
        if (length < 20)
            return false;
        const int nameLength = int16At(field, 8);
        const int classLength = int16At(field, 10);
        const int nameOffset = int16At(field, 12);
        const int classOffset = int16At(field, 14);
        if (headerLength < 0 || nameLength < 0 || classLength < 0 || nameOffset < 0 || classOffset < 0)
            return false;
        if (nameLength > 255 || classLength > 255)
            return false;
        if (static_cast<std::size_t>(nameOffset + nameLength) > length ||
            static_cast<std::size_t>(classOffset + classLength) > length)
            return false;
        // Object and class names must be zero-terminated strings.
        if (nameLength == 0 || classLength == 0 || field[nameOffset + nameLength - 1] != 0 ||
            field[classOffset + classLength - 1] != 0)
            return false;
        record = static_cast<std::size_t>(headerLength);
    }

    if (out.labelOnly && signature != kOleSignature)
        return false;
    return signature == kOleSignature ? decodeOle1(field, length, record, out)
                                      : decodeAttachment(field, length, record, out);
}

} // namespace

std::string oleFieldLinkPath(const void *field, std::size_t length)
{
    Decoded decoded;
    if (!field || decodeField(static_cast<const unsigned char *>(field), length, decoded))
        return {};
    return decoded.linkPath;
}

std::string oleFieldPackageLabel(const void *field, std::size_t length)
{
    Decoded decoded;
    decoded.labelOnly = true;
    if (!field || !decodeField(static_cast<const unsigned char *>(field), length, decoded))
        return {};
    return decoded.label;
}

int mdb_read_ole_field(const void *fieldBytes, void **payload, std::size_t *size, char **extension)
{
    if (!fieldBytes || !payload || !size)
        return 1;
    Decoded decoded;
    if (!decodeField(static_cast<const unsigned char *>(fieldBytes), *size, decoded))
        return 1;

    void *copy = std::malloc(decoded.size ? decoded.size : 1);
    if (!copy)
        return 1;
    if (decoded.size)
        std::memcpy(copy, decoded.data, decoded.size);
    if (extension && isUsableFileExtension(decoded.extension)) {
        *extension = static_cast<char *>(std::malloc(decoded.extension.size() + 1));
        if (!*extension) {
            std::free(copy);
            return 1;
        }
        std::memcpy(*extension, decoded.extension.c_str(), decoded.extension.size() + 1);
    }
    *payload = copy;
    *size = decoded.size;
    return 0;
}

} // namespace vellum

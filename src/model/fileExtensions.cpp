#include "model/fileExtensions.h"

#include <algorithm>
#include <array>
#include <string>

namespace vellum {

bool isSafeFileExtension(std::string_view extension)
{
    static constexpr std::array<std::string_view, 43> kSafe = {
        "txt", "pdf", "ps",  "rtf", "doc",  "docx", "xls",  "xlsx", "ppt", "pptx", "mdb", "accdb", "odt", "ods", "odp",
        "odg", "wav", "mp3", "mpg", "mpeg", "mov",  "mid",  "midi", "mp4", "wma",  "wmv", "ogg",   "ogv", "snd", "avi",
        "m4a", "m4v", "264", "mkv", "bmp",  "tif",  "tiff", "jpg",  "png", "gif",  "ico", "pcx",   "raw"};
    if (extension.empty() || extension.size() > 5)
        return false;
    std::string lower(extension);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); });
    return std::find(kSafe.begin(), kSafe.end(), lower) != kSafe.end();
}

bool isUsableFileExtension(std::string_view extension)
{
    return !extension.empty() && extension.size() <= kMaxFileExtensionLength &&
           extension.find('/') == std::string_view::npos && extension.find('\0') == std::string_view::npos;
}

std::string_view extensionFromSignature(const unsigned char *bytes, std::size_t length)
{
    struct Signature {
        std::string_view magic;
        std::string_view extension;
    };
    static constexpr Signature kSignatures[] = {
        {std::string_view("\x89PNG\r\n\x1a\n", 8), "png"},
        {std::string_view("\xff\xd8\xff", 3), "jpg"},
        {"GIF87a", "gif"},
        {"GIF89a", "gif"},
        {"BM", "bmp"},
        {std::string_view("II*\0", 4), "tif"},
        {std::string_view("MM\0*", 4), "tif"},
        {"%PDF-", "pdf"},
        {std::string_view("PK\x03\x04", 4), "zip"},
        {"{\\rtf", "rtf"},
        {std::string_view("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8), "doc"},
    };
    const std::string_view start(reinterpret_cast<const char *>(bytes), bytes ? length : 0);
    for (const Signature &signature : kSignatures)
        if (start.starts_with(signature.magic))
            return signature.extension;
    return {};
}

} // namespace vellum

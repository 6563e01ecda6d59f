#include "model/fileExtensions.h"

#include <algorithm>
#include <array>
#include <string>

namespace vellum {

bool isSafeFileExtension(std::string_view extension)
{
    static constexpr std::array<std::string_view, 43> kSafe = {
        "txt", "pdf", "ps",  "rtf",  "doc", "docx", "xls",  "xlsx", "ppt", "pptx", "mdb",
        "accdb", "odt", "ods", "odp", "odg", "wav", "mp3", "mpg", "mpeg", "mov", "mid",
        "midi", "mp4", "wma", "wmv", "ogg", "ogv", "snd", "avi", "m4a", "m4v", "264",
        "mkv", "bmp", "tif", "tiff", "jpg", "png", "gif", "ico", "pcx", "raw"};
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

} // namespace vellum

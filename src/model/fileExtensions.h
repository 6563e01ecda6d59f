#pragma once

#include <cstddef>
#include <string_view>

namespace vellum {

/// The longest extension that still fits a file name: "Vellum-XXXXXXXXX." plus the extension
/// must stay within NAME_MAX (255 bytes).
inline constexpr std::size_t kMaxFileExtensionLength = 255 - 17;

/// True when the extension, lower-cased, is one of the document, picture and media types that
/// may be opened with the default application without asking; false for "" and all others.
bool isSafeFileExtension(std::string_view extension);

/// True when an extension read out of a file can be put into a file name: not empty, no "/",
/// no NUL, and not longer than kMaxFileExtensionLength. Anything else counts as no extension.
bool isUsableFileExtension(std::string_view extension);

/// The usual extension of a file that starts with a well-known signature: "png", "jpg", "gif",
/// "bmp", "tif", "pdf", "zip" (Office documents included), "rtf", "doc" (a compound document);
/// "" when the bytes start with none of them.
std::string_view extensionFromSignature(const unsigned char *bytes, std::size_t length);

} // namespace vellum

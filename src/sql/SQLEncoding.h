#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

class SQLContext;

/// MySQL's character-set name for a string-encoding code: 1 and 7 "ascii", 3 "ujis", 4 "utf8",
/// 5 "latin1", 8 "sjis", 9 "latin2", 10 "ucs2", 11 "cp1251", 15 "cp1250", 30 "macroman"; other
/// codes by their core encoding number ("euckr", "gb2312", "big5", "greek", "latin5" …);
/// "latin1" for anything else.
std::string MySQLCharsetFromStringEncoding(std::uint64_t encoding);

/// Conversion between UTF-8 text and the bytes of a string encoding.
namespace SQLEncoding {

/// The server's character-set name for an encoding: MySQL's name when the context's server type
/// is MySQL, nullopt for every other server type.
std::optional<std::string> charsetForStringEncoding(std::uint64_t encoding, const SQLContext &context);

/// UTF-8 text → bytes in the encoding (a code of the encoding table). Characters the encoding
/// lacks become "?"; an unknown encoding code leaves the text as it is.
std::string bytesFromText(std::string_view utf8, std::uint64_t encoding);

/// Bytes in the encoding → UTF-8 text; undecodable bytes are dropped.
std::string textFromBytes(std::string_view bytes, std::uint64_t encoding);

} // namespace SQLEncoding

} // namespace vellum

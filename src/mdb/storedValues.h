#pragma once

// Text forms of the values an Access file stores, decoded from the stored bytes themselves.
// Every function is pure: it reads the bytes of one field (as located in a data page) and
// answers the text every view and writer of Vellum uses. Multi-byte numbers are little-endian,
// as Access stores them.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vellum {

using StoredBytes = std::span<const unsigned char>;

/// A Date/Time value, days since 1899-12-30 (the sign applies to the day part only, the time of
/// day is the fraction's absolute value), as "MM/DD/YYYY HH:MM:SS" rounded half-up to the second
/// with a carry into the next day. nullopt when the value is not finite or its year falls
/// outside 100 to 9999, the dates Access can store.
std::optional<std::string> formatStoredDateTime(double serial);

/// The 8 stored bytes of a Date/Time field; nullopt when there are not 8 bytes or the value is
/// not a date (see `formatStoredDateTime`).
std::optional<std::string> decodeDateTime(StoredBytes bytes);

/// A Replication ID as "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}": upper-case hex, the first three
/// groups read little-endian as Access shows them. nullopt unless there are 16 bytes.
std::optional<std::string> decodeReplicationId(StoredBytes bytes);

/// The shortest decimal text that reads back as the same double: plain digits for magnitudes
/// from 1e-7 up to 1e21 ("0.1", "100", "0.0000015"), else "d.ddde+N" / "d.ddde-N"; "-0",
/// "NaN", "Infinity" and "-Infinity" for the special values.
std::string formatShortestDouble(double value);
/// The same for a single-precision value: the shortest text that reads back as the same float.
std::string formatShortestFloat(float value);

/// Double (8 bytes) and Single (4 bytes) fields in the shortest form; nullopt on a wrong size.
std::optional<std::string> decodeDouble(StoredBytes bytes);
std::optional<std::string> decodeSingle(StoredBytes bytes);

/// A Currency field (a 64-bit count of ten-thousandths) with its four decimals: "-0.0100".
std::optional<std::string> decodeCurrency(StoredBytes bytes);

/// A Numeric (Decimal) field: a sign byte (non-zero is negative) and a 128-bit magnitude stored
/// as four little-endian 32-bit words, most significant word first; written with `scale`
/// decimals ("-12345678901234.5678" at scale 4). nullopt unless there are 17 bytes and the scale
/// is at most 38.
std::optional<std::string> decodeNumeric(StoredBytes bytes, unsigned scale);

/// Integer fields: Byte (1 byte, unsigned), Integer (2), Long Integer (4) and Large Number (8),
/// all signed but Byte, as decimal text; nullopt when the size does not match `width`.
std::optional<std::string> decodeInteger(StoredBytes bytes, std::size_t width);

/// A Date/Time Extended field: 42 ASCII bytes "DDDDDDDDDDDDDDDDDDD:TTTTTTTTTTTTTTTTTTT:7…" (days
/// since 0001-01-01, then the time of day in units of 100 ns), as "MM/DD/YYYY HH:MM:SS" followed
/// by ".fffffff" when the seven fractional digits are not all zero. nullopt when the text is not
/// in that form or names no valid date and time.
std::optional<std::string> decodeExtendedDateTime(StoredBytes bytes);

/// The stored value inside a calculated column's wrapper (16 bytes, a 32-bit length, then the
/// value); nullopt when the field is too short for its own length.
std::optional<StoredBytes> unwrapCalculatedValue(StoredBytes bytes);

/// The Numeric value of a calculated column (inside its wrapper): a 16-bit length, the scale,
/// a sign byte, then up to 16 bytes of magnitude (a leading 4-byte group when the count is not a
/// multiple of 8, then 8-byte groups, each little-endian, most significant group first); written
/// with its own scale. nullopt when the bytes are too few for what they announce.
std::optional<std::string> decodeCalculatedNumeric(StoredBytes bytes);

/// Text of Jet 4 and later files as UTF-8: UTF-16LE, or Access's compressed form (FF FE, then
/// runs of one-byte characters and of UTF-16LE units, each 00 byte switching between them).
/// Surrogate pairs become one character, an unpaired surrogate U+FFFD; an odd last byte is
/// dropped.
std::string decodeUnicodeText(StoredBytes bytes);
/// The same, appended to `out` (a buffer reused from cell to cell while a table loads).
void appendUnicodeText(std::string &out, StoredBytes bytes);

} // namespace vellum

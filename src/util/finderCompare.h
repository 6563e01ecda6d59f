#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vellum {

/// Compares two UTF-8 names the way every sorted list of the program does: Unicode collation
/// (root locale, tertiary strength) with runs of digits compared as numbers, so that
/// "table1" < "Table2" < "table10". Case decides only between otherwise equal names. Width does
/// not count: full-width and half-width forms equal their usual forms ("ＡＢＣ" equals "ABC").
/// Returns -1, 0 or 1. Thread-safe.
int finderCompare(std::string_view a, std::string_view b);

/// Writes the first `capacity` bytes of the collation key of a UTF-8 text under the same
/// collation (and width folding) as finderCompare and returns how many were written. Keys made by this function
/// compare with memcmp in finderCompare's order; a key that fills the whole capacity may be cut
/// (two such keys that are equal decide nothing: compare the texts then). Thread-safe.
std::size_t finderSortKeyPart(std::string_view text, unsigned char *dest, std::size_t capacity);

/// A sort key for pure ASCII text, made without the collator and much faster: keys of two ASCII
/// texts compare with memcmp exactly as the texts compare with finderCompare (equal keys for
/// equivalent texts). Such keys are not comparable with the collator's keys. False (and `out`
/// untouched) when the text has a byte outside ASCII. Thread-safe.
bool finderAsciiSortKey(std::string_view text, std::string &out);

/// Continues a key: writes its next `capacity` bytes after those already made for the same text
/// with the same `state` (two zeros before the first call; updated here). Fewer bytes than
/// asked mean the key is complete. Joined, the parts are the key finderSortKeyPart starts.
std::size_t finderSortKeyNext(std::string_view text, std::uint32_t state[2], unsigned char *dest, std::size_t capacity);

} // namespace vellum

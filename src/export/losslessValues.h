#pragma once

// Exact, standard forms of cell values for the lossless outputs. A cell holds the reader's text
// for its field ("MM/DD/YYYY HH:MM:SS" dates, decimal numbers, "{…}" GUIDs, the bytes of a
// Binary field); these functions turn that text into the forms other programs read back
// without loss: ISO 8601 dates, base64 or hexadecimal bytes, lower-case GUIDs.

#include "model/TOrbComplexValue.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

/// The parts of a date text "MM/DD/YYYY HH:MM:SS[.fffffff]".
struct CellDateTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    /// The fraction's digits as written (up to seven; "" for whole seconds).
    std::string fraction;
};

/// Reads a cell's date text; nullopt for any other text.
std::optional<CellDateTime> parseCellDateTime(std::string_view text);

/// "YYYY-MM-DD<separator>HH:MM:SS[.fffffff]" of a cell's date text ('T' for ISO 8601 proper,
/// ' ' for SQL literals); nullopt when the text is not a date.
std::optional<std::string> isoDateTime(std::string_view text, char separator = 'T');

/// Base64 (RFC 4648, with padding, no line breaks) of bytes.
std::string base64Encode(const void *data, std::size_t length);
/// Appends the base64 of bytes to `out`.
void appendBase64(std::string &out, const void *data, std::size_t length);

/// Lower-case hexadecimal of bytes, two digits per byte.
std::string lowerHexText(const void *data, std::size_t length);

/// True when a decimal text (optional sign, digits, optional fraction, optional exponent) is
/// held exactly by a double: it has at most 15 significant digits, or it reads back to the
/// same shortest text. Used to decide between a JSON/workbook number and a text.
bool decimalFitsDouble(std::string_view text);

/// Appends an attachment as the JSON object {"name", "type", "base64"} of the lossless outputs.
void appendJsonAttachment(std::string &out, const TOrbComplexValue::Attachment &attachment);
/// Appends a version of a memo's history as the JSON object {"value", "date"}, the date ISO.
void appendJsonVersion(std::string &out, const TOrbComplexValue::Version &version);
/// Appends a complex value as a JSON array: multi-value items through `appendItem` (JSON strings
/// when it is empty), attachments and versions in the forms above.
void appendJsonComplexArray(std::string &out, const TOrbComplexValue &value,
                            const std::function<void(std::string &, const std::string &)> &appendItem = {});

} // namespace vellum

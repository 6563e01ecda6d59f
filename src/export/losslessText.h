#pragma once

// Value forms and escaping of the lossless delimited text and XML outputs: what a cell becomes
// (ISO dates, "true"/"false", base64 bytes, complex values as JSON), when a delimited field
// needs quotes, and how XML names and text are made well-formed.

#include <string>
#include <string_view>

namespace vellum {

struct CellValue;
class TOrbComplexValue;

/// How a column's values are written in lossless text output.
enum class LosslessTextForm {
    Text,     ///< Text, Memo/Hyperlink: the text
    Boolean,  ///< "true" / "false"
    Integer,  ///< Byte, Integer, Long Integer, Large Number: the decimal text
    Decimal,  ///< Currency, Single, Double, Numeric: the exact text with the decimal symbol
    DateTime, ///< Date/Time, Date/Time Extended: ISO 8601 with 'T'
    Guid,     ///< Replication ID: "{…}"
    Bytes,    ///< Binary and unknown types: the stored bytes, base64 or hexadecimal
    Ole,      ///< OLE: the decoded payload (or the stored bytes), base64 or hexadecimal
    Complex,  ///< attachments, multi-values, version history: JSON (delimited text) or elements (XML)
};

/// The form of a column type name (a column's `dataType`).
LosslessTextForm losslessTextFormForDataType(std::string_view dataType);

/// True for the forms a delimited file always puts between quotes (strings); numbers and
/// booleans are quoted only when they need it.
bool isQuotedLosslessForm(LosslessTextForm form);

/// How bytes are written.
enum class LosslessBytes { Base64, Hex };

/// What a value's text depends on besides the cell.
struct LosslessValueStyle {
    std::string decimalSymbol = ".";
    LosslessBytes bytes = LosslessBytes::Base64;
};

/// True when a non-null cell of that form is written as bytes (base64 or hex): Binary, unknown
/// types and OLE.
bool isBytesValue(const CellValue &cell, LosslessTextForm form);

/// The bytes a bytes value holds: an OLE blob's payload or the cell's text bytes.
std::string_view cellBytes(const CellValue &cell);

/// Appends the lossless text of a non-null cell: the exact text of numbers ("." replaced by
/// the decimal symbol), ISO dates, "true"/"false", encoded bytes, complex values as a JSON
/// array (see `appendComplexJson`). A date text that cannot be read is written as it stands.
void appendLosslessValue(std::string &out, const CellValue &cell, LosslessTextForm form,
                         const LosslessValueStyle &style);

/// Appends a complex value as JSON: multi-values as an array of strings (each value's text
/// form); attachments as [{"name", "type", "base64"}]; version history as
/// [{"value", "date"}], newest first, dates in ISO 8601.
void appendComplexJson(std::string &out, const TOrbComplexValue &value);

/// True when a delimited field holding `value` must be quoted to read back as itself: it holds
/// the delimiter, the quote, a line break, or equals the NULL marker (when one is set).
bool delimitedFieldNeedsQuotes(std::string_view value, std::string_view fieldDelimiter, std::string_view quote,
                               std::string_view nullMarker);

/// An XML element name for a column name (XML 1.0 Name rules): characters a name cannot hold
/// become "_", a name that does not start with a letter or "_", or that starts with "xml" in
/// any case, gets a "_" in front. With `asciiOnly` every non-ASCII character also becomes "_"
/// (for encodings that cannot hold every character, since a name has no character references).
std::string xmlElementName(std::string_view columnName, bool asciiOnly);

/// True when `text` is valid UTF-8 made only of characters XML 1.0 allows (tab, line feed,
/// carriage return and no other control character, no U+FFFE/U+FFFF).
bool isXmlText(std::string_view text);

/// Appends text as XML character data: & < > " escaped, a carriage return as "&#13;" (which
/// a parser would otherwise turn into a line feed).
void appendXmlText(std::string &out, std::string_view text);

/// Appends text for a double-quoted XML attribute: as `appendXmlText`, with tab and line feed
/// as character references too (a parser turns them into spaces otherwise), and characters XML
/// cannot hold as U+FFFD.
void appendXmlAttribute(std::string &out, std::string_view text);

/// Reads the UTF-8 character at `at` and moves `at` past it; answers its code point, or -1
/// (moving one byte) for a byte that does not begin a valid, shortest sequence.
long nextUtf8CodePoint(std::string_view text, std::size_t &at);

/// The name an XML declaration gives an encoding (its IANA name), from the converter name.
std::string xmlEncodingName(std::string_view iconvName);

} // namespace vellum

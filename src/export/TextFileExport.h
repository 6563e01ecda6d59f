#pragma once

#include "export/ExportFileType.h"
#include "export/ExportOptions.h"
#include "export/ExportSink.h"
#include "export/losslessText.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vellum {

class TOrbMDBTable;

/// How a value of a column type is written: quoted (Text, Memo/Hyperlink, DateTime, Binary),
/// with the decimal symbol (Currency, Single, Double), or as it stands (every other type).
enum class TextValueClass { Quoted, Decimal, Plain };

/// The value class of a column type name.
TextValueClass textValueClassForDataType(std::string_view dataType);

/// What the delimited text and XML writer reads from the options, once per export.
struct TextExportSettings {
    bool xml = false;
    std::string quote = "\"";         ///< empty for XML
    std::string fieldDelimiter = ","; ///< not written for XML
    std::string recordDelimiter = "\n";
    std::string decimalSymbol = ".";
    bool includeHeader = true; ///< delimited text only
    std::uint64_t encoding = 4;
    /// Lossless output: ISO dates, "true"/"false", bytes as base64 or hex, complex values in
    /// full, and for XML a declared encoding, valid element names and escaped values.
    bool lossless = false;
    /// Delimited text: written (unquoted) for a NULL field; empty = an empty field.
    std::string nullMarker;
    /// Lossless delimited text: how bytes are written.
    LosslessBytes bytes = LosslessBytes::Base64;
    /// Delimited text in UTF-8: the file begins with a byte-order mark.
    bool byteOrderMark = false;
    /// Delimited text: every non-NULL field in quotes.
    bool quoteAllFields = false;

    /// The settings of a kind (CSV, TXT or XML) from the wizard's option values.
    static TextExportSettings fromOptions(ExportFileType kind, const ExportOptions &options);
};

/// Appends `text` with every `quote` doubled, wrapped in `quote` (nothing when it is empty).
void appendQuotedText(std::string &out, std::string_view text, std::string_view quote);
/// Appends `text` with every "." replaced by `decimalSymbol`.
void appendWithDecimalSymbol(std::string &out, std::string_view text, std::string_view decimalSymbol);
/// Appends one value transformed by its class: quoted (delimited text only), decimal, plain.
void appendTextValue(std::string &out, std::string_view value, TextValueClass valueClass,
                     const TextExportSettings &settings);

/// How writing one table ended.
enum class TextTableResult { Completed, Terminated, WriteFailed, EncodingUnavailable };

struct TextTableOutcome {
    TextTableResult result = TextTableResult::Completed;
    /// Characters written as "?" because the encoding cannot represent them.
    std::size_t substitutedCharacters = 0;
    /// Fields (names and values) that hold at least one of those characters.
    std::size_t substitutedFields = 0;
    /// Lossless: complex cells whose values could not be read, written as the id they store.
    std::size_t complexIdsOnly = 0;
};

/// Writes one table as delimited text or XML to a sink, converting every piece to the target
/// encoding (lossless XML writes a character the encoding cannot hold as a character
/// reference). Polls `stop` between rows and between fields; on stop it still closes the open
/// record and, for XML, the document. `rowProgress` (may be empty) gets (rows done, row count).
TextTableOutcome writeTextTable(const TOrbMDBTable &table, const TextExportSettings &settings, ExportSink &sink,
                                const std::atomic<bool> &stop,
                                const std::function<void(std::size_t, std::size_t)> &rowProgress = {});

} // namespace vellum

#pragma once

#include <string_view>

namespace vellum {

class TOrbBlobData;
class TOrbComplexValue;

/// A loaded field value as every consumer sees it: the null marker (null or empty text, or an
/// OLE field with nothing decodable), libmdb's text for the field, or a decoded blob.
/// A cell of a complex column is Text (the id it stores, which every writer writes as before)
/// and also points at the values stored for that id.
/// A view: the text, the blob and the complex values belong to the table that answered it.
struct CellValue {
    enum class Kind : unsigned char { Null, Text, Blob };

    Kind kind = Kind::Null;
    std::string_view text;                     ///< UTF-8, for Kind::Text only
    const TOrbBlobData *blob = nullptr;        ///< for Kind::Blob; for Kind::Null, an optional note
    const TOrbComplexValue *complex = nullptr; ///< for a complex column's Text cell: its values

    static CellValue null() { return {}; }
    static CellValue ofText(std::string_view t) { return t.empty() ? CellValue{} : CellValue{Kind::Text, t, nullptr}; }
    static CellValue ofBlob(const TOrbBlobData *b) { return {Kind::Blob, {}, b}; }
    /// The null marker with a note: a link-only Package, whose blob says what it links to.
    static CellValue nullWithNote(const TOrbBlobData *note) { return {Kind::Null, {}, note}; }

    bool isNull() const { return kind == Kind::Null; }
    bool isText() const { return kind == Kind::Text; }
    bool isBlob() const { return kind == Kind::Blob; }
    bool isComplex() const { return complex != nullptr; }
};

} // namespace vellum

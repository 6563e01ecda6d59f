#pragma once

#include "model/TOrbBlobData.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vellum {

/// What the values of a complex column (Access 2007 and later) are.
enum class ComplexKind : unsigned char {
    Attachment,     ///< files: name, type and data
    MultiValue,     ///< several values of one simple type
    VersionHistory, ///< the earlier texts of an append-only memo, with the time of each change
};

/// The values one cell of a complex column holds. The cell itself stores an id (a Long
/// Integer); the values live in a hidden table whose rows refer to that id. Items keep the
/// order Access reads them in; a version history is newest first.
class TOrbComplexValue {
public:
    struct Attachment {
        std::string fileName;               ///< as stored, e.g. "report.pdf"
        std::string fileType;               ///< the stored type, usually the extension without a dot
        std::unique_ptr<TOrbBlobData> data; ///< the decoded file content (never null)
    };
    struct Version {
        std::string value; ///< the memo text
        std::string date;  ///< when it was set, in the Date/Time text form ("MM/DD/YYYY HH:MM:SS")
    };

    explicit TOrbComplexValue(ComplexKind kind) : m_kind(kind) {}
    TOrbComplexValue(TOrbComplexValue &&) = default;
    TOrbComplexValue &operator=(TOrbComplexValue &&) = default;

    ComplexKind kind() const { return m_kind; }
    /// Multi-value items in their text form (the one a cell of their type shows).
    const std::vector<std::string> &values() const { return m_values; }
    const std::vector<Attachment> &attachments() const { return m_attachments; }
    /// Newest first.
    const std::vector<Version> &versions() const { return m_versions; }
    /// The items of the value's own kind.
    std::size_t itemCount() const;

    // Filling; each adds to the list of its kind only (the others stay unused).
    void addValue(std::string text);
    /// Takes the decoded content; a type becomes the blob's extension.
    void addAttachment(std::string fileName, std::string fileType, std::vector<std::uint8_t> data);
    /// Versions are kept in the order added: add them newest first.
    void addVersion(std::string value, std::string date);

    /// The grid's text: multi-values and attachment file names joined by "; ", the latest text
    /// of a version history; "" without items. Kept up to date as items are added, so that the
    /// grid and its sort read it without building it.
    const std::string &displayText() const { return m_displayText; }
    /// The text pane's text: for a version history every version, newest first, as
    /// "[DATE] TEXT" paragraphs separated by a blank line; for the other kinds one item a line.
    std::string detailText() const;

private:
    ComplexKind m_kind;
    std::vector<std::string> m_values;
    std::vector<Attachment> m_attachments;
    std::vector<Version> m_versions;
    std::string m_displayText;
};

/// The values of one complex column of a table, by the id its cells store. A cell whose id has
/// no entry holds no values (`none`).
class ComplexColumnValues {
public:
    explicit ComplexColumnValues(ComplexKind kind) : m_kind(kind), m_none(kind) {}

    ComplexKind kind() const { return m_kind; }
    /// The column type name of a multi-value column's items ("Long Integer", "Text", …, as
    /// mdb_get_colbacktype_string_fromMdbType names them), which says how the item texts are
    /// written; "" when unknown and for the other kinds.
    const std::string &valueType() const { return m_valueType; }
    void setValueType(std::string type) { m_valueType = std::move(type); }
    /// The values stored for an id, created empty on first use.
    TOrbComplexValue &valuesFor(std::int64_t id);
    /// The values of an id; the empty value of the column's kind when it has none.
    const TOrbComplexValue &find(std::int64_t id) const;
    const std::unordered_map<std::int64_t, TOrbComplexValue> &entries() const { return m_entries; }

private:
    ComplexKind m_kind;
    std::string m_valueType;
    TOrbComplexValue m_none;
    std::unordered_map<std::int64_t, TOrbComplexValue> m_entries;
};

} // namespace vellum

#pragma once

#include <cstddef>
#include <string>

namespace vellum {

/// Peels an OLE Object field (as mdb_ole_read_full returns it) down to the file the user once
/// inserted: OLE object header, OLE 1 object record, "Package" records, compound documents of
/// the newer Office classes and attachment-style data (stored or deflated).
/// `size` gives the field's length and receives the payload's. Answers 0 on success, with
/// `*payload` a new std::malloc buffer and, when an extension was found, `*extension` a new
/// std::malloc'd zero-terminated string (left untouched otherwise; the caller sets it to null);
/// both belong to the caller, to be released with std::free. Answers 1 when the field does not
/// decode, with nothing allocated. An extension holding "/" or too long for a file name counts
/// as none. Compound documents go through unique temporary files that are always removed.
int mdb_read_ole_field(const void *field, void **payload, std::size_t *size, char **extension);

/// The path a Package object that holds only a link to a file names; "" for any other field.
std::string oleFieldLinkPath(const void *field, std::size_t length);

/// The label of a Package object that holds a file (its file name, as the user inserted it);
/// "" for any other field. Other kinds of objects are not decoded to answer.
std::string oleFieldPackageLabel(const void *field, std::size_t length);

/// True when the bytes begin with the compound document signature D0 CF 11 E0 A1 B1 1A E1.
bool isOleStream(const void *bytes, std::size_t length);

/// Copies one stream of a compound document file into a new (truncated) file. Answers 0 on
/// success, 1 when the document cannot be opened, 2 when the stream does not exist or is
/// damaged, 3 when the output cannot be written.
int extractOleStream(const char *documentPath, const char *streamName, const char *outputPath);

} // namespace vellum

#pragma once

#include "mdb/mdbtoolsInclude.h"

#include <cstdint>
#include <vector>

namespace vellum {

/// What libmdb does not keep of a column descriptor: its flag bytes, and a complex column's id.
struct ColumnDescriptorFlags {
    unsigned char flags = 0;    ///< 0x01 fixed, 0x04 long auto, 0x40 GUID auto, 0x80 hyperlink
    unsigned char extFlags = 0; ///< Jet 4 and later; 0xC0 marks a calculated column
    std::int32_t complexId = 0; ///< a complex column's id in MSysComplexColumns (Access 2007 and later), else 0
};

/// The columns of a table definition in the order the descriptors are stored on the page,
/// which libmdb's sorted array loses. Call after `mdb_read_columns`; it needs no other read
/// of libmdb's, as it re-reads the descriptors from the definition's pages itself. It answers a new array (free it with
/// g_ptr_array_free(a, TRUE): it owns none of its columns) holding the same MdbColumn pointers as `table->columns`,
/// plus each one's flag bytes. NULL when the descriptors cannot be read.
GPtrArray *mdb_read_columns_without_sorting(MdbTableDef *table, std::vector<ColumnDescriptorFlags> *flags);

} // namespace vellum

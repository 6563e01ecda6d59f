#pragma once

#include "mdb/mdbtoolsInclude.h"

#include <algorithm>
#include <cstdint>

namespace vellum {

/// Reads the catalog (MSysObjects) into `mdb->catalog` the way libmdb's mdb_read_catalog does,
/// but reads each entry's properties (its LvProp long value) with the bounded long-value reader:
/// libmdb follows that chain without bound, so a chain that points back at itself would grow
/// its buffer until memory runs out.
class CatalogReader {
public:
    explicit CatalogReader(MdbHandle *mdb) : m_mdb(mdb) {}

    /// Reads every entry; false (with no catalog) when MSysObjects or its columns cannot be read.
    [[nodiscard]] bool read();
    /// The entries read intact: neither of a type Access does not write nor a table marked as
    /// a system table without a system table's name (damage that would hide a table silently).
    std::uint64_t entriesRead() const { return m_entriesRead - m_entriesDamaged; }
    /// The entries there should be: the row count MSysObjects' definition states (more than
    /// were read when the catalog stops early, a page of it cannot be read), or those read.
    std::uint64_t entriesStated() const { return std::max(m_entriesStated, m_entriesRead); }

private:
    MdbHandle *m_mdb;
    std::uint64_t m_entriesRead = 0;
    std::uint64_t m_entriesStated = 0;
    std::uint64_t m_entriesDamaged = 0;
};

} // namespace vellum

#pragma once

#include "model/OpenFailure.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vellum {

/// One part of a file that a load could not read. The file opened, but without this part.
struct LossReport {
    enum class Kind : unsigned char {
        Catalog,         ///< the catalog could not be read at all: no table is known
        CatalogPart,     ///< the catalog stops early: `count` of `expected` entries were read
        TableDefinition, ///< the table's definition (columns) could not be read: the table is missing
        Rows,            ///< the table's rows stop early: `count` of `expected` rows were read
        LongValues,      ///< `count` memo or OLE values of the table could not be read
    };
    Kind kind = Kind::Catalog;
    std::string table;       ///< the table's name, empty for the catalog
    std::uint64_t count = 0; ///< see the kind
    std::uint64_t expected = 0;

    bool operator==(const LossReport &) const = default;
};

/// The one line that says what a loss is, e.g. `table "Orders" could not be read: only 120 of
/// 500 rows could be read`.
std::string lossText(const LossReport &loss);

/// The status-area notice of a file with losses, e.g. "This file could not be read completely:
/// 3 tables are missing"; empty when there is none.
std::string lossNotice(const std::vector<LossReport> &losses);

/// The line that says why a file could not be opened, shown under "File (NAME) cannot be
/// opened"; empty for `None`.
std::string openFailureText(OpenFailure failure);

/// True when a load with these losses read nothing usable: its catalog could not be read.
bool catalogLost(const std::vector<LossReport> &losses);

} // namespace vellum

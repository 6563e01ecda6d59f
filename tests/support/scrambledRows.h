#pragma once

// The rows of a large synthetic table for the grid's sort tests and benchmark: distinct numbers
// in a scrambled order, a name with many repeats, a code.

#include "model/TableStore.h"

#include <cstdio>

namespace vellum::test {

/// Appends `rows` rows of three text columns (id, name, code) to `store`.
inline void fillScrambledRows(TableStore &store, std::size_t rows)
{
    char text[64];
    for (std::size_t i = 0; i < rows; ++i) {
        store.beginRow();
        int length = std::snprintf(text, sizeof text, "%zu", (i * 7919 + 13) % rows);
        store.appendText(text, static_cast<std::size_t>(length));
        length = std::snprintf(text, sizeof text, "Customer %zu of region %zu", (i * 31) % 5003, i % 17);
        store.appendText(text, static_cast<std::size_t>(length));
        length = std::snprintf(text, sizeof text, "C%05zu", (i * 104729) % 99991);
        store.appendText(text, static_cast<std::size_t>(length));
        store.endRow();
    }
    store.shrink();
}

} // namespace vellum::test

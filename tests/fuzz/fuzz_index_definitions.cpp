// libFuzzer target: the index reader over a table definition's bytes. The first byte picks the
// layout (its low bit: 0 Jet 3, 1 Jet 4), the rest is the joined definition. The reader must
// answer indexes or nothing, never read outside the bytes it is given; every key it answers
// must name a column of the definition.

#include "mdb/indexDefinitions.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto layout = (data[0] & 1) ? vellum::DefinitionLayout::Jet4 : vellum::DefinitionLayout::Jet3;
    const auto parsed = vellum::parseIndexDefinitions(std::span<const unsigned char>(data + 1, size - 1), layout);
    if (!parsed)
        return 0;
    std::set<unsigned> numbers;
    for (const auto &column : parsed->columns)
        numbers.insert(column.number);
    for (const auto &index : parsed->indexes)
        for (const auto &key : index.keys)
            if (!numbers.count(key.columnNumber))
                std::abort();
    return 0;
}

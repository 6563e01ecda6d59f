// libFuzzer target: every decoder of stored field bytes on arbitrary input. The first byte picks
// the decoder (and a scale), the rest is the field. Each decoder must answer a value or nothing,
// never read outside the bytes it is given.

#include "mdb/storedValues.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::uint8_t selector = data[0];
    const vellum::StoredBytes bytes(data + 1, size - 1);
    switch (selector % 12) {
    case 0:
        (void)vellum::decodeDateTime(bytes);
        break;
    case 1:
        (void)vellum::decodeReplicationId(bytes);
        break;
    case 2:
        (void)vellum::decodeDouble(bytes);
        break;
    case 3:
        (void)vellum::decodeSingle(bytes);
        break;
    case 4:
        (void)vellum::decodeCurrency(bytes);
        break;
    case 5:
        (void)vellum::decodeNumeric(bytes, selector / 12);
        break;
    case 6:
        (void)vellum::decodeInteger(bytes, selector / 12 % 9);
        break;
    case 7:
        (void)vellum::decodeExtendedDateTime(bytes);
        break;
    case 8:
        (void)vellum::decodeCalculatedNumeric(bytes);
        break;
    case 9:
        (void)vellum::decodeUnicodeText(bytes);
        break;
    case 10: {
        if (const auto inner = vellum::unwrapCalculatedValue(bytes))
            (void)vellum::decodeCalculatedNumeric(*inner);
        break;
    }
    default: {
        // Any double as a date: the rounding and calendar arithmetic over the whole range.
        if (bytes.size() >= 8)
            (void)vellum::decodeDateTime(bytes.first(8));
        break;
    }
    }
    return 0;
}

// Feeds arbitrary bytes to the OLE field decoder as one field.
#include "model/ole/oleField.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // An exact-size copy, so that a read past the field's end is caught.
    std::unique_ptr<std::uint8_t[]> field(new std::uint8_t[size ? size : 1]);
    if (size)
        std::memcpy(field.get(), data, size);
    void *payload = nullptr;
    char *extension = nullptr;
    std::size_t length = size;
    const int result = vellum::mdb_read_ole_field(field.get(), &payload, &length, &extension);
    if (result == 0) {
        if (length > size * 1032 + 1024)
            std::abort(); // more than any wrapping can hold
        volatile std::uint8_t sink = 0;
        if (length)
            sink = static_cast<const std::uint8_t *>(payload)[length - 1];
        (void)sink;
        if (extension && (std::strlen(extension) == 0 || std::strchr(extension, '/')))
            std::abort(); // an extension must be usable in a file name
    } else if (payload || extension) {
        std::abort(); // failure allocates nothing
    }
    std::free(payload);
    std::free(extension);
    return 0;
}

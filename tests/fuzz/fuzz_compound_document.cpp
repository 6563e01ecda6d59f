// Opens arbitrary bytes as a compound document file, walks its directory and reads every stream.
#include "model/ole/oleField.h"
#include "model/ole/pole.h"

#include <glib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Paths {
    std::string document;
    std::string output;
};

std::string makeTemp(const char *prefix)
{
    std::string path = std::string(g_get_tmp_dir()) + "/" + prefix + "-XXXXXX";
    const int fd = mkstemp(path.data());
    if (fd < 0)
        std::abort();
    ::close(fd);
    return path;
}

const Paths &paths()
{
    static const Paths p{makeTemp("vellum-fuzz-cfb"), makeTemp("vellum-fuzz-out")};
    return p;
}

void removeTemporaryFiles()
{
    ::unlink(paths().document.c_str());
    ::unlink(paths().output.c_str());
}

void readAll(vellum::POLE::Storage &storage, const std::string &path, int depth)
{
    if (depth > 8)
        return;
    for (const std::string &name : storage.entries(path)) {
        const std::string child = path == "/" ? "/" + name : path + "/" + name;
        if (storage.isDirectory(child)) {
            readAll(storage, child, depth + 1);
            continue;
        }
        vellum::POLE::Stream stream(&storage, child);
        unsigned char buffer[1000];
        std::uint64_t total = 0;
        std::size_t got;
        while ((got = stream.read(buffer, sizeof buffer)) > 0) {
            total += got;
            if (total > stream.size())
                std::abort(); // never past the stream's end
        }
        stream.seek(stream.size() > 5 ? stream.size() - 5 : 0);
        for (int i = 0; i < 8; ++i)
            stream.getch();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    paths();
    std::atexit(removeTemporaryFiles);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Paths &p = paths();
    std::FILE *out = std::fopen(p.document.c_str(), "wb");
    if (!out)
        std::abort();
    std::fwrite(data, 1, size, out);
    std::fclose(out);

    vellum::POLE::Storage storage(p.document);
    if (storage.open())
        readAll(storage, "/", 0);
    for (const char *stream : {"Package", "Contents", "/EmbeddedOdf"})
        vellum::extractOleStream(p.document.c_str(), stream, p.output.c_str());
    return 0;
}

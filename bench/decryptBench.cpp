// Decryption benchmark: for each encrypted file of the shared corpus, the time to derive and
// check the key from its password, the page decryption throughput of its scheme (100 MiB of
// pages), and the time to open the file in process, with and without decryption's share.
//
//   bench_decryptBench [SHARED_CORPUS_DIR]

#include "benchCommon.h"

#include "mdb/DatabaseHeader.h"
#include "mdb/DatabaseImage.h"
#include "mdb/InProcessReader.h"
#include "mdb/OfficePageCipher.h"
#include "model/TOrbMDBFile.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

using namespace vellum;
using namespace vellum::bench;

namespace {

struct EncryptedFile {
    const char *name;
    const char *password;
};

const EncryptedFile kFiles[] = {
    {"ace12_jackcessencrypt_db2007-oldenc.accdb", "Test123"},
    {"ace14_jackcessencrypt_db-nonstandard.accdb", "password"},
    {"ace14_jackcessencrypt_db2013-enc.accdb", "1234"},
    {"ace14_mdb-reader_encryption_office-agile-4.2.accdb", "password"},
    {"ace14_mdb-reader_encryption_office-agile-4.4.accdb", "password"},
    {"ace14_tika_testAccess2_encrypted.accdb", "tika"},
};

constexpr std::size_t kPage = 4096;
constexpr std::size_t kPages = 25600; // 100 MiB

} // namespace

int main(int argc, char **argv)
{
    const std::string dir = argc > 1 ? argv[1] : std::string(VELLUM_SHARED_DIR) + "/corpus";
    std::printf("%-52s %-26s %8s %9s %8s %8s\n", "file", "scheme", "key ms", "MiB/s", "open ms", "image ms");
    int failures = 0;
    for (const EncryptedFile &f : kFiles) {
        const std::string path = dir + "/" + f.name;
        const auto header = DatabaseHeader::readFile(path);
        if (!header) {
            std::printf("%s: not found in %s, skipped\n", f.name, dir.c_str());
            continue;
        }
        auto start = std::chrono::steady_clock::now();
        const auto setup = OfficePageCipher::create(*header, f.password);
        const double keyMs = since(start) * 1000;
        if (!setup.cipher) {
            std::printf("%s: the password was not accepted\n", f.name);
            ++failures;
            continue;
        }
        std::vector<unsigned char> pages(kPages * kPage, 0x5a);
        start = std::chrono::steady_clock::now();
        for (std::size_t p = 0; p < kPages; ++p)
            if (!setup.cipher->decryptPage(pages.data() + p * kPage, kPage, static_cast<std::uint32_t>(p + 1)))
                ++failures;
        const double mibPerSecond = 100.0 / since(start);
        start = std::chrono::steady_clock::now();
        const DatabaseImage image = prepareDatabaseImage(path, f.password);
        const double imageMs = since(start) * 1000;
        InProcessReader reader;
        reader.setPassword(f.password);
        auto file = TOrbMDBFile::fromPath(path);
        start = std::chrono::steady_clock::now();
        const bool opened = file->open(reader, nullptr);
        const double openMs = since(start) * 1000;
        if (!opened || !image.bytes)
            ++failures;
        std::printf("%-52s %-26s %8.1f %9.0f %8.1f %8.1f\n", f.name, encryptionSchemeName(setup.scheme), keyMs,
                    mibPerSecond, openMs, imageMs);
    }
    return failures == 0 ? 0 : 1;
}

#include "mdb/DatabaseImage.h"

#include "util/parallel.h"

#include <atomic>
#include <fstream>
#include <new>

namespace vellum {
namespace {

/// A page's decryption weighs about as much as this many rows of other parallel work.
constexpr std::size_t kPageWeight = 16;

OpenFailure failureOf(PasswordCheck check)
{
    switch (check) {
    case PasswordCheck::Accepted:
        return OpenFailure::None;
    case PasswordCheck::Needed:
        return OpenFailure::PasswordNeeded;
    case PasswordCheck::Wrong:
        return OpenFailure::WrongPassword;
    case PasswordCheck::Unsupported:
        return OpenFailure::Other;
    }
    return OpenFailure::Other;
}

/// The whole file; false when it cannot be read.
bool readWholeFile(const std::string &path, Bytes &bytes)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in)
        return false;
    const std::streamoff size = in.tellg();
    if (size < 0)
        return false;
    bytes.resize(static_cast<std::size_t>(size));
    in.seekg(0);
    in.read(reinterpret_cast<char *>(bytes.data()), size);
    return in.gcount() == size;
}

} // namespace

DatabaseImage prepareDatabaseImage(const std::string &path, const std::string &password)
{
    DatabaseImage image;
    const auto header = DatabaseHeader::readFile(path);
    if (!header)
        return image;
    image.scheme = encryptionSchemeOf(*header);
    image.databasePasswordSet = header->hasDatabasePassword();
    if (!header->officeEncrypted())
        return image;
    auto setup = OfficePageCipher::create(*header, password);
    image.failure = failureOf(setup.check);
    if (!setup.cipher)
        return image;
    try {
        auto bytes = std::make_shared<Bytes>();
        if (!readWholeFile(path, *bytes)) {
            image.failure = OpenFailure::Other;
            return image;
        }
        const std::size_t pageSize = header->pageSize();
        // Whole pages only: a torn last page is left as stored, which libmdb reads as damage.
        // Each page has its own key, so the pages are decrypted in chunks on several threads.
        const std::size_t pages = bytes->size() / pageSize;
        std::atomic<bool> failed{false};
        forChunks(pages > 0 ? pages - 1 : 0, (pages > 0 ? pages - 1 : 0) * kPageWeight,
                  [&](std::size_t begin, std::size_t end) {
                      for (std::size_t page = begin + 1; page <= end && !failed; ++page)
                          if (!setup.cipher->decryptPage(bytes->data() + page * pageSize, pageSize,
                                                         static_cast<std::uint32_t>(page)))
                              failed = true;
                  });
        if (failed) {
            image.failure = OpenFailure::Other;
            return image;
        }
        DatabaseHeader::clearEncodingKey(bytes->data(), bytes->size());
        image.bytes = std::move(bytes);
    } catch (const std::bad_alloc &) {
        image.failure = OpenFailure::OutOfMemory;
    }
    return image;
}

OpenFailure checkDatabasePassword(const std::string &path, const std::string &password)
{
    const auto header = DatabaseHeader::readFile(path);
    if (!header || !header->officeEncrypted())
        return OpenFailure::None;
    return failureOf(OfficePageCipher::create(*header, password).check);
}

bool databaseNeedsPassword(const std::string &path)
{
    const auto header = DatabaseHeader::readFile(path);
    return header && header->officeEncrypted();
}

} // namespace vellum

#include "model/fileCheck.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vellum {

namespace {
constexpr std::size_t kSignatureLength = 20;
}

bool hasAccessSignature(const unsigned char *bytes, std::size_t length)
{
    if (length < kSignatureLength)
        return false;
    static const unsigned char kPageType[4] = {0x00, 0x01, 0x00, 0x00};
    if (std::memcmp(bytes, kPageType, sizeof kPageType) != 0)
        return false;
    const char *text = reinterpret_cast<const char *>(bytes + 4);
    return std::memcmp(text, "Standard Jet DB", 16) == 0 || std::memcmp(text, "Standard ACE DB", 16) == 0;
}

OpenFailure checkDatabaseFile(const std::string &path)
{
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) {
        if (errno == EACCES)
            return OpenFailure::NotReadable;
        return OpenFailure::NotFound; // also a symbolic link whose target is gone
    }
    if (!S_ISREG(st.st_mode))
        return OpenFailure::NotRegularFile;
    // O_NONBLOCK: should the file have been replaced by a FIFO since the stat, the open does
    // not wait for a writer; the mode is checked again on the descriptor.
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return errno == ENOENT ? OpenFailure::NotFound : OpenFailure::NotReadable;
    struct stat opened {};
    if (fstat(fd, &opened) != 0 || !S_ISREG(opened.st_mode)) {
        close(fd);
        return OpenFailure::NotRegularFile;
    }
    unsigned char header[kSignatureLength];
    std::size_t got = 0;
    while (got < sizeof header) {
        const ssize_t n = pread(fd, header + got, sizeof header - got, static_cast<off_t>(got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            close(fd);
            return OpenFailure::NotReadable;
        }
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    close(fd);
    return hasAccessSignature(header, got) ? OpenFailure::None : OpenFailure::NotAccessFile;
}

} // namespace vellum

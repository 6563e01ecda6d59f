#include "export/OutputFile.h"

#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>

namespace vellum {
namespace {

constexpr int kNameAttempts = 64;
/// How long a named pipe without a reader is waited for before the output is refused.
constexpr int kPipeReaderWaitMs = 30000;
constexpr int kPipeReaderPollMs = 20;

std::atomic<int> g_standardOutput{STDOUT_FILENO};

/// The temporary files that exist at this moment, readable from a signal handler: a slot is
/// free (0), being filled or emptied (1), or holds a path (2).
constexpr int kPendingSlots = 32;
struct PendingSlot {
    std::atomic<int> state{0};
    char path[PATH_MAX];
};
PendingSlot g_pending[kPendingSlots];

/// Records a temporary file; -1 when every slot is taken (the file is then only not removed by
/// `removePendingFiles`).
int addPending(const std::string &path)
{
    if (path.size() >= PATH_MAX)
        return -1;
    for (int i = 0; i < kPendingSlots; ++i) {
        int expected = 0;
        if (g_pending[i].state.compare_exchange_strong(expected, 1)) {
            std::memcpy(g_pending[i].path, path.c_str(), path.size() + 1);
            g_pending[i].state.store(2);
            return i;
        }
    }
    return -1;
}

void dropPending(int &slot)
{
    if (slot >= 0)
        g_pending[slot].state.store(0);
    slot = -1;
}

/// The folder part of a path ("." when it has none) and its last component.
void splitPath(const std::string &path, std::string &folder, std::string &name)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        folder = ".";
        name = path;
    } else {
        folder = slash == 0 ? "/" : path.substr(0, slash);
        name = path.substr(slash + 1);
    }
}

/// A hidden name beside `name` that no other run picks: ".NAME.vellum-XXXXXXXX".
std::string temporaryName(const std::string &folder, const std::string &name)
{
    static thread_local std::mt19937_64 random(std::random_device{}() ^ static_cast<std::uint64_t>(getpid()));
    char suffix[17];
    std::snprintf(suffix, sizeof suffix, "%016llx", static_cast<unsigned long long>(random()));
    // Keep the temporary name within the file system's name limit, whatever the final name.
    const std::string shortName = name.substr(0, std::min<std::size_t>(name.size(), 200));
    return (folder == "/" ? "" : folder) + "/." + shortName + ".vellum-" + suffix;
}

} // namespace

void OutputFile::removePendingFiles()
{
    for (PendingSlot &slot : g_pending) {
        int expected = 2;
        if (slot.state.compare_exchange_strong(expected, 1)) {
            unlink(slot.path);
            slot.state.store(0);
        }
    }
}

void OutputFile::setStandardOutputDescriptor(int fd)
{
    g_standardOutput.store(fd);
}

bool OutputFile::isStream(const std::string &path)
{
    struct stat st {};
    return path == kStandardOutput || (stat(path.c_str(), &st) == 0 && (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode)));
}

bool OutputFile::canWrite(const std::string &path)
{
    if (path.empty())
        return false;
    if (path == kStandardOutput)
        return true;
    struct stat st {};
    if (stat(path.c_str(), &st) == 0) {
        if (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode))
            return access(path.c_str(), W_OK) == 0;
        if (!S_ISREG(st.st_mode) || access(path.c_str(), W_OK) != 0)
            return false;
    } else if (errno != ENOENT) {
        return false;
    }
    char resolved[PATH_MAX];
    std::string finalPath = path;
    if (realpath(path.c_str(), resolved))
        finalPath = resolved;
    std::string folder;
    std::string name;
    splitPath(finalPath, folder, name);
    return !name.empty() && name != "." && name != ".." && access(folder.c_str(), W_OK | X_OK) == 0;
}

OutputFile::~OutputFile()
{
    abandon();
}

bool OutputFile::fail(int error)
{
    m_error = std::strerror(error);
    return false;
}

bool OutputFile::openDevice(const std::string &path)
{
    // Open without waiting, so that a pipe nobody reads is noticed instead of blocking; then
    // look at what was opened, not at what the name pointed to a moment before.
    int fd = -1;
    for (int waited = 0;; waited += kPipeReaderPollMs) {
        fd = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
        if (fd >= 0 || errno != ENXIO)
            break;
        if (waited >= kPipeReaderWaitMs) {
            m_error = "no program reads the named pipe";
            return false;
        }
        poll(nullptr, 0, kPipeReaderPollMs);
    }
    if (fd < 0)
        return fail(errno);
    struct stat st {};
    if (fstat(fd, &st) != 0 || !(S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode))) {
        close(fd);
        m_error = "it changed while it was being opened";
        return false;
    }
    const int flags = fcntl(fd, F_GETFL);
    if (flags >= 0)
        (void)fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    m_fd = fd;
    return true;
}

bool OutputFile::beginDeviceCopy()
{
    const char *folder = std::getenv("TMPDIR");
    std::string pattern = std::string(folder && *folder ? folder : "/tmp") + "/vellum-output-XXXXXX";
    const int fd = mkostemp(pattern.data(), O_CLOEXEC);
    if (fd < 0)
        return fail(errno);
    close(fd);
    // The writer creates the file itself (SQLite and the workbook library want a new file).
    unlink(pattern.c_str());
    m_writePath = pattern;
    m_deviceFd = m_fd;
    m_fd = -1;
    m_pending = true;
    m_slot = addPending(m_writePath);
    return true;
}

bool OutputFile::begin(const std::string &path, Target target, bool allowDevice)
{
    abandon();
    m_error.clear();
    m_device = false;
    m_finalExisted = false;
    m_finalPath = path;
    if (path.empty())
        return fail(ENOENT);

    if (path == kStandardOutput) {
        if (!allowDevice) {
            m_error = "it needs a regular file, not the standard output";
            return false;
        }
        m_fd = fcntl(g_standardOutput.load(), F_DUPFD_CLOEXEC, 0);
        if (m_fd < 0)
            return fail(errno);
        m_writePath = path;
        m_device = true;
        return target == Target::Descriptor || beginDeviceCopy();
    }

    struct stat st {};
    if (stat(path.c_str(), &st) == 0) {
        if (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode)) {
            if (!allowDevice) {
                m_error = "it is a device or pipe, not a regular file";
                return false;
            }
            if (!openDevice(path))
                return false;
            m_writePath = path;
            m_device = true;
            return target == Target::Descriptor || beginDeviceCopy();
        }
        if (S_ISDIR(st.st_mode))
            return fail(EISDIR);
        if (!S_ISREG(st.st_mode)) {
            m_error = "it is not a regular file";
            return false;
        }
        if (access(path.c_str(), W_OK) != 0)
            return fail(errno);
        m_finalExisted = true;
    } else if (errno != ENOENT) {
        return fail(errno);
    }

    // A link is followed, so that the file it points to is replaced and the link stays.
    std::string finalPath = path;
    struct stat linkStat {};
    if (lstat(path.c_str(), &linkStat) == 0 && S_ISLNK(linkStat.st_mode)) {
        char resolved[PATH_MAX];
        if (!realpath(path.c_str(), resolved))
            return fail(errno);
        finalPath = resolved;
    }
    m_finalPath = finalPath;
    std::string folder;
    std::string name;
    splitPath(finalPath, folder, name);
    if (name.empty() || name == "." || name == "..")
        return fail(EISDIR);

    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string candidate = temporaryName(folder, name);
        const int fd = open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            return fail(errno);
        }
        // A replaced file keeps its permissions.
        if (st.st_mode != 0 && S_ISREG(st.st_mode))
            (void)fchmod(fd, st.st_mode & 07777);
        m_writePath = candidate;
        m_pending = true;
        m_slot = addPending(candidate);
        if (target == Target::PathOnly) {
            // The caller creates the file itself (SQLite will not open an existing empty file
            // as a new database); the name was only reserved.
            close(fd);
            unlink(candidate.c_str());
        } else {
            m_fd = fd;
        }
        return true;
    }
    return fail(EEXIST);
}

int OutputFile::takeDescriptor()
{
    const int fd = m_fd;
    m_fd = -1;
    return fd;
}

bool OutputFile::copyIntoDevice()
{
    const int in = open(m_writePath.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return fail(errno);
    char buffer[1 << 16];
    bool ok = true;
    int error = 0;
    for (;;) {
        const ssize_t got = read(in, buffer, sizeof buffer);
        if (got == 0)
            break;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            ok = false;
            error = errno;
            break;
        }
        for (ssize_t done = 0; done < got && ok;) {
            const ssize_t put = write(m_deviceFd, buffer + done, static_cast<std::size_t>(got - done));
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0) {
                ok = false;
                error = put < 0 ? errno : EIO;
            } else {
                done += put;
            }
        }
        if (!ok)
            break;
    }
    close(in);
    return ok || fail(error);
}

bool OutputFile::renameIntoPlace()
{
    // Nothing was there when writing began: take the name only if it is still free.
    if (!m_finalExisted &&
        renameat2(AT_FDCWD, m_writePath.c_str(), AT_FDCWD, m_finalPath.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (!m_finalExisted && errno != EEXIST && errno != EINVAL && errno != ENOSYS)
        return fail(errno);
    // Something is there now (or the file system cannot refuse to replace): replace it only
    // when it is a regular file, never a device, pipe, folder or link put there meanwhile.
    struct stat st {};
    if (lstat(m_finalPath.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        m_error = "something other than a regular file appeared at the path; it was left alone";
        return false;
    }
    return rename(m_writePath.c_str(), m_finalPath.c_str()) == 0 || fail(errno);
}

bool OutputFile::commit()
{
    m_error.clear();
    if (m_fd >= 0) {
        // Devices and pipes cannot be synced; a file's data must be on the disk before its
        // name points at it, or a crash could leave an empty file under the final name.
        if (!m_device && fdatasync(m_fd) != 0 && errno != EINVAL) {
            fail(errno);
            abandon();
            return false;
        }
        const int closed = close(m_fd);
        m_fd = -1;
        if (closed != 0) {
            fail(errno);
            abandon();
            return false;
        }
    } else if (m_pending && m_deviceFd >= 0) {
        // The caller's finished file goes into the device, then the file is ours to remove.
        const bool copied = copyIntoDevice();
        const int closed = close(m_deviceFd);
        const int closeError = errno;
        m_deviceFd = -1;
        if (copied && closed != 0)
            fail(closeError);
        abandon();
        return copied && closed == 0;
    } else if (m_pending) {
        // The caller wrote and closed the file itself: sync it through a descriptor of ours.
        const int fd = open(m_writePath.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            fail(errno);
            abandon();
            return false;
        }
        const bool synced = fdatasync(fd) == 0 || errno == EINVAL;
        const int syncError = errno;
        close(fd);
        if (!synced) {
            fail(syncError);
            abandon();
            return false;
        }
    }
    if (!m_pending)
        return true;
    if (!renameIntoPlace()) {
        const std::string why = m_error;
        abandon();
        m_error = why;
        return false;
    }
    m_pending = false;
    dropPending(m_slot);
    return true;
}

void OutputFile::abandon()
{
    if (m_fd >= 0) {
        close(m_fd);
        m_fd = -1;
    }
    if (m_deviceFd >= 0) {
        close(m_deviceFd);
        m_deviceFd = -1;
    }
    if (m_pending) {
        unlink(m_writePath.c_str());
        m_pending = false;
        dropPending(m_slot);
    }
}

} // namespace vellum

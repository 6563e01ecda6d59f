#include "export/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>

namespace vellum {
namespace {

constexpr int kNameAttempts = 64;

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

bool OutputFile::canWrite(const std::string &path)
{
    if (path.empty())
        return false;
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

bool OutputFile::begin(const std::string &path, Target target, bool allowDevice)
{
    abandon();
    m_error.clear();
    m_device = false;
    m_finalPath = path;
    if (path.empty())
        return fail(ENOENT);

    struct stat st {};
    if (stat(path.c_str(), &st) == 0) {
        if (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode)) {
            if (!allowDevice || target == Target::PathOnly) {
                m_error = "it is a device or pipe, not a regular file";
                return false;
            }
            m_fd = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
            if (m_fd < 0)
                return fail(errno);
            m_writePath = path;
            m_device = true;
            return true;
        }
        if (S_ISDIR(st.st_mode))
            return fail(EISDIR);
        if (!S_ISREG(st.st_mode)) {
            m_error = "it is not a regular file";
            return false;
        }
        if (access(path.c_str(), W_OK) != 0)
            return fail(errno);
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
    if (rename(m_writePath.c_str(), m_finalPath.c_str()) != 0) {
        fail(errno);
        abandon();
        return false;
    }
    m_pending = false;
    return true;
}

void OutputFile::abandon()
{
    if (m_fd >= 0) {
        close(m_fd);
        m_fd = -1;
    }
    if (m_pending) {
        unlink(m_writePath.c_str());
        m_pending = false;
    }
}

} // namespace vellum

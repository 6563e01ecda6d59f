#pragma once

#include <string>

namespace vellum {

/// An output file that appears under its final name only when it is complete. The bytes go to
/// a hidden temporary file in the destination folder, which `commit` flushes to the disk and
/// renames over the final path; a run that fails, is stopped or is killed leaves the previous
/// file (or nothing) under the final name, never a part of a file. Two runs writing the same
/// path each write their own temporary file: the later rename wins, whole.
///
/// A character device or a FIFO at the final path (a terminal, /dev/null, a pipe) is written
/// into directly when the caller allows it, and refused otherwise; it is never removed or
/// replaced. A caller that needs a file name of its own (Target::PathOnly) writes a temporary
/// file in the temporary folder, whose bytes are copied into the device when complete. The
/// path "-" is the standard output, handled like a device. A symbolic link is followed: the
/// file it points to is replaced (or the device written into), the link stays. Only a regular
/// file (or nothing) is ever replaced: the final path is checked again right before the rename.
class OutputFile {
public:
    /// What the caller can write into.
    enum class Target {
        Descriptor, ///< `descriptor()` is open for writing (a temporary file, or the device)
        PathOnly,   ///< nothing is created: `writePath()` is a free name the caller creates
    };

    /// True when `begin` would succeed for `path` (with devices allowed), judged without
    /// creating or opening anything.
    static bool canWrite(const std::string &path);

    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    /// Prepares writing `path`. False when it cannot be written (a folder, a missing folder, no
    /// permission, a device where `allowDevice` is false); `errorText` then says why.
    [[nodiscard]] bool begin(const std::string &path, Target target = Target::Descriptor, bool allowDevice = true);
    /// Where the bytes go: the temporary file, or the device itself.
    const std::string &writePath() const { return m_writePath; }
    /// The open descriptor (Target::Descriptor only), -1 once taken or closed.
    int descriptor() const { return m_fd; }
    /// Hands the descriptor to the caller, who closes it (after flushing) before `commit`.
    int takeDescriptor();
    /// True when the output is a device, FIFO or the standard output written in place.
    bool isDevice() const { return m_device; }
    /// The path that means the standard output.
    static constexpr const char *kStandardOutput = "-";
    /// True for "-" and for a path that names (or links to) a character device or a FIFO.
    static bool isStream(const std::string &path);
    /// Removes every temporary file that exists now, in any thread. Safe in a signal handler:
    /// a program that ends at once on a signal calls it first, so nothing is left behind.
    static void removePendingFiles();
    /// The descriptor "-" writes into (standard output unless a program moved it).
    static void setStandardOutputDescriptor(int fd);
    /// Flushes the data to the disk, closes and renames the temporary file over the final
    /// path. False (and the temporary file removed) when any of it fails.
    [[nodiscard]] bool commit();
    /// Closes and removes the temporary file; the final path is left as it was.
    void abandon();
    /// Why the last step failed, e.g. "No space left on device"; empty when none did.
    const std::string &errorText() const { return m_error; }

private:
    bool fail(int error);
    /// Opens the device or FIFO at `path` for writing and checks, on the open descriptor, that
    /// it still is one; waits a while for a reader of a FIFO.
    bool openDevice(const std::string &path);
    /// Makes the temporary file, in the temporary folder, that is copied into the device.
    bool beginDeviceCopy();
    /// Copies the finished temporary file into the device.
    bool copyIntoDevice();
    /// Renames the temporary file over the final path when that is nothing or a regular file.
    bool renameIntoPlace();

    std::string m_finalPath;
    std::string m_writePath;
    int m_fd = -1;
    bool m_device = false;
    bool m_pending = false;      ///< a temporary file (or name) exists and is not yet renamed
    int m_deviceFd = -1;         ///< the device a PathOnly output is copied into at the end
    bool m_finalExisted = false; ///< a regular file was at the final path when writing began
    int m_slot = -1;             ///< where `removePendingFiles` finds the temporary file
    std::string m_error;
};

} // namespace vellum

#pragma once

#include "model/OpenFailure.h"

#include <cstdint>
#include <string>

namespace vellum {

/// vellum-loader's exit statuses: 0 when the whole model was sent, 1 when the file could not be
/// read for a reason it cannot name or the pipe broke, 2 for wrong arguments, and
/// kHelperExitReasonBase plus an OpenFailure when it knows why the file cannot be read.
inline constexpr int kHelperExitReasonBase = 10;

/// The exit status that tells the parent `failure`.
int helperExitStatusFor(OpenFailure failure);

/// Why a helper that did not deliver a complete model failed, from its wait status (as waitpid
/// gives it), whether the parent killed it for making no progress or killed it at all, and what
/// it wrote to standard error: NoProgress for a stall, a named reason from its exit status,
/// OutOfMemory when it ran into its memory limit (GLib's or our own out-of-memory message, or a
/// kill it did not get from the parent), Crashed for any other signal, Other for the rest.
OpenFailure helperFailure(int waitStatus, bool stalled, bool killedByParent, const std::string &diagnostics);

/// The address-space limit of a helper reading a file of `fileSize` bytes on a machine with
/// `physicalMemory` bytes: room for a model several times the file's size, at least 1 GiB (the
/// program, its threads and libraries), at most three quarters of the machine's memory unless
/// that is below the floor.
std::uint64_t helperMemoryLimit(std::uint64_t fileSize, std::uint64_t physicalMemory);

} // namespace vellum

#pragma once

#include <cstddef>
#include <functional>

namespace vellum {

/// Below this much work (rows, roughly) a split across threads costs more than it saves.
inline constexpr std::size_t kParallelThreshold = 32768;

/// Runs `work(begin, end)` over [0, count) in one chunk per hardware thread (at most 4), the
/// first chunk on the calling thread, and returns when all are done. `weight` is the amount of
/// work: below kParallelThreshold (or with one core) everything runs on the calling thread.
void forChunks(std::size_t count, std::size_t weight,
               const std::function<void(std::size_t begin, std::size_t end)> &work);

/// forChunks with the weight of `count`.
inline void forChunks(std::size_t count, const std::function<void(std::size_t begin, std::size_t end)> &work)
{
    forChunks(count, count, work);
}

/// Runs `first` on the calling thread and `second` on a helper thread at once (both on the
/// calling thread, one after the other, with one core); returns when both are done.
void runBoth(const std::function<void()> &first, const std::function<void()> &second);

} // namespace vellum

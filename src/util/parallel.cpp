#include "util/parallel.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace vellum {

namespace {

std::size_t hardwareThreads()
{
    return std::max<std::size_t>(std::thread::hardware_concurrency(), 1);
}

} // namespace

void forChunks(std::size_t count, std::size_t weight,
               const std::function<void(std::size_t begin, std::size_t end)> &work)
{
    std::size_t chunks = std::min<std::size_t>(hardwareThreads(), 4);
    if (weight < kParallelThreshold || count < 2)
        chunks = 1;
    const std::size_t step = (count + chunks - 1) / chunks;
    std::vector<std::thread> helpers;
    for (std::size_t c = 1; c < chunks; ++c) {
        const std::size_t begin = std::min(count, c * step);
        const std::size_t end = std::min(count, begin + step);
        if (begin < end)
            helpers.emplace_back([&work, begin, end] { work(begin, end); });
    }
    if (count > 0)
        work(0, std::min(count, step));
    for (std::thread &helper : helpers)
        helper.join();
}

void runBoth(const std::function<void()> &first, const std::function<void()> &second)
{
    if (hardwareThreads() < 2) {
        first();
        second();
        return;
    }
    std::thread helper(second);
    first();
    helper.join();
}

} // namespace vellum

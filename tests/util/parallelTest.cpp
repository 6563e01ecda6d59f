#include "util/parallel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace vellum {
namespace {

TEST(parallel, ForChunksCoversEveryIndexOnce)
{
    struct Case {
        std::size_t count;
        std::size_t weight;
        bool helpers; ///< whether other threads may take part
    };
    const bool manyCores = std::thread::hardware_concurrency() > 1;
    for (const Case &c : {Case{0, 0, false}, Case{1, 1'000'000, false}, Case{7, 7, false},
                          Case{kParallelThreshold - 1, kParallelThreshold - 1, false},
                          Case{kParallelThreshold, kParallelThreshold, manyCores}, Case{5, 1'000'000, manyCores},
                          Case{100'003, 100'003, manyCores}}) {
        std::vector<std::atomic<int>> seen(c.count);
        std::mutex lock;
        std::set<std::thread::id> threads;
        forChunks(c.count, c.weight, [&](std::size_t begin, std::size_t end) {
            {
                std::lock_guard guard(lock);
                threads.insert(std::this_thread::get_id());
            }
            for (std::size_t i = begin; i < end; ++i)
                ++seen[i];
        });
        EXPECT_TRUE(std::all_of(seen.begin(), seen.end(), [](const std::atomic<int> &n) { return n.load() == 1; }))
            << c.count;
        if (!c.helpers)
            EXPECT_LE(threads.size(), 1u) << c.count;
        else
            EXPECT_GT(threads.size(), 1u) << c.count;
        EXPECT_LE(threads.size(), 4u);
    }
}

TEST(parallel, RunBothRunsEachOnce)
{
    std::atomic<int> first{0};
    std::atomic<int> second{0};
    std::thread::id firstThread;
    runBoth(
        [&] {
            firstThread = std::this_thread::get_id();
            ++first;
        },
        [&] { ++second; });
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(firstThread, std::this_thread::get_id());
}

} // namespace
} // namespace vellum

#include "util/BackgroundTask.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace vellum {
namespace {

using namespace std::chrono_literals;

/// A gate that a run waits at until the test opens it.
class Gate {
public:
    void open() { m_opened.set_value(); }
    void waitOpen() { m_future.wait(); }

private:
    std::promise<void> m_opened;
    std::shared_future<void> m_future = m_opened.get_future().share();
};

/// Waits (bounded) until `condition` holds; the runs signal through atomics.
template <typename Condition> bool eventually(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

TEST(BackgroundTask, RunsOffTheCallingThreadAndWaits)
{
    BackgroundTask task;
    EXPECT_FALSE(task.busy());
    std::thread::id runThread;
    Gate gate;
    const std::uint64_t generation = task.post([&](const BackgroundTask::Run &run) {
        runThread = std::this_thread::get_id();
        EXPECT_TRUE(task.onWorkerThread());
        EXPECT_EQ(run.generation(), 1u);
        task.wait(); // on its own thread: returns at once instead of waiting for itself
        gate.waitOpen();
    });
    EXPECT_EQ(generation, 1u);
    EXPECT_TRUE(task.busy());
    EXPECT_FALSE(task.waitFor(20ms)) << "the run is held at the gate";
    gate.open();
    task.wait();
    EXPECT_FALSE(task.busy());
    EXPECT_TRUE(task.waitFor(0ms));
    EXPECT_NE(runThread, std::this_thread::get_id());
    EXPECT_FALSE(task.onWorkerThread());
}

TEST(BackgroundTask, StopFlagIsSeenAndStaysUntilCleared)
{
    BackgroundTask task;
    std::atomic<bool> started{false};
    std::atomic<bool> sawStop{false};
    task.post([&](const BackgroundTask::Run &run) {
        started = true;
        while (!run.stopRequested())
            std::this_thread::yield();
        sawStop = true;
    });
    ASSERT_TRUE(eventually([&] { return started.load(); }));
    task.requestStop();
    task.wait();
    EXPECT_TRUE(sawStop);

    // The flag stays for runs posted later (a stop before the start is not lost)…
    bool stoppedAtStart = false;
    task.post([&](const BackgroundTask::Run &run) { stoppedAtStart = run.stopRequested(); });
    task.wait();
    EXPECT_TRUE(stoppedAtStart);
    // …until it is cleared; the flag a signal handler holds is the same flag.
    task.clearStop();
    bool stoppedAfterClear = true;
    task.post([&](const BackgroundTask::Run &run) { stoppedAfterClear = run.stopRequested(); });
    task.wait();
    EXPECT_FALSE(stoppedAfterClear);
    task.stopFlag().store(true);
    EXPECT_TRUE(task.stopRequested());
    EXPECT_TRUE(task.stopRequested(task.generation()));
}

TEST(BackgroundTask, NewerRunMakesOlderStale)
{
    BackgroundTask task;
    Gate holdFirst;
    std::atomic<bool> firstStarted{false};
    std::atomic<bool> firstSawStale{false};
    std::vector<int> ran;
    std::mutex ranLock;
    const auto record = [&](int id) {
        std::lock_guard lock(ranLock);
        ran.push_back(id);
    };
    const std::uint64_t first = task.post([&](const BackgroundTask::Run &run) {
        firstStarted = true;
        holdFirst.waitOpen();
        firstSawStale = run.stopRequested();
        record(1);
    });
    ASSERT_TRUE(eventually([&] { return firstStarted.load(); }));
    EXPECT_TRUE(task.isCurrent(first));
    // Queued behind the first; replaced before it starts, so it never runs.
    const std::uint64_t second = task.post([&](const BackgroundTask::Run &) { record(2); });
    bool thirdStopped = true;
    const std::uint64_t third = task.post([&](const BackgroundTask::Run &run) {
        thirdStopped = run.stopRequested();
        record(3);
    });
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_FALSE(task.isCurrent(first));
    EXPECT_FALSE(task.isCurrent(second));
    EXPECT_TRUE(task.isCurrent(third));
    EXPECT_FALSE(task.stopRequested()) << "a newer run is no stop request for the task";
    holdFirst.open();
    task.wait();
    EXPECT_TRUE(firstSawStale);
    EXPECT_FALSE(thirdStopped);
    EXPECT_EQ(ran, (std::vector<int>{1, 3}));

    // Invalidating makes the newest run stale too, and drops one not yet started.
    const std::uint64_t newest = task.invalidate();
    EXPECT_GT(newest, third);
    EXPECT_FALSE(task.isCurrent(third));
    EXPECT_TRUE(task.stopRequested(third));
    EXPECT_FALSE(task.stopRequested(newest));
}

TEST(BackgroundTask, ProgressOfTheCurrentRunOnly)
{
    struct Recorder : TaskObserver {
        void progressChanged(std::uint64_t generation, TaskProgress progress) override
        {
            std::lock_guard lock(mutex);
            reports.push_back({generation, progress.done, progress.total});
        }
        void runFinished(std::uint64_t generation, bool stopped) override
        {
            std::lock_guard lock(mutex);
            finished.push_back({generation, stopped});
        }
        std::mutex mutex;
        std::vector<std::array<std::uint64_t, 3>> reports;
        std::vector<std::pair<std::uint64_t, bool>> finished;
    } recorder;
    BackgroundTask task(&recorder);
    EXPECT_EQ(task.progress().total, 0u);

    Gate reported;
    Gate release;
    const std::uint64_t first = task.post([&](const BackgroundTask::Run &run) {
        run.reportProgress(5, 10);
        reported.open();
        release.waitOpen();
        run.reportProgress(9, 10); // stale by now: neither stored nor passed on
    });
    reported.waitOpen();
    EXPECT_EQ(task.progress().done, 5u);
    EXPECT_EQ(task.progress().total, 10u);
    const std::uint64_t second = task.post([&](const BackgroundTask::Run &run) { run.reportProgress(1, 2); });
    EXPECT_EQ(task.progress().done, 0u) << "a new run starts from no progress";
    release.open();
    task.wait();
    EXPECT_EQ(task.progress().done, 1u);
    EXPECT_EQ(task.progress().total, 2u);
    std::lock_guard lock(recorder.mutex);
    EXPECT_EQ(recorder.reports, (std::vector<std::array<std::uint64_t, 3>>{{first, 5, 10}, {second, 1, 2}}));
    EXPECT_EQ(recorder.finished, (std::vector<std::pair<std::uint64_t, bool>>{{first, true}, {second, false}}));
}

TEST(BackgroundTask, DestructionStopsAndWaitsForTheRun)
{
    std::atomic<bool> started{false};
    std::atomic<bool> finished{false};
    {
        BackgroundTask task;
        task.post([&](const BackgroundTask::Run &run) {
            started = true;
            while (!run.stopRequested())
                std::this_thread::yield();
            finished = true;
        });
        ASSERT_TRUE(eventually([&] { return started.load(); }));
    }
    EXPECT_TRUE(finished);
}

} // namespace
} // namespace vellum

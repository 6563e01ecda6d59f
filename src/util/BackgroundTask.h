#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace vellum {

/// How far a run has come: `done` of `total` units (`total` 0 while the amount is unknown).
struct TaskProgress {
    std::uint64_t done = 0;
    std::uint64_t total = 0;
};

/// Told about the runs of a BackgroundTask. Every call comes on the worker thread; keep it short
/// (post anything long to another thread).
class TaskObserver {
public:
    virtual ~TaskObserver() = default;
    /// The current run reported progress (stale runs are not passed on).
    virtual void progressChanged(std::uint64_t generation, TaskProgress progress) = 0;
    /// The run of `generation` returned; `stopped` when it had been asked to stop by then.
    virtual void runFinished(std::uint64_t generation, bool stopped);
};

/// Work off the calling thread, one run at a time, on a worker thread of its own (started with
/// the first run, ended by the destructor). Rules:
/// - Stop: `requestStop` sets an atomic flag that every run sees through `Run::stopRequested`
///   and that stays set (also for runs posted later) until `clearStop`.
/// - Generation: every `post` (and `invalidate`) takes the next generation number. A run whose
///   generation is no longer the newest is stale: it sees a stop request, its progress is
///   ignored, and its owner drops its result (`isCurrent`). A posted run that has not started
///   when a newer one is posted never runs.
/// - Progress: the current run reports `done` of `total`; the owner reads the newest report with
///   `progress` (e.g. on a timer) or is told through the observer.
class BackgroundTask {
public:
    /// What a run sees of its task; handed to the work, valid while it runs.
    class Run {
    public:
        Run(BackgroundTask &task, std::uint64_t generation) : m_task(task), m_generation(generation) {}
        std::uint64_t generation() const { return m_generation; }
        /// True once the task is asked to stop or a newer run was posted: return soon.
        bool stopRequested() const { return m_task.stopRequested(m_generation); }
        /// Reports progress of this run (ignored when the run is stale).
        void reportProgress(std::uint64_t done, std::uint64_t total) const;

    private:
        BackgroundTask &m_task;
        std::uint64_t m_generation;
    };
    using Work = std::function<void(const Run &run)>;

    /// `observer` (may be null, not owned) must outlive the task.
    explicit BackgroundTask(TaskObserver *observer = nullptr);
    /// Asks the running work to stop and waits for it. Never call from inside the task's work.
    ~BackgroundTask();
    BackgroundTask(const BackgroundTask &) = delete;
    BackgroundTask &operator=(const BackgroundTask &) = delete;

    /// Queues `work` to run on the worker thread and returns its generation. Any older run
    /// becomes stale; one that has not started is dropped. Does not clear a stop request.
    std::uint64_t post(Work work);
    /// Makes every posted or running run stale without starting a new one (the newest request
    /// is served elsewhere, e.g. on the calling thread); returns the new generation.
    std::uint64_t invalidate();
    /// Sets the stop flag. Any thread, also a signal handler (it only stores the flag).
    void requestStop() { m_stop.store(true, std::memory_order_relaxed); }
    /// Clears the stop flag, so that the next run starts unstopped.
    void clearStop() { m_stop.store(false, std::memory_order_relaxed); }
    /// The stop flag alone.
    bool stopRequested() const { return m_stop.load(std::memory_order_relaxed); }
    /// The stop flag, or true when `generation` is stale.
    bool stopRequested(std::uint64_t generation) const { return stopRequested() || !isCurrent(generation); }
    /// The flag itself, for code that can hold only a flag (a signal handler).
    std::atomic<bool> &stopFlag() { return m_stop; }

    /// The newest generation handed out (0 before the first post).
    std::uint64_t generation() const { return m_generation.load(std::memory_order_acquire); }
    /// Whether `generation` is still the newest: a result of it may be shown.
    bool isCurrent(std::uint64_t generation) const { return generation == this->generation(); }
    /// The newest progress of the current generation ({0, 0} until it reports).
    TaskProgress progress() const;

    /// Whether a run is queued or running.
    bool busy() const;
    /// Waits until no run is queued or running. Returns at once on the worker thread itself.
    void wait();
    /// Waits at most `timeout`; true when the task became idle.
    bool waitFor(std::chrono::milliseconds timeout);
    /// Whether the calling thread is the task's worker thread.
    bool onWorkerThread() const { return std::this_thread::get_id() == m_threadId.load(); }

private:
    void loop();
    void report(std::uint64_t generation, TaskProgress progress);

    TaskObserver *m_observer;
    std::atomic<bool> m_stop{false};
    std::atomic<std::uint64_t> m_generation{0};
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    Work m_pending;
    std::uint64_t m_pendingGeneration = 0;
    bool m_running = false;
    bool m_quit = false;
    TaskProgress m_progress;
    std::uint64_t m_progressGeneration = 0;
    std::thread m_thread;
    std::atomic<std::thread::id> m_threadId{};
};

} // namespace vellum

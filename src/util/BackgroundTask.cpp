#include "util/BackgroundTask.h"

namespace vellum {

void TaskObserver::runFinished(std::uint64_t, bool) {}

void BackgroundTask::Run::reportProgress(std::uint64_t done, std::uint64_t total) const
{
    m_task.report(m_generation, TaskProgress{done, total});
}

BackgroundTask::BackgroundTask(TaskObserver *observer) : m_observer(observer) {}

BackgroundTask::~BackgroundTask()
{
    requestStop();
    wait();
    {
        std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

std::uint64_t BackgroundTask::post(Work work)
{
    std::uint64_t generation = 0;
    {
        std::lock_guard lock(m_mutex);
        generation = m_generation.load() + 1;
        m_generation.store(generation, std::memory_order_release);
        // A queued run that never started is replaced: nobody wants its result any more.
        m_pending = std::move(work);
        m_pendingGeneration = generation;
        m_progress = {};
        m_progressGeneration = generation;
        if (!m_thread.joinable()) {
            m_thread = std::thread([this] { loop(); });
            m_threadId.store(m_thread.get_id());
        }
    }
    m_wake.notify_all();
    return generation;
}

std::uint64_t BackgroundTask::invalidate()
{
    std::uint64_t generation = 0;
    {
        std::lock_guard lock(m_mutex);
        generation = m_generation.load() + 1;
        m_generation.store(generation, std::memory_order_release);
        m_pending = nullptr;
        m_progress = {};
        m_progressGeneration = generation;
    }
    m_idle.notify_all();
    return generation;
}

TaskProgress BackgroundTask::progress() const
{
    std::lock_guard lock(m_mutex);
    return m_progressGeneration == m_generation.load() ? m_progress : TaskProgress{};
}

bool BackgroundTask::busy() const
{
    std::lock_guard lock(m_mutex);
    return m_running || m_pending;
}

void BackgroundTask::wait()
{
    if (onWorkerThread())
        return;
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return !m_running && !m_pending; });
}

bool BackgroundTask::waitFor(std::chrono::milliseconds timeout)
{
    if (onWorkerThread())
        return false;
    std::unique_lock lock(m_mutex);
    return m_idle.wait_for(lock, timeout, [this] { return !m_running && !m_pending; });
}

void BackgroundTask::report(std::uint64_t generation, TaskProgress progress)
{
    {
        std::lock_guard lock(m_mutex);
        if (generation != m_generation.load())
            return;
        m_progress = progress;
        m_progressGeneration = generation;
    }
    if (m_observer)
        m_observer->progressChanged(generation, progress);
}

void BackgroundTask::loop()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_quit || m_pending; });
        if (!m_pending)
            return; // quitting, and nothing is queued
        Work work = std::move(m_pending);
        m_pending = nullptr;
        const std::uint64_t generation = m_pendingGeneration;
        m_running = true;
        lock.unlock();
        work(Run(*this, generation));
        work = nullptr; // what the work captured goes before the task reports itself idle
        if (m_observer)
            m_observer->runFinished(generation, stopRequested(generation));
        lock.lock();
        m_running = false;
        if (!m_pending)
            m_idle.notify_all();
    }
}

} // namespace vellum

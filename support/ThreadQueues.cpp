// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/ThreadQueues.h"

#include <system_error>
#include <utility>

namespace tallowmere {

ThreadSerialQueue::ThreadSerialQueue(std::string label, QualityOfService quality)
    : m_label(std::move(label)), m_quality(quality)
{}

ThreadSerialQueue::~ThreadSerialQueue()
{
    {
        std::deque<Job> dropped; // destroyed without the lock: what a job owns may be anything
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        dropped.swap(m_jobs);
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void ThreadSerialQueue::async(Job job)
{
    std::unique_lock lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (haveThread())
        m_changed.notify_all();
    else
        runInCallerWithoutThread(lock);
}

void ThreadSerialQueue::sync(const Job &job)
{
    bool done = false;
    async([&] {
        job();
        const std::lock_guard lock(m_mutex);
        done = true;
        m_changed.notify_all();
    });
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return done; });
}

bool ThreadSerialQueue::haveThread()
{
    if (!m_thread.joinable() && !m_runningInCaller) {
        try {
            m_thread = std::thread([this] { work(); });
        } catch (const std::system_error &) {
            return false;
        }
    }
    return m_thread.joinable();
}

void ThreadSerialQueue::work()
{
    enterJobThread(m_label, m_quality);
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        if (m_stopping)
            return;
        runFirst(lock);
    }
}

void ThreadSerialQueue::runFirst(std::unique_lock<std::mutex> &lock)
{
    Job job = std::move(m_jobs.front());
    m_jobs.pop_front();
    lock.unlock();
    job();
    job = nullptr;
    lock.lock();
}

void ThreadSerialQueue::runInCallerWithoutThread(std::unique_lock<std::mutex> &lock)
{
    if (m_runningInCaller)
        return; // another caller is at it and will come to this job
    m_runningInCaller = true;
    while (!m_jobs.empty() && !m_stopping)
        runFirst(lock);
    m_runningInCaller = false;
}

ThreadOperationQueue::ThreadOperationQueue(std::string name, std::size_t maxConcurrentOperationCount)
    : m_name(std::move(name)), m_maxRunning(maxConcurrentOperationCount)
{}

ThreadOperationQueue::~ThreadOperationQueue()
{
    {
        std::deque<Operation> dropped;
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        dropped.swap(m_waiting);
    }
    m_changed.notify_all();
    if (m_dispatcher.joinable())
        m_dispatcher.join();
}

void ThreadOperationQueue::addOperation(QualityOfService quality, Job job)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back({quality, std::move(job)});
    if (!m_dispatcher.joinable()) {
        try {
            m_dispatcher = std::thread([this] { dispatch(); });
        } catch (const std::system_error &) {
            return;
        }
    }
    m_changed.notify_all();
}

void ThreadOperationQueue::cancelAllOperations()
{
    std::deque<Operation> dropped;
    const std::lock_guard lock(m_mutex);
    dropped.swap(m_waiting);
}

void ThreadOperationQueue::dispatch()
{
    enterJobThread(m_name, QualityOfService::userInitiated);
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_stopping || (m_running < m_maxRunning && !m_waiting.empty()); });
        if (m_stopping)
            return;
        Operation operation = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (!start(operation)) {
            m_waiting.push_front(std::move(operation));
            m_changed.wait(lock);
        }
    }
}

// Under the lock.
bool ThreadOperationQueue::start(Operation &operation)
{
    ++m_running;
    const auto held = std::make_shared<Job>(std::move(operation.job));
    Job job = [this, held] {
        (*held)();
        *held = nullptr;
        const std::lock_guard lock(m_mutex);
        --m_running;
        m_changed.notify_all();
    };
    if (m_threads.start(m_name, operation.quality, job))
        return true;
    --m_running;
    operation.job = std::move(*held);
    return false;
}

void ThreadLauncher::launch(const std::string &label, QualityOfService quality, Job job)
{
    if (!m_threads.start(label, quality, job))
        job();
}

} // namespace tallowmere

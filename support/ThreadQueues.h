// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/JobThreads.h"
#include "support/Queues.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace tallowmere {

// Threads begin with the first job, so that making a queue costs nothing. Every destructor drops what waits and
// waits for what runs; a program that must not wait for a long decode ends by _exit().

/// A serial queue on a thread of its own. When the system gives no thread, jobs run in the caller's, still in order.
class ThreadSerialQueue final : public SerialQueue
{
public:
    explicit ThreadSerialQueue(std::string label, QualityOfService quality = QualityOfService::userInitiated);
    ~ThreadSerialQueue() override;
    ThreadSerialQueue(const ThreadSerialQueue &) = delete;
    ThreadSerialQueue &operator=(const ThreadSerialQueue &) = delete;

    void async(Job job) override;
    void sync(const Job &job) override;

private:
    void work();
    void runFirst(std::unique_lock<std::mutex> &lock);
    void runInCallerWithoutThread(std::unique_lock<std::mutex> &lock);
    [[nodiscard]] bool haveThread();

    const std::string m_label;
    const QualityOfService m_quality;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_runningInCaller = false;
    bool m_stopping = false;
    std::thread m_thread;
};

/// An operation queue: a fresh thread for each operation, since its nice value can't be lowered again.
///
/// Threads are started by a dispatcher that keeps the nice value of whoever added the first operation: a new
/// thread inherits its maker's, so a worker must not start the next one. An operation for which the
/// system gives no thread stays in line; it is tried again when another is added or ends.
class ThreadOperationQueue final : public OperationQueue
{
public:
    ThreadOperationQueue(std::string name, std::size_t maxConcurrentOperationCount);
    ~ThreadOperationQueue() override;
    ThreadOperationQueue(const ThreadOperationQueue &) = delete;
    ThreadOperationQueue &operator=(const ThreadOperationQueue &) = delete;

    void addOperation(QualityOfService quality, Job job) override;
    void cancelAllOperations() override;

private:
    struct Operation
    {
        QualityOfService quality;
        Job job;
    };
    void dispatch();
    [[nodiscard]] bool start(Operation &operation);

    const std::string m_name;
    const std::size_t m_maxRunning;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Operation> m_waiting;
    std::size_t m_running = 0;
    bool m_stopping = false;
    std::thread m_dispatcher;
    JobThreads m_threads; ///< last: its end waits for operations, which use the members above
};

/// A thread per job. When the system gives no thread, the job has run in the caller's when launch() returns: late
/// is better than never, and whoever waits for its result gets one.
class ThreadLauncher final : public Launcher
{
public:
    void launch(const std::string &label, QualityOfService quality, Job job) override;

private:
    JobThreads m_threads;
};

} // namespace tallowmere

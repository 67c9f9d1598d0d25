// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Queues.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace tallowmere::test {

/// A main queue whose jobs run when the test says so. Jobs may be posted from any thread.
class SteppedMainQueue final : public MainQueue
{
public:
    void async(Job job) override;
    /// False when nothing waits.
    bool runNext();
    /// Runs everything, what the jobs post included.
    void runAll();
    [[nodiscard]] std::size_t waiting() const;

private:
    mutable std::mutex m_mutex;
    std::deque<Job> m_jobs;
};

/// A serial queue that works only when stepped; sync() first runs all that waits, as the real one does.
class SteppedSerialQueue final : public SerialQueue
{
public:
    void async(Job job) override { m_jobs.push_back(std::move(job)); }
    void sync(const Job &job) override;
    bool runNext();
    void runAll();
    [[nodiscard]] std::size_t waiting() const { return m_jobs.size(); }
    [[nodiscard]] int syncs() const { return m_syncs; }

private:
    std::deque<Job> m_jobs;
    int m_syncs = 0;
};

/// An operation queue that records what was added and dropped, and runs one operation at a time on demand.
class SteppedOperationQueue final : public OperationQueue
{
public:
    void addOperation(QualityOfService quality, Job job) override;
    void cancelAllOperations() override;
    /// Takes the first that waits out of the queue: from now on it "runs" and can't be dropped. Empty when none waits.
    [[nodiscard]] Job begin();
    bool runNext();
    void runAll();
    [[nodiscard]] std::size_t waiting() const { return m_waiting.size(); }
    [[nodiscard]] int cancellations() const { return m_cancellations; }
    /// Of every operation ever added, in order.
    [[nodiscard]] const std::vector<QualityOfService> &qualities() const { return m_qualities; }

private:
    std::deque<Job> m_waiting;
    std::vector<QualityOfService> m_qualities;
    int m_cancellations = 0;
};

/// A launcher whose "threads" run when the test says so, in any order.
class SteppedLauncher final : public Launcher
{
public:
    struct Launched
    {
        std::string label;
        QualityOfService quality;
        Job job; ///< empty once it has run
    };
    void launch(const std::string &label, QualityOfService quality, Job job) override;
    /// Hands the job launched as number @p index to the test, to be run and destroyed there.
    [[nodiscard]] Job take(std::size_t index);
    /// Runs the one launched as number @p index, once.
    void run(std::size_t index);
    void runAll();
    [[nodiscard]] const std::vector<Launched> &launched() const { return m_launched; }

private:
    std::vector<Launched> m_launched;
};

} // namespace tallowmere::test

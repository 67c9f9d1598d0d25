// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/SteppedQueues.h"

#include <utility>

namespace tallowmere::test {
namespace {

Job takeFirst(std::deque<Job> &jobs)
{
    if (jobs.empty())
        return {};
    Job job = std::move(jobs.front());
    jobs.pop_front();
    return job;
}

bool ran(const Job &job)
{
    if (job)
        job();
    return static_cast<bool>(job);
}

} // namespace

void SteppedMainQueue::async(Job job)
{
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
}

bool SteppedMainQueue::runNext()
{
    Job job;
    {
        const std::lock_guard lock(m_mutex);
        job = takeFirst(m_jobs);
    }
    return ran(job);
}

void SteppedMainQueue::runAll()
{
    while (runNext()) {
    }
}

std::size_t SteppedMainQueue::waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_jobs.size();
}

void SteppedSerialQueue::sync(const Job &job)
{
    ++m_syncs;
    runAll();
    job();
}

bool SteppedSerialQueue::runNext()
{
    return ran(takeFirst(m_jobs));
}

void SteppedSerialQueue::runAll()
{
    while (runNext()) {
    }
}

void SteppedOperationQueue::addOperation(QualityOfService quality, Job job)
{
    m_qualities.push_back(quality);
    m_waiting.push_back(std::move(job));
}

void SteppedOperationQueue::cancelAllOperations()
{
    ++m_cancellations;
    m_waiting.clear();
}

Job SteppedOperationQueue::begin()
{
    return takeFirst(m_waiting);
}

bool SteppedOperationQueue::runNext()
{
    return ran(begin());
}

void SteppedOperationQueue::runAll()
{
    while (runNext()) {
    }
}

void SteppedLauncher::launch(const std::string &label, QualityOfService quality, Job job)
{
    m_launched.push_back({label, quality, std::move(job)});
}

Job SteppedLauncher::take(std::size_t index)
{
    return std::exchange(m_launched.at(index).job, {});
}

void SteppedLauncher::run(std::size_t index)
{
    // Taken out first: a job may launch another and so move the list.
    ran(take(index));
}

void SteppedLauncher::runAll()
{
    for (std::size_t i = 0; i < m_launched.size(); ++i)
        run(i);
}

} // namespace tallowmere::test

// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/MainQueuePump.h"

#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace tallowmere {

PostedMainQueue::PostedMainQueue() : m_wake(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

PostedMainQueue::~PostedMainQueue()
{
    if (m_wake >= 0)
        ::close(m_wake);
}

void PostedMainQueue::async(Job job)
{
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() == 1) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(m_wake, &one, sizeof one);
    }
}

std::size_t PostedMainQueue::runTurn()
{
    std::size_t waiting = 0;
    {
        const std::lock_guard lock(m_mutex);
        waiting = m_jobs.size();
    }
    std::size_t run = 0;
    for (; run < waiting; ++run) {
        // One at a time, never a batch: a job may open a dialog, and those behind it must go on meanwhile.
        const Job job = takeFirst();
        if (!job)
            break;
        job();
    }
    return run;
}

Job PostedMainQueue::takeFirst()
{
    const std::lock_guard lock(m_mutex);
    if (m_jobs.empty())
        return {};
    Job job = std::move(m_jobs.front());
    m_jobs.pop_front();
    if (m_jobs.empty()) {
        std::uint64_t posted = 0;
        [[maybe_unused]] const ssize_t cleared = ::read(m_wake, &posted, sizeof posted);
    }
    return job;
}

MainQueuePump::MainQueuePump(PostedMainQueue &queue, QObject *parent) : QObject(parent)
{
    auto *notifier = new QSocketNotifier(queue.wakeDescriptor(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [&queue] { queue.runTurn(); });
}

} // namespace tallowmere

// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Queues.h"

#include <QObject>

#include <cstddef>
#include <deque>
#include <mutex>

namespace tallowmere {

/// The main queue itself: jobs wait here until the main thread takes them.
///
/// Works before any application object exists; a MainQueuePump made later runs what has gathered.
/// What still waits at the end is dropped.
class PostedMainQueue final : public MainQueue
{
public:
    PostedMainQueue();
    ~PostedMainQueue() override;
    PostedMainQueue(const PostedMainQueue &) = delete;
    PostedMainQueue &operator=(const PostedMainQueue &) = delete;

    void async(Job job) override;
    /// Runs, in order, as many jobs as wait now; those they post wait for the next turn. A job may run an event
    /// loop of its own: the turns taken there go on with the next job. Main thread. Returns how many were run here.
    std::size_t runTurn();
    /// Readable while jobs wait; -1 when the system gave none.
    [[nodiscard]] int wakeDescriptor() const { return m_wake; }

private:
    [[nodiscard]] Job takeFirst();

    std::mutex m_mutex;
    std::deque<Job> m_jobs;
    const int m_wake;
};

/// Runs the jobs of a PostedMainQueue in the event loop of the thread that makes it, which is the main thread.
///
/// A turn at a time, so that painting and input get theirs in between. The queue outlives the pump.
class MainQueuePump final : public QObject
{
public:
    explicit MainQueuePump(PostedMainQueue &queue, QObject *parent = nullptr);
};

} // namespace tallowmere

// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tallowmere {

using Job = std::function<void()>;

/// How much a piece of background work matters; it sets the nice value of the thread that runs it.
enum class QualityOfService
{
    userInitiated, ///< nice 0
    standard,      ///< nice 5
    utility,       ///< nice 10
};

/// Where results come home: jobs run one by one, in the order posted, on the main thread.
class MainQueue
{
public:
    virtual ~MainQueue() = default;
    /// Any thread; returns at once, also on the main thread.
    virtual void async(Job job) = 0;
};

/// Jobs one by one, in order, off the main thread.
class SerialQueue
{
public:
    virtual ~SerialQueue() = default;
    virtual void async(Job job) = 0;
    /// Returns when @p job, and all that was queued before it, has run. Never called from a job of this queue.
    virtual void sync(const Job &job) = 0;
};

/// A bounded number of jobs at a time, started in the order added; what has not started can be dropped.
class OperationQueue
{
public:
    virtual ~OperationQueue() = default;
    virtual void addOperation(QualityOfService quality, Job job) = 0;
    /// Drops what waits. What runs goes on to its end.
    virtual void cancelAllOperations() = 0;
};

/// One thread for one job, so that jobs launched together run in parallel.
class Launcher
{
public:
    virtual ~Launcher() = default;
    /// @p label names the thread (the kernel keeps 15 bytes of it). Any thread.
    virtual void launch(const std::string &label, QualityOfService quality, Job job) = 0;
};

} // namespace tallowmere

// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/JobThreads.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <system_error>
#include <utility>

namespace tallowmere {
namespace {

int niceIncrement(QualityOfService quality)
{
    switch (quality) {
    case QualityOfService::userInitiated:
        return 0;
    case QualityOfService::standard:
        return 5;
    case QualityOfService::utility:
        return 10;
    }
    return 0;
}

} // namespace

void enterJobThread(const std::string &label, QualityOfService quality)
{
    constexpr std::size_t kKernelNameBytes = 15;
    // All labels share their beginning; their end tells them apart.
    const std::size_t dot = label.rfind('.');
    ::pthread_setname_np(::pthread_self(),
                         label.substr(dot == std::string::npos ? 0 : dot + 1, kKernelNameBytes).c_str());

    if (const int increment = niceIncrement(quality); increment > 0) {
        constexpr int kLargestNice = 19;
        const int main = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid()));
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), std::min(main + increment, kLargestNice));
    }
}

JobThreads::~JobThreads()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_running.empty(); });
    joinEnded();
}

bool JobThreads::start(const std::string &label, QualityOfService quality, Job &job)
{
    const auto held = std::make_shared<Job>(std::move(job));
    const std::lock_guard lock(m_mutex);
    joinEnded();
    m_running.emplace_front();
    const auto self = m_running.begin();
    try {
        *self = std::thread([this, self, label, quality, held] {
            enterJobThread(label, quality);
            (*held)();
            *held = nullptr; // what the job owns dies here, before anybody may think the thread has ended
            const std::lock_guard ending(m_mutex);
            m_toJoin.push_back(std::move(*self));
            m_running.erase(self);
            m_ended.notify_all();
        });
    } catch (const std::system_error &) {
        m_running.erase(self);
        job = std::move(*held);
        return false;
    }
    return true;
}

// Under the lock. These threads have nothing left to do that needs it.
void JobThreads::joinEnded()
{
    for (std::thread &thread : m_toJoin)
        thread.join();
    m_toJoin.clear();
}

} // namespace tallowmere

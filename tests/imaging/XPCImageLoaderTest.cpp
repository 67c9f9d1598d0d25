// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/XPCImageLoader.h"

#include "imaging/ImageProcessingProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

namespace tallowmere {
namespace {

using testing::ElementsAre;

/// Writes down what happens to it, in an order that outlives it.
class RecordingConnection final : public ServiceConnection
{
public:
    RecordingConnection(std::vector<std::string> &log, std::mutex &lock) : m_log(log), m_lock(lock) {}
    ~RecordingConnection() override { m_log.emplace_back("released"); }
    void invalidate() override
    {
        // Asked from another thread: a thread may not try a lock that it holds itself.
        const bool held = std::async(std::launch::async, [this] {
                              const std::unique_lock attempt(m_lock, std::try_to_lock);
                              return !attempt.owns_lock();
                          }).get();
        m_log.emplace_back(held ? "invalidated under the lock" : "invalidated");
    }

private:
    std::vector<std::string> &m_log;
    std::mutex &m_lock;
};

TEST(XPCImageLoader, tearingDownAConnectedClientInvalidatesOnceUnderTheLockAndReleases)
{
    std::vector<std::string> log;
    {
        XPCImageLoader client;
        const std::lock_guard lock(client.connectionLock);
        client.connection = std::make_shared<RecordingConnection>(log, client.connectionLock);
    }
    EXPECT_THAT(log, ElementsAre("invalidated under the lock", "released"));
}

TEST(XPCImageLoader, aConnectionThatOthersHoldIsInvalidatedAllTheSame)
{
    std::vector<std::string> log;
    std::shared_ptr<ServiceConnection> held;
    {
        XPCImageLoader client;
        held = std::make_shared<RecordingConnection>(log, client.connectionLock);
        client.connection = held;
    }
    EXPECT_THAT(log, ElementsAre("invalidated under the lock"));
    EXPECT_EQ(held.use_count(), 1);
}

TEST(XPCImageLoader, tearingDownAClientThatNeverConnectedDoesNothing)
{
    const XPCImageLoader client;
    EXPECT_EQ(client.connection, nullptr);
}

/// Compiles only while the interface has these six operations.
class EveryOperation final : public ImageProcessingProtocol
{
public:
    std::vector<std::string> called;

    void loadImageFrom(const FileURL &, qint64, DataReply reply) override { answer("loadImageFrom", reply); }
    void loadImageAsyncFrom(const FileURL &, qint64, DataReply reply) override { answer("loadImageAsyncFrom", reply); }
    void calculateAverageColorFor(const FileURL &, DataReply reply) override
    {
        answer("calculateAverageColorFor", reply);
    }
    void prefetchImagesWithFileURLs(const QList<FileURL> &, qint64, qint64, qint64) override
    {
        called.emplace_back("prefetchImagesWithFileURLs");
    }
    void clearCache() override { called.emplace_back("clearCache"); }
    void getCacheStats(StatisticsReply reply) override
    {
        called.emplace_back("getCacheStats");
        reply(std::nullopt);
    }

private:
    void answer(const char *operation, const DataReply &reply)
    {
        called.emplace_back(operation);
        reply(std::nullopt);
    }
};

TEST(ImageProcessingProtocol, everyReplyMayHaveNothingInIt)
{
    EveryOperation service;
    const FileURL file = FileURL::fromPath("/photos/a.jpg");
    int answers = 0;
    const auto data = [&](const std::optional<QByteArray> &bytes) { answers += bytes ? 0 : 1; };
    service.loadImageFrom(file, 4000, data);
    service.loadImageAsyncFrom(file, 4000, data);
    service.calculateAverageColorFor(file, data);
    service.prefetchImagesWithFileURLs({file}, 0, 2, 20);
    service.clearCache();
    service.getCacheStats([&](const auto &statistics) { answers += statistics ? 0 : 1; });
    EXPECT_EQ(answers, 4);
    EXPECT_THAT(service.called, ElementsAre("loadImageFrom", "loadImageAsyncFrom", "calculateAverageColorFor",
                                            "prefetchImagesWithFileURLs", "clearCache", "getCacheStats"));
}

} // namespace
} // namespace tallowmere

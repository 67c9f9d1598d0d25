// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/PortalColourScheme.h"

#include "tests/desktop/SettingsPortal.h"
#include "tests/doubles/SteppedQueues.h"
#include "tests/platform/freedesktop/PrivateBus.h"

#include <gtest/gtest.h>

#include <vector>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using desktop::SettingsPortal;

class DesktopColourScheme : public ::testing::Test
{
protected:
    void start(const QByteArray &address)
    {
        m_watcher = std::make_unique<PortalColourScheme>(m_mainQueue, address);
        m_watcher->start([this](ColourScheme scheme) { m_told.push_back(scheme); });
    }
    [[nodiscard]] bool isTold(ColourScheme scheme)
    {
        return eventually([&] {
            m_mainQueue.runAll();
            return !m_told.empty() && m_told.back() == scheme;
        });
    }

    PrivateBus m_bus;
    SteppedMainQueue m_mainQueue;
    std::vector<ColourScheme> m_told;
    std::unique_ptr<PortalColourScheme> m_watcher;
};

} // namespace

TEST_F(DesktopColourScheme, isReadOnceAndFollowed)
{
    SettingsPortal portal(m_bus.address().toStdString(), 1);
    start(m_bus.address());
    EXPECT_TRUE(isTold(ColourScheme::dark));
    portal.change(2);
    EXPECT_TRUE(isTold(ColourScheme::light));
    portal.change(0);
    EXPECT_TRUE(isTold(ColourScheme::noPreference));
    EXPECT_EQ(portal.questions(), 1);
    EXPECT_EQ(m_told, (std::vector{ColourScheme::dark, ColourScheme::light, ColourScheme::noPreference}))
        << "other settings are passed over";
}

TEST_F(DesktopColourScheme, isToldOnTheMainQueueOnly)
{
    SettingsPortal portal(m_bus.address().toStdString(), 1);
    start(m_bus.address());
    EXPECT_TRUE(eventually([this] { return m_mainQueue.waiting() > 0; }));
    EXPECT_TRUE(m_told.empty());
}

TEST_F(DesktopColourScheme, ofAPortalThatNeverAnswersIsStillFollowed)
{
    SettingsPortal portal(m_bus.address().toStdString(), 0, SettingsPortal::Manner::isMute);
    start(m_bus.address());
    EXPECT_TRUE(eventually([&] { return portal.questions() == 1; }));
    portal.change(1);
    EXPECT_TRUE(isTold(ColourScheme::dark));
}

TEST_F(DesktopColourScheme, isUnknownToAPortalWithoutThatSetting)
{
    SettingsPortal portal(m_bus.address().toStdString(), 1, SettingsPortal::Manner::refuses);
    start(m_bus.address());
    EXPECT_TRUE(eventually([&] { return portal.questions() == 1; }));
    portal.change(2);
    EXPECT_TRUE(isTold(ColourScheme::light)) << "a newer portal may take over";
}

TEST_F(DesktopColourScheme, withoutAPortalNothingIsTold)
{
    start(m_bus.address());
    m_watcher.reset();
    m_mainQueue.runAll();
    EXPECT_TRUE(m_told.empty());
}

TEST_F(DesktopColourScheme, withoutABusOrWithOneThatHangsTheEndDoesNotWait)
{
    start("unix:path=/nonexistent/bus");
    m_watcher.reset();
    m_bus.stop();
    start(m_bus.address());
    m_watcher.reset();
    m_bus.resume();
    EXPECT_TRUE(m_told.empty());
}

TEST_F(DesktopColourScheme, whatIsOnItsWayWhenTheWatcherEndsReachesNobody)
{
    SettingsPortal portal(m_bus.address().toStdString(), 1);
    start(m_bus.address());
    EXPECT_TRUE(eventually([this] { return m_mainQueue.waiting() > 0; }));
    m_watcher.reset();
    m_mainQueue.runAll();
    EXPECT_TRUE(m_told.empty());
}

} // namespace tallowmere

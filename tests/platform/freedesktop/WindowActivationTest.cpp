// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/WindowActivation.h"

#include <gtest/gtest.h>

namespace tallowmere {

TEST(StartupId, endsWithTheTimeOfTheUsersAction)
{
    EXPECT_EQ(timeOfStartupId("gnome-shell/Files/1234-0-host_TIME5678"), 5678U);
    EXPECT_EQ(timeOfStartupId("a_TIME1_TIME2"), 2U);
    EXPECT_EQ(timeOfStartupId("x_TIME4294967295"), 4294967295U);
}

TEST(StartupId, anIdOfAnotherShapeHasNoTime)
{
    for (const char *id : {"", "id", "id_TIME", "id_TIMEx", "id_TIME12x", "id_TIME4294967296", "id_TIME-1"})
        EXPECT_EQ(timeOfStartupId(id), std::nullopt) << id;
}

} // namespace tallowmere

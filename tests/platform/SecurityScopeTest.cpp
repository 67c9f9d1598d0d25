// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/RecordingScope.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using test::RecordingScope;
using testing::ElementsAre;

TEST(ScopedAccess, stopsWhatItStarted)
{
    RecordingScope scope;
    {
        const ScopedAccess access(scope, FileURL::fromPath("/a.jpg"));
        EXPECT_THAT(scope.log(), ElementsAre("start /a.jpg"));
    }
    EXPECT_THAT(scope.log(), ElementsAre("start /a.jpg", "stop /a.jpg"));
}

TEST(ScopedAccess, doesNotStopWhatDidNotStart)
{
    RecordingScope scope(false);
    {
        const ScopedAccess access(scope, FileURL::fromPath("/a.jpg"));
    }
    EXPECT_THAT(scope.log(), ElementsAre("start /a.jpg"));
}

TEST(NoSecurityScope, answersNotStarted)
{
    NoSecurityScope scope;
    EXPECT_FALSE(scope.startAccessing(FileURL::fromPath("/a.jpg")));
}

} // namespace
} // namespace tallowmere

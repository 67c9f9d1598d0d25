// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/HeldKey.h"

#include <gtest/gtest.h>

namespace tallowmere {

TEST(HeldKey, aPressAtTheMomentOfItsReleaseIsARepeat)
{
    HeldKey key;
    EXPECT_FALSE(key.isRepeat(1, 1000));
    key.released(1, 1660);
    EXPECT_TRUE(key.isRepeat(1, 1660));
    EXPECT_TRUE(key.isRepeat(1, 1660)) << "asked again";
    key.released(1, 1700);
    EXPECT_TRUE(key.isRepeat(1, 1700));
}

TEST(HeldKey, aLaterPressIsANewOne)
{
    HeldKey key;
    key.released(1, 1000);
    EXPECT_FALSE(key.isRepeat(1, 1001));
}

TEST(HeldKey, anotherKeyInBetweenEndsIt)
{
    HeldKey key;
    key.released(1, 1000);
    EXPECT_FALSE(key.isRepeat(2, 1000));
    EXPECT_FALSE(key.isRepeat(1, 1000));
    key.released(1, 2000);
    key.released(2, 2000);
    EXPECT_FALSE(key.isRepeat(1, 2000));
}

TEST(HeldKey, withoutTimesNothingIsARepeat)
{
    HeldKey key;
    key.released(1, 0);
    EXPECT_FALSE(key.isRepeat(1, 0));
}

} // namespace tallowmere

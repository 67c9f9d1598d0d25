// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowTitle.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

constexpr auto kInTitle = FileNameDisplayLocation::inTitle;

QString titleOf(const QByteArray &name, FileNameDisplayLocation location = kInTitle)
{
    return windowTitleFor(FileURL::fromPath("/pictures").appending(name), location);
}

TEST(WindowTitle, isTheProductsNameWithoutAFile)
{
    for (const auto location : kAllFileNameDisplayLocations)
        EXPECT_EQ(windowTitleFor({}, location), QStringLiteral("Tallowmere"));
}

TEST(WindowTitle, isTheProductsNameWhenTheNameIsShownInTheCornerOrNowhere)
{
    EXPECT_EQ(titleOf("a.jpg", FileNameDisplayLocation::inCorner), QStringLiteral("Tallowmere"));
    EXPECT_EQ(titleOf("a.jpg", FileNameDisplayLocation::off), QStringLiteral("Tallowmere"));
}

TEST(WindowTitle, carriesTheFilesName)
{
    EXPECT_EQ(titleOf("a.jpg"), QStringLiteral("Tallowmere • a.jpg"));
}

TEST(WindowTitle, showsBytesThatAreNoTextAsReplacementCharacters)
{
    EXPECT_EQ(titleOf("caf\xe9.jpg"), QStringLiteral("Tallowmere • caf\uFFFD.jpg"));
}

TEST(WindowTitle, staysOneLineWhateverTheName)
{
    EXPECT_EQ(titleOf("a\nb\tc\u2028.jpg"), QStringLiteral("Tallowmere • a b c .jpg"));
}

TEST(WindowTitle, showsMarkupAsItIsWritten)
{
    EXPECT_EQ(titleOf("<b>x&y<b>.jpg"), QStringLiteral("Tallowmere • <b>x&y<b>.jpg"));
}

} // namespace
} // namespace tallowmere

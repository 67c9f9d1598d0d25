// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/OpenPanel.h"

#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

TEST(OpenPanel, offersEveryFormatInSmallLettersAndInCapitals)
{
    const SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    EXPECT_EQ(openPanelNameFilter(settings), QStringLiteral("Images (*.jpg *.JPG *.jpeg *.JPEG *.png *.PNG *.webp "
                                                            "*.WEBP *.avif *.AVIF *.heic *.HEIC)"));
}

TEST(OpenPanel, offersOnlyJpegWhenAllElseIsSwitchedOff)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    settings.setPngSupportEnabled(false);
    settings.setWebpSupportEnabled(false);
    settings.setAvifSupportEnabled(false);
    settings.setHeicSupportEnabled(false);
    EXPECT_EQ(openPanelNameFilter(settings), QStringLiteral("Images (*.jpg *.JPG *.jpeg *.JPEG)"));
}

} // namespace
} // namespace tallowmere
